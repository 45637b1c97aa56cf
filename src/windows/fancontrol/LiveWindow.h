#pragma once

#include <deque>
#include <span>

#include "windows/BoundControls.h"
#include "windows/ChildWindow.h"
#include "windows/fancontrol/ChipHint.h"

class QLayout;

namespace zth::windows {

/// A window as a table whose rows are written one by one, each at once when its control changes. Nothing is written
/// until the load step has shown what the chip holds.
class LiveWindow : public ChildWindow {
  Q_OBJECT

 protected:
  /// `shows` as a ChildWindow has it. All that is spanned lives as long as the program.
  LiveWindow(const QString& name, const QString& caption, const Context& context, unsigned shows,
             std::span<const Binding> rows, std::span<const ReadStep> reads);

  /// Makes the controls of some rows under those that `parent` has already, labels in its first column. Beside a text
  /// whose register the monitor polls there is room for a ChipHint: "lblChipTmin(0)" for "txtTmin(0)".
  void AddRows(QWidget& parent, std::span<const Binding> rows);
  /// The last step of a window's constructor: the controls of all rows stand in it.
  void Finish();

  /// Reads the chip in the order of the reads and shows it.
  void LoadControls();
  void RefreshHints();
  /// Runs when a control has been written.
  virtual void AfterWrite(const Binding& /*row*/) {}

  /// With the window not ready meanwhile, so that nothing is written back; Form_Load makes it ready again.
  void Reread() override;

  bool Ready() const { return ready_; }
  void SetReady(bool ready) { ready_ = ready; }
  const BoundControls& Controls() const { return *controls_; }

 private:
  void Control_Change(const Binding& row);

  std::span<const Binding> rows_;
  std::span<const ReadStep> reads_;
  BoundControls* controls_ = nullptr;
  std::deque<ChipHint> hints_;
  bool ready_ = false;
};

}  // namespace zth::windows
