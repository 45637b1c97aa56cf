#pragma once

#include <functional>
#include <vector>

#include <QWidget>

class QToolButton;

namespace zth::widgets {

class Strip;

/// The buttons over a chart: what its menu does, in sight. They stand at the right of the title's row, which each chart
/// has anyway, and so take no height from any plot; where the row holds the title alone they stay away, and the menu
/// still has all of it. No part of a saved picture.
class StripBar final : public QWidget {
  Q_OBJECT

 public:
  explicit StripBar(Strip& strip);

  /// Takes its place in a row of `height` pixels, of which the title takes those up to `titleEnd`.
  void Place(int height, int titleEnd);
  /// Shows what can be done to the chart now.
  void ShowState();
  /// Opens the menu of what can be saved and copied, below its button where that shows.
  void OpenExport();

 private:
  QToolButton* Add(const char* name, std::function<void()> handler);

  Strip& strip_;
  std::vector<QToolButton*> buttons_;
  QToolButton* hold_;
  QToolButton* export_;
};

}  // namespace zth::widgets
