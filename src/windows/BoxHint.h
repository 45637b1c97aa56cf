#pragma once

#include <QColor>
#include <QString>

class QLineEdit;
class QPalette;

namespace zth::windows {

/// The colours for a text that will not take effect as shown, on the background of `palette`.
struct HintColours {
  QColor ground;
  QColor text;
};
HintColours HintColoursOn(const QPalette& palette);

/// Shows that a text will not take effect as shown, and why, with the box's colours, tool tip and description. An empty
/// hint removes all of that and restores the tool tip `usual`.
void ShowHint(QLineEdit& box, const QString& hint, const QString& usual = {});

}  // namespace zth::windows
