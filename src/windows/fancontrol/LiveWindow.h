#pragma once

#include <deque>
#include <span>

#include "windows/BoundControls.h"
#include "windows/ChildWindow.h"
#include "windows/fancontrol/ChipHint.h"

class QLayout;

namespace zth::windows {

/// A window whose table rows are written individually, each as soon as its control changes. Nothing is written until
/// the load step has shown the chip's values.
class LiveWindow : public ChildWindow {
  Q_OBJECT

 protected:
  /// `shows` as for ChildWindow. The spans' data must live as long as the program.
  LiveWindow(const QString& name, const QString& caption, const Context& context, unsigned shows,
             std::span<const Binding> rows, std::span<const ReadStep> reads);

  /// Creates the controls of some rows below those in `parent`, with labels in its first column. A text box whose
  /// register the monitor polls gets a label for a ChipHint: "lblChipTmin(0)" for "txtTmin(0)".
  void AddRows(QWidget& parent, std::span<const Binding> rows);
  /// Call it last in a window's constructor, when the controls of all rows exist.
  void Finish();

  /// Performs the reads in order and shows the result.
  void LoadControls();
  void RefreshHints();
  /// Called when a control has been written.
  virtual void AfterWrite(const Binding& /*row*/) {}

  /// The window is not ready meanwhile, so that nothing is written back; Form_Load makes it ready again.
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
