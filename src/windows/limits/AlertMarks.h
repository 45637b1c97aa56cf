#pragma once

#include <vector>

#include <QStringList>

class QTabWidget;

namespace zth::windows {

class Desktop;

/// Marks with the number of red lamps, on each tab and on the window's tool bar button, for when the lamps themselves
/// are out of sight.
class AlertMarks {
 public:
  AlertMarks(QTabWidget& tabs, Desktop& desktop, QString window);

  /// Updates the marks from the channels with red lamps, listed by tab.
  void Show(const std::vector<QStringList>& channels);
  /// Removes the tool bar's mark when the window closes.
  void Leave() const;
  /// Scales the marks to the current font and returns the width that the tabs need if each has a mark. This room is
  /// reserved from the start: a window does not grow for marks that appear later.
  int Fit();

 private:
  QTabWidget& tabs_;
  Desktop& desktop_;
  QString window_;
  std::vector<QStringList> shown_;
};

}  // namespace zth::windows
