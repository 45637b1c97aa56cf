#include "link/ChipId.h"

#include "base/NumberText.h"
#include "link/Declarations.h"

namespace zth::link {

ChipId ChipInUse() {
  return {Bus.InterfaceMode, Bus.DeviceAddress};
}

void Use(const ChipId& chip) {
  Bus.DeviceAddress = chip.address;
  if (chip.mode != 0) Bus.InterfaceMode = chip.mode;
}

Meanwhile::Meanwhile(const ChipId& chip) : before_(ChipInUse()) {
  Use(chip);
}

Meanwhile::~Meanwhile() {
  Bus.InterfaceMode = before_.mode;
  Bus.DeviceAddress = before_.address;
}

ChipId ChipOf(const QString& text) {
  ChipId chip{0, base::LeadingHex(text.toStdString())};
  if (text.contains("USB")) chip.mode = kModeUsb;
  if (text.contains("SMBus")) chip.mode = kModeSmbus;
  return chip;
}

QString TextOf(const ChipId& chip) {
  const QString bus = chip.mode == kModeUsb ? "USB" : "SMBus";
  return QString::fromStdString(base::HexText(chip.address)) + "h on " + bus;
}

}  // namespace zth::link
