#include "replay/Entries.h"

#include "simulator/entry/Export.h"

ZTH_BOARD_EXPORT const char* ZTH_BOARD_CALL BoardName() {
  return zth::replay::TheSession().BoardName();
}

ZTH_BOARD_EXPORT const char* ZTH_BOARD_CALL BoardTrouble() {
  return zth::replay::TheSession().BoardTrouble();
}
