#pragma once

#include <QWidget>

#include "tasks/Discovery.h"

class QLabel;

namespace zth::shell {

/// The start window: the program's name and version, and the progress of the search for a chip.
class frmSplash final : public QWidget, public tasks::SearchSigns {
  Q_OBJECT

 public:
  frmSplash();

  /// Shows the board that the searched link talks to; nothing for an empty name.
  void SetBoard(const QString& name) override;

  /// Shows the current step.
  void SetStep(const QString& text) override;

  /// Makes the bar and the step's text visible.
  void ShowProgress() override;

  /// The width of the bar in percent of its full width, 0 to 100.
  double Progress() const { return progress_; }
  void SetProgress(double percent) override;

 private:
  QLabel* lblBoard_;
  QLabel* lblProgInfo_;
  QLabel* lblProgress_;
  QWidget* track_;
  double progress_ = 0;
};

}  // namespace zth::shell
