#pragma once

#include <QString>

#include "windows/ChildWindow.h"

namespace zth::shell {

/// Whether the program has a window of that objectName.
bool WindowExists(const QString& name);

/// Makes the window, not yet loaded; null when there is none of that name. The caller owns it.
windows::ChildWindow* MakeWindow(const QString& name, const windows::Context& context);

}  // namespace zth::shell
