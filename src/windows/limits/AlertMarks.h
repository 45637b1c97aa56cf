#pragma once

#include <vector>

#include <QStringList>

class QTabWidget;

namespace zth::windows {

class Desktop;

/// The marks that tell, without a look at the lamps, how many of them are red: on each tab, and on the tool bar's
/// button of the window.
class AlertMarks {
 public:
  AlertMarks(QTabWidget& tabs, Desktop& desktop, QString window);

  /// The channels whose lamps are red, tab by tab.
  void Show(const std::vector<QStringList>& channels);
  /// Takes the tool bar's mark away, as the window closes.
  void Leave() const;
  /// Gives the marks the size of the present font, and tells the width that the tabs need with a mark each. A window
  /// does not grow for marks that come while it stands: their room is kept from the start.
  int Fit();

 private:
  QTabWidget& tabs_;
  Desktop& desktop_;
  QString window_;
  std::vector<QStringList> shown_;
};

}  // namespace zth::windows
