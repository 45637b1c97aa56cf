#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"

namespace zth::smbus {

/// What the kernel tells of its I2C adapters under /sys. Reads files only; what is missing or unreadable counts as not
/// there.
class Sysfs {
 public:
  /// `root` is where sysfs is mounted.
  explicit Sysfs(const std::filesystem::path& root);

  std::vector<Adapter> Adapters() const;
  bool IsThere(int adapter) const;
  std::string DriverAt(int adapter, std::uint8_t address) const;

 private:
  std::filesystem::path devices_;
};

}  // namespace zth::smbus
