#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"
#include "linux-smbus/Sysfs.h"

namespace zth::smbus {

/// The real kernel: adapters from /sys, transfers over /dev/i2c-N.
class LinuxI2c final : public I2cSystem {
 public:
  std::vector<Adapter> Adapters() override;
  bool IsThere(int adapter) override;
  std::string DriverAt(int adapter, std::uint8_t address) override;
  std::string NodeOf(int adapter) override;
  std::chrono::nanoseconds Now() override;
  int Open(int adapter) override;
  void Close(int descriptor) override;
  int QueryAbilities(int descriptor, Abilities& abilities) override;
  int Select(int descriptor, std::uint8_t address) override;
  int ReadByteData(int descriptor, std::uint8_t reg) override;
  int WriteByteData(int descriptor, std::uint8_t reg, std::uint8_t value) override;

 private:
  Sysfs sysfs_{"/sys"};
};

}  // namespace zth::smbus
