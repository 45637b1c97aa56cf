#include <cstdlib>
#include <exception>
#include <string>

#include "linux-smbus/InReach.h"
#include "linux-smbus/LinuxI2c.h"

// in-reach: exits with 0 when this board's library would find an SMBus host that this user may open, otherwise with 1.
// The start script calls it, so that only one place decides on the adapters.
int main() {
  try {
    const auto variable = [](const char* name) {
      const char* const value = std::getenv(name);
      return value == nullptr ? std::string() : std::string(value);
    };
    zth::smbus::LinuxI2c system;
    return zth::smbus::IsInReach(system, zth::smbus::LoadSettings(zth::smbus::PlacesOf(variable), variable)) ? 0 : 1;
  } catch (const std::exception&) {
    return 1;
  }
}
