#pragma once

#include <cstdint>

#include <QString>

class QLineEdit;

/// What becomes of a number that is no byte. The window passes on what was typed; the link has the last word.
namespace zth::windows {

/// Empty for an address of 0 to 255.
QString AddressHint(std::int32_t address);

/// Empty for a value of 0 to 255.
QString ValueHint(std::int32_t value);

/// Shows the hint by the box's colour and tool tip; an empty one takes both away.
void ShowHint(QLineEdit& box, const QString& hint);

}  // namespace zth::windows
