#include <cstdint>

#include "replay/Links.h"
#include "replay/Session.h"
#include "simulator/entry/Export.h"

namespace zth::replay {
namespace {

struct Library {
  Session session{2, "smbus"};
  SmbusLink link{[this](const tasks::TrafficRecord& request) { return session.Answer(request); }};
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
  return zth::replay::TheLibrary().session.TheReplay().Failures(address);
}
