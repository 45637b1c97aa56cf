#include <cstdint>

#include "simulator/Settings.h"
#include "simulator/SmbusHost.h"
#include "simulator/entry/Export.h"
#include "simulator/entry/RealTime.h"
#include "simulator/entry/SettingsFile.h"

namespace zth::simulator {
namespace {

struct Library {
  Library() { host.TheBus().PowerUp(); }

  SmbusHost host{LoadSettings("smbus")};
  RealTime time;
};

Library& AtRest() {
  static Library library;
  return library;
}

Library& TheLibrary() {
  Library& library = AtRest();
  library.time.CatchUp(library.host.TheBus());
  return library;
}

}  // namespace
}  // namespace zth::simulator

ZTH_BOARD_EXPORT const char* ZTH_BOARD_CALL BoardName() {
  return zth::simulator::kBoardName;
}

ZTH_BOARD_EXPORT void ZTH_BOARD_CALL DetectSmbus() {
  zth::simulator::TheLibrary();
}

ZTH_BOARD_EXPORT std::uint8_t ZTH_BOARD_CALL ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  zth::simulator::Library& library = zth::simulator::TheLibrary();
  const std::uint8_t value = library.host.Read(address, reg);
  zth::simulator::RealTime::Linger(library.host.TheBus());
  return value;
}

ZTH_BOARD_EXPORT void ZTH_BOARD_CALL WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  zth::simulator::Library& library = zth::simulator::TheLibrary();
  library.host.Write(address, reg, value);
  zth::simulator::RealTime::Linger(library.host.TheBus());
}

// Reading the counter is no transfer and lets no time pass.
ZTH_BOARD_EXPORT std::int32_t ZTH_BOARD_CALL SmbusFailures(std::uint8_t address) {
  return zth::simulator::AtRest().host.Failures(address);
}
