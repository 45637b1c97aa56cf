#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "windows/ChildWindow.h"

namespace zth::testing {

/// Every window that a menu entry opens, in the order of the menus.
std::vector<std::string> EveryWindow();

/// As the name of a case.
inline std::string WindowOf(const ::testing::TestParamInfo<std::string>& row) {
  return row.param;
}

/// The flags by which the master timer knows of windows.
std::map<std::string, const bool*> OpenFlags();

/// The pages of a window: its tabs, or the charts of its list, or one where there is neither.
int Pages(const windows::ChildWindow& window);

/// Shows a page as the user does and gives the window's name and, where it has pages, the page's text: "frmLimits,
/// Temps". A tab that cannot be picked stays aside and has no name.
std::string ShowPage(windows::ChildWindow& window, int page);

/// Calls `visit` with the name of each page of an open window as it shows, once where there are none. The window shows
/// its first page again at the end.
void ForEachPage(windows::ChildWindow& window, const std::function<void(const std::string& page)>& visit);

}  // namespace zth::testing
