#pragma once

#include <QWidget>

class QLabel;

namespace zth::shell {

/// The start window: the program's name and version, and the progress of the search for a chip.
class frmSplash final : public QWidget {
  Q_OBJECT

 public:
  frmSplash();

  /// Shows the board that the searched link talks to; nothing for an empty name.
  void SetBoard(const QString& name);

  /// Shows the current step.
  void SetStep(const QString& text);

  /// Makes the bar and the step's text visible.
  void ShowProgress();

  /// The width of the bar in percent of its full width, 0 to 100.
  double Progress() const { return progress_; }
  void SetProgress(double percent);

 private:
  QLabel* lblBoard_;
  QLabel* lblProgInfo_;
  QLabel* lblProgress_;
  QWidget* track_;
  double progress_ = 0;
};

}  // namespace zth::shell
