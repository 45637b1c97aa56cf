#include <cstdint>

#include "replay/Entries.h"
#include "replay/Links.h"
#include "simulator/entry/Export.h"

namespace zth::replay {
namespace {

Library<SmbusLink>& TheLibrary() {
  static Library<SmbusLink> library(2, "smbus");
  return library;
}

}  // namespace

Session& TheSession() {
  return TheLibrary().session;
}

}  // namespace zth::replay

ZTH_BOARD_EXPORT void ZTH_BOARD_CALL DetectSmbus() {
  zth::replay::TheLibrary().link.Detect();
}

ZTH_BOARD_EXPORT std::uint8_t ZTH_BOARD_CALL ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  return zth::replay::TheLibrary().link.Read(address, reg);
}

ZTH_BOARD_EXPORT void ZTH_BOARD_CALL WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  zth::replay::TheLibrary().link.Write(address, reg, value);
}

ZTH_BOARD_EXPORT std::int32_t ZTH_BOARD_CALL SmbusFailures(std::uint8_t address) {
  return zth::replay::TheSession().TheReplay().Failures(address);
}
