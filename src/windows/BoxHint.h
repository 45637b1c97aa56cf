#pragma once

#include <QColor>
#include <QString>

class QLineEdit;
class QPalette;

namespace zth::windows {

/// The colours of what is not in force as it stands, on the ground of `palette`.
struct HintColours {
  QColor ground;
  QColor text;
};
HintColours HintColoursOn(const QPalette& palette);

/// Shows that a text is not in force as it stands, and why, by the box's colours, its tool tip and its description. An
/// empty hint takes all of it away and leaves the tool tip `usual`.
void ShowHint(QLineEdit& box, const QString& hint, const QString& usual = {});

}  // namespace zth::windows
