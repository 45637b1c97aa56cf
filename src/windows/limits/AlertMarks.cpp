#include "windows/limits/AlertMarks.h"

#include <utility>

#include <QTabBar>
#include <QTabWidget>

#include "base/Counted.h"
#include "widgets/Badge.h"
#include "windows/Desktop.h"

namespace zth::windows {
namespace {

QString Told(const QStringList& channels) {
  if (channels.isEmpty()) return "No alert";
  return QString::fromStdString(base::Counted(channels.size(), "alerts")) + ": " + channels.join(", ");
}

}  // namespace

AlertMarks::AlertMarks(QTabWidget& tabs, Desktop& desktop, QString window)
    : tabs_(tabs), desktop_(desktop), window_(std::move(window)) {}

void AlertMarks::Show(const std::vector<QStringList>& channels) {
  if (shown_ == channels) return;
  shown_ = channels;
  int all = 0;
  for (int tab = 0; tab < tabs_.count(); ++tab) {
    const QStringList& red = channels.at(static_cast<std::size_t>(tab));
    const int count = static_cast<int>(red.size());
    all += count;
    tabs_.setTabIcon(tab, count > 0 ? widgets::BadgeIcon(count) : QIcon());
    tabs_.setTabToolTip(tab, Told(red));  // assistive technology reads this as the tab's description, too
  }
  desktop_.MarkAlerts(window_, all);
}

void AlertMarks::Leave() const {
  desktop_.MarkAlerts(window_, 0);
}

int AlertMarks::Fit() {
  const int height = tabs_.fontMetrics().height();
  tabs_.setIconSize({height * 4 / 3, height});
  int marks = 0;
  for (int tab = 0; tab < tabs_.count(); ++tab) marks += tabs_.tabIcon(tab).isNull() ? 1 : 0;
  constexpr int kGap = 6;  // between a mark and the tab's text
  return tabs_.tabBar()->sizeHint().width() + marks * (tabs_.iconSize().width() + kGap);
}

}  // namespace zth::windows
