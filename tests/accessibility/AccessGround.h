#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QAccessible>
#include <QWidget>
#include <gtest/gtest.h>

#include "tests/support/Desk.h"

namespace zth::testing {

/// Every window and frmMain, one a case, on a chip that keeps few controls disabled.
class Access : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override;

  /// Calls `visit` on each page of the window as it shows. frmMain's page leaves out its child windows.
  void EachPage(const std::function<void(QWidget& root, const std::string& page)>& visit);

  Desk desk;
};

/// The names of all windows, frmMain first.
std::vector<std::string> AllWindows();
std::string NameOfCase(const ::testing::TestParamInfo<std::string>& row);

/// The visible widgets of a page, without what stands in frmMain's area of child windows.
std::vector<QWidget*> Shown(QWidget& root);

/// For the messages: the class and objectName of a widget, or of the first of its parents that has one.
std::string Told(const QWidget& widget);

}  // namespace zth::testing
