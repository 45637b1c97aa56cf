#pragma once

#include <span>

#include "windows/Bindings.h"
#include "windows/ChildWindow.h"

class QLayout;
class QPushButton;

namespace zth::windows {

class BoundControls;

/// A window's table, reads and writes. They refer to constant data that lives as long as the program.
struct Plan {
  std::span<const Binding> rows;
  std::span<const ReadStep> reads;
  std::span<const WriteStep> writes;
};

/// A configuration window: reads its registers once, keeps the user's changes, and writes all its registers on Apply.
/// Enter is OK and Escape is Cancel.
class ConfigWindow : public ChildWindow {
 public:
  void Form_Load() override;

 protected:
  bool HoldsChanges() const override;

  ConfigWindow(const QString& name, const QString& caption, const Context& context, const Plan& plan);

  /// Call it last in a window's constructor: places `body`, which contains the controls of all rows, above the three
  /// buttons.
  void Finish(QWidget* body);

  void cmdApply_Click();
  void cmdOK_Click();
  void cmdCancel_Click();

 private:
  QPushButton* AddButton(const QString& name, const QString& caption, const QString& tip);

  Plan plan_;
  BoundControls* controls_ = nullptr;
};

}  // namespace zth::windows
