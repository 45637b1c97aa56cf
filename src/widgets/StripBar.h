#pragma once

#include <functional>
#include <vector>

#include <QWidget>

class QToolButton;

namespace zth::widgets {

class Strip;

/// The buttons over a chart, which make the entries of its menu visible. They are at the right of the title's row,
/// which every chart has anyway, so they take no height from the plot. When the row has room for the title only, they
/// are hidden; the menu still has every entry. They are not part of a saved picture.
class StripBar final : public QWidget {
  Q_OBJECT

 public:
  explicit StripBar(Strip& strip);

  /// Places the bar in a row of `height` pixels, to the right of the title, which ends at `titleEnd`.
  void Place(int height, int titleEnd);
  /// Updates the buttons to what can be done to the chart now.
  void ShowState();
  /// Opens the menu of what can be saved and copied, below its button if that is visible.
  void OpenExport();

 private:
  QToolButton* Add(const char* name, std::function<void()> handler);

  Strip& strip_;
  std::vector<QToolButton*> buttons_;
  QToolButton* hold_;
  QToolButton* day_;
  QToolButton* export_;
};

}  // namespace zth::widgets
