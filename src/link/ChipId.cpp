#include "link/ChipId.h"

#include "base/NumberText.h"
#include "link/Declarations.h"

namespace zth::link {

ChipId ChipInUse() {
  return {Bus.InterfaceMode, Bus.DeviceAddress};
}

QString TextOf(const ChipId& chip) {
  const QString bus = chip.mode == kModeUsb ? "USB" : "SMBus";
  return QString::fromStdString(base::HexText(chip.address)) + "h on " + bus;
}

}  // namespace zth::link
