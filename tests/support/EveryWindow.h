#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QString>

#include "windows/ChildWindow.h"

namespace zth::testing {

/// Every window that a menu entry opens, in the order of the menus.
std::vector<QString> EveryWindow();

/// Calls `visit` on each page of an open window: on each tab that can be picked and each chart of its list, or once
/// where there is neither. `page` is the window's name and, where it has pages, the page's text: "frmLimits, Temps".
/// The window shows its first page again at the end.
void ForEachPage(windows::ChildWindow& window, const std::function<void(const std::string& page)>& visit);

}  // namespace zth::testing
