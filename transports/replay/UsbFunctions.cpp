#include <cstdint>

#include "replay/Links.h"
#include "replay/Session.h"
#include "simulator/entry/Export.h"

namespace zth::replay {
namespace {

struct Library {
  Session session{1, "USBFunctions"};
  UsbLink link{[this](const tasks::TrafficRecord& request) { return session.Answer(request); }};
};

Library& TheLibrary() {
  static Library library;
  return library;
}

}  // namespace
}  // namespace zth::replay

ZTH_BOARD_EXPORT const char* ZTH_BOARD_CALL BoardName() {
  return zth::replay::TheLibrary().session.BoardName();
}

ZTH_BOARD_EXPORT const char* ZTH_BOARD_CALL BoardTrouble() {
  return zth::replay::TheLibrary().session.BoardTrouble();
}

ZTH_BOARD_EXPORT std::int16_t ZTH_BOARD_CALL LoadFirmWare(const char* /*path*/) {
  return zth::replay::TheLibrary().link.LoadFirmware();
}

ZTH_BOARD_EXPORT std::int16_t ZTH_BOARD_CALL VendorIORequest(std::int16_t request, std::int32_t value,
                                                             std::int32_t index, std::int16_t direction,
                                                             std::int16_t length, std::uint8_t* buffer) {
  return zth::replay::TheLibrary().link.Request(request, value, index, direction, length, buffer);
}
