#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <mutex>
#include <string>

#include "linux-smbus/HostBus.h"
#include "linux-smbus/Journal.h"
#include "linux-smbus/LinuxI2c.h"
#include "linux-smbus/Settings.h"

namespace zth::smbus {
namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// Everything behind the functions, created by the first call.
struct Session {
  std::mutex oneAtATime;  ///< setting a descriptor's address and its transfer are two kernel calls
  UserPlaces places = PlacesOf(Variable);
  Journal journal{std::cerr, places.logFile, UtcStamp};
  LinuxI2c system;
  HostBus bus{system, journal, LoadSettings(places, Variable)};
  std::string name, trouble;  ///< as last returned
};

Session& TheSession() {
  static Session session;
  return session;
}

/// Runs `action` on the bus. Must not throw: the caller is C code.
template <typename Action>
void WithBus(Action action) noexcept {
  try {
    Session& session = TheSession();
    const std::scoped_lock lock(session.oneAtATime);
    action(session.bus);
  } catch (const std::exception& fault) {
    std::cerr << "smbus: " << fault.what() << std::endl;
  }
}

/// A text of the bus, kept valid until the caller asks for it again.
template <typename Text>
const char* Say(std::string Session::*kept, Text text) noexcept {
  const char* said = "";
  WithBus([&](const HostBus& bus) { said = (TheSession().*kept = text(bus)).c_str(); });
  return said;
}

}  // namespace
}  // namespace zth::smbus

extern "C" {

[[gnu::visibility("default")]] const char* BoardName(void) {
  return zth::smbus::Say(&zth::smbus::Session::name, [](const zth::smbus::HostBus& bus) { return bus.Name(); });
}

[[gnu::visibility("default")]] const char* BoardTrouble(void) {
  return zth::smbus::Say(&zth::smbus::Session::trouble, [](const zth::smbus::HostBus& bus) { return bus.Trouble(); });
}

[[gnu::visibility("default")]] void DetectSmbus(void) {
  zth::smbus::WithBus([](zth::smbus::HostBus& bus) { bus.Detect(); });
}

[[gnu::visibility("default")]] std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  std::uint8_t value = zth::smbus::kNoAnswer;
  zth::smbus::WithBus([&value, address, reg](zth::smbus::HostBus& bus) { value = bus.Read(address, reg); });
  return value;
}

[[gnu::visibility("default")]] void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  zth::smbus::WithBus([address, reg, value](zth::smbus::HostBus& bus) { bus.Write(address, reg, value); });
}

[[gnu::visibility("default")]] std::int32_t SmbusFailures(std::uint8_t address) {
  std::int32_t failures = -1;
  zth::smbus::WithBus([&failures, address](zth::smbus::HostBus& bus) { failures = bus.Failures(address); });
  return failures;
}
}
