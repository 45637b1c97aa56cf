#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"

namespace zth::smbus {

/// The kernel's I2C adapters as described under /sys. Only reads files; missing or unreadable ones count as absent.
class Sysfs {
 public:
  /// `root` is the mount point of sysfs.
  explicit Sysfs(const std::filesystem::path& root);

  std::vector<Adapter> Adapters() const;
  bool IsThere(int adapter) const;
  std::string DriverAt(int adapter, std::uint8_t address) const;

 private:
  std::filesystem::path devices_;
};

}  // namespace zth::smbus
