#include "windows/BoxHint.h"

#include <QLineEdit>
#include <QPalette>

#include "widgets/Colours.h"

namespace zth::windows {

HintColours HintColoursOn(const QPalette& palette) {
  if (widgets::IsDark(palette)) return {QColor(0x6B, 0x35, 0x12), QColor(0xFF, 0xF1, 0xE0)};
  return {QColor(0xFF, 0xE3, 0xC2), QColor(0x5A, 0x2A, 0x00)};
}

void ShowHint(QLineEdit& box, const QString& hint, const QString& usual) {
  // Called at every key press. While a hint is shown, colours are set again each time, since the palette may have
  // changed.
  if (hint.isEmpty() && box.accessibleDescription().isEmpty() && box.toolTip() == usual) return;
  box.setToolTip(hint.isEmpty() ? usual : hint);
  box.setAccessibleDescription(hint);
  QPalette colours;
  if (!hint.isEmpty()) {
    const HintColours hinted = HintColoursOn(box.window()->palette());
    colours.setColor(QPalette::Base, hinted.ground);
    colours.setColor(QPalette::Text, hinted.text);
  }
  box.setPalette(colours);
}

}  // namespace zth::windows
