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

/// Usable as the name of a test case.
inline std::string WindowOf(const ::testing::TestParamInfo<std::string>& row) {
  return row.param;
}

/// The flags that tell the master timer which windows are open.
std::map<std::string, const bool*> OpenFlags();

/// The number of pages of a window: its tabs, or the charts of its list, or 1 if it has neither.
int Pages(const windows::ChildWindow& window);

/// Shows a page as the user does. Returns the window's name and, if it has pages, the page's text: "frmLimits, Temps".
/// A tab that cannot be selected is skipped and has no name.
std::string ShowPage(windows::ChildWindow& window, int page);

/// Shows each page of an open window and calls `visit` with its name; once if there are no pages. At the end the window
/// shows its first page again.
void ForEachPage(windows::ChildWindow& window, const std::function<void(const std::string& page)>& visit);

}  // namespace zth::testing
