#include <cstdint>

#include "simulator/Settings.h"
#include "simulator/UsbAdapter.h"
#include "simulator/entry/Export.h"
#include "simulator/entry/RealTime.h"
#include "simulator/entry/SettingsFile.h"

namespace zth::simulator {
namespace {

struct Library {
  Library() { adapter.TheBus().PowerUp(); }

  UsbAdapter adapter{LoadSettings("USBFunctions")};
  RealTime time;
};

// Created by the first call, so that loading the library costs nothing and simulated time starts with its use.
Library& TheLibrary() {
  static Library library;
  library.time.CatchUp(library.adapter.TheBus());
  return library;
}

}  // namespace
}  // namespace zth::simulator

ZTH_BOARD_EXPORT const char* ZTH_BOARD_CALL BoardName() {
  return zth::simulator::kBoardName;
}

ZTH_BOARD_EXPORT std::int16_t ZTH_BOARD_CALL LoadFirmWare(const char* /*path*/) {
  return zth::simulator::TheLibrary().adapter.LoadFirmware();
}

ZTH_BOARD_EXPORT std::int16_t ZTH_BOARD_CALL VendorIORequest(std::int16_t request, std::int32_t value,
                                                             std::int32_t index, std::int16_t direction,
                                                             std::int16_t length, std::uint8_t* buffer) {
  zth::simulator::Library& library = zth::simulator::TheLibrary();
  const std::int16_t result = library.adapter.Request(request, value, index, direction, length, buffer);
  zth::simulator::RealTime::Linger(library.adapter.TheBus());
  return result;
}
