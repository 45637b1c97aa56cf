#include "windows/regmap/BoxHint.h"

#include <algorithm>

#include <QLineEdit>
#include <QPalette>

#include "windows/regmap/RegisterTexts.h"

namespace zth::windows {
namespace {

constexpr std::int32_t kHighest = 0xFF;

bool IsByte(std::int32_t number) {
  return number >= 0 && number <= kHighest;
}

}  // namespace

QString AddressHint(std::int32_t address) {
  if (IsByte(address)) return {};
  return QString("There is no register at %1: nothing is sent to the chip, and a read shows 0.")
      .arg(HexWithSuffix(address));
}

QString ValueHint(std::int32_t value) {
  if (IsByte(value)) return {};
  const std::int32_t sent = std::clamp(value, 0, kHighest);
  return QString("A register holds 0 to 255: a write sends %1 (%2).").arg(sent).arg(HexWithSuffix(sent));
}

void ShowHint(QLineEdit& box, const QString& hint) {
  if (hint.isEmpty() && box.toolTip().isEmpty()) return;
  box.setToolTip(hint);
  QPalette colours;
  if (!hint.isEmpty()) {
    const bool dark = box.window()->palette().color(QPalette::Window).lightness() < 128;
    colours.setColor(QPalette::Base, dark ? QColor(0x6B, 0x35, 0x12) : QColor(0xFF, 0xE3, 0xC2));
    colours.setColor(QPalette::Text, dark ? QColor(0xFF, 0xF1, 0xE0) : QColor(0x5A, 0x2A, 0x00));
  }
  box.setPalette(colours);
}

}  // namespace zth::windows
