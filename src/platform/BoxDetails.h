#pragma once

#include <QString>

class QMessageBox;

namespace zth::platform {

/// Adds a scrolling text between a box's own text and its buttons, with a button below it that copies the text.
void AddDetails(QMessageBox& box, const QString& details);

}  // namespace zth::platform
