#pragma once

#include <QString>

class QMessageBox;

namespace zth::platform {

/// Puts a text between a box's own and its buttons, in a frame that scrolls, and beneath it a button that copies it.
void AddDetails(QMessageBox& box, const QString& details);

}  // namespace zth::platform
