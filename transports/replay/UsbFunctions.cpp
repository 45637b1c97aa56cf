#include <cstdint>

#include "replay/Entries.h"
#include "replay/Links.h"
#include "simulator/entry/Export.h"

namespace zth::replay {
namespace {

Library<UsbLink>& TheLibrary() {
  static Library<UsbLink> library(1, "USBFunctions");
  return library;
}

}  // namespace

Session& TheSession() {
  return TheLibrary().session;
}

}  // namespace zth::replay

ZTH_BOARD_EXPORT std::int16_t ZTH_BOARD_CALL LoadFirmWare(const char* /*path*/) {
  return zth::replay::TheLibrary().link.LoadFirmware();
}

ZTH_BOARD_EXPORT std::int16_t ZTH_BOARD_CALL VendorIORequest(std::int16_t request, std::int32_t value,
                                                             std::int32_t index, std::int16_t direction,
                                                             std::int16_t length, std::uint8_t* buffer) {
  return zth::replay::TheLibrary().link.Request(request, value, index, direction, length, buffer);
}
