#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QWidget>

namespace zth::testing {

/// One thing that a user can do to a control.
struct Way {
  std::string name;  ///< "txtDec: type 50"
  std::function<void()> act;
};

/// The controls of a window that a user can operate at present: visible and enabled, in the order of their creation.
std::vector<QWidget*> OperableControls(const QWidget& window);

enum class Extent { Few, All };

/// What a user can do to a control, with a few or all of a list's items and of the texts; empty if it is for display
/// only.
std::vector<Way> WaysToOperate(QWidget& control, Extent extent = Extent::Few);

}  // namespace zth::testing
