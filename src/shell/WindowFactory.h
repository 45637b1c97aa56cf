#pragma once

#include <QString>

#include "windows/ChildWindow.h"

namespace zth::shell {

/// Whether the program has a window with that objectName.
bool WindowExists(const QString& name);

/// Creates the window, not yet loaded; null if there is none with that name. The caller owns it.
windows::ChildWindow* MakeWindow(const QString& name, const windows::Context& context);

}  // namespace zth::shell
