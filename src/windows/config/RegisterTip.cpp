#include "windows/config/RegisterTip.h"

#include "chip/RegMapStuff.h"

namespace zth::windows {

QString RegisterTip(std::uint8_t reg, base::BitField bits) {
  QString tip = "0x" + QString("%1").arg(reg, 2, 16, QChar('0')).toUpper();
  if (bits.width == 1) {
    tip += QString(" bit %1").arg(bits.shift);
  } else if (bits.width < 8) {
    tip += QString(" bits %1:%2").arg(bits.shift + bits.width - 1).arg(bits.shift);
  }
  const int row = chip::RowOfAddress(reg);
  if (row >= 0) tip += ", " + QString::fromStdString(chip::RegisterTable[static_cast<std::size_t>(row)].Caption);
  return tip;
}

}  // namespace zth::windows
