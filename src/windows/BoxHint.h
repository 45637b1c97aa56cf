#pragma once

#include <QString>

class QLineEdit;

namespace zth::windows {

/// Shows that a text is not in force as it stands, and why, by the box's colours, its tool tip and its description. An
/// empty hint takes all of it away and leaves the tool tip `usual`.
void ShowHint(QLineEdit& box, const QString& hint, const QString& usual = {});

}  // namespace zth::windows
