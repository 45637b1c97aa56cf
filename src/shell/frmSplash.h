#pragma once

#include <QWidget>

class QLabel;

namespace zth::shell {

/// The window of the start: the program's name and version, and how far the search for a chip is.
class frmSplash final : public QWidget {
  Q_OBJECT

 public:
  frmSplash();

  /// What the link being searched talks to; nothing is shown of an empty name.
  void SetBoard(const QString& name);

  /// What is being done.
  void SetStep(const QString& text);

  /// Makes the bar and the step's text visible.
  void ShowProgress();

  /// Width of the bar in percent of its full width, 0 to 100.
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
