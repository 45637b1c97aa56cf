#include "linux-smbus/LinuxI2c.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

// libi2c's header has no extern "C".
extern "C" {
#include <i2c/smbus.h>
}

namespace zth::smbus {

std::vector<Adapter> LinuxI2c::Adapters() {
  return sysfs_.Adapters();
}

bool LinuxI2c::IsThere(int adapter) {
  return sysfs_.IsThere(adapter);
}

std::string LinuxI2c::DriverAt(int adapter, std::uint8_t address) {
  return sysfs_.DriverAt(adapter, address);
}

std::string LinuxI2c::NodeOf(int adapter) {
  return "/dev/i2c-" + std::to_string(adapter);
}

std::chrono::nanoseconds LinuxI2c::Now() {
  return std::chrono::steady_clock::now().time_since_epoch();
}

int LinuxI2c::Open(int adapter) {
  const int descriptor = open(NodeOf(adapter).c_str(), O_RDWR | O_CLOEXEC);
  return descriptor < 0 ? -errno : descriptor;
}

void LinuxI2c::Close(int descriptor) {
  close(descriptor);
}

int LinuxI2c::QueryAbilities(int descriptor, Abilities& abilities) {
  unsigned long functions = 0;
  if (ioctl(descriptor, I2C_FUNCS, &functions) < 0) return -errno;
  abilities.readByteData = (functions & I2C_FUNC_SMBUS_READ_BYTE_DATA) != 0;
  abilities.writeByteData = (functions & I2C_FUNC_SMBUS_WRITE_BYTE_DATA) != 0;
  return 0;
}

int LinuxI2c::Select(int descriptor, std::uint8_t address) {
  // I2C_SLAVE and not the forced variant: an address used by a kernel driver must not be taken over.
  return ioctl(descriptor, I2C_SLAVE, static_cast<long>(address)) < 0 ? -errno : 0;
}

int LinuxI2c::ReadByteData(int descriptor, std::uint8_t reg) {
  return i2c_smbus_read_byte_data(descriptor, reg);
}

int LinuxI2c::WriteByteData(int descriptor, std::uint8_t reg, std::uint8_t value) {
  return i2c_smbus_write_byte_data(descriptor, reg, value);
}

}  // namespace zth::smbus
