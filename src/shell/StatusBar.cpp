#include "shell/StatusBar.h"

#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QTimer>

#include "platform/Services.h"
#include "widgets/Named.h"

namespace zth::shell {

StatusBar::StatusBar(platform::Clock& clock, QWidget* parent)
    : QStatusBar(parent), clock_(clock), message_(AddPanel(1)), date_(AddPanel(2)), time_(AddPanel(3)) {
  setObjectName("sbStatusBar");
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  SetStatus("Status");
  ShowDateAndTime();

  auto* tick = widgets::Named<QTimer>("tmrClock", this);
  tick->setInterval(1000);
  clock.Adopt(*tick);
  connect(tick, &QTimer::timeout, this, &StatusBar::ShowDateAndTime);
  tick->start();
}

QLabel* StatusBar::AddPanel(int number) {
  auto* panel = widgets::Named<QLabel>(QString("sbStatusBar(%1)").arg(number), this);
  panel->setTextFormat(Qt::PlainText);
  panel->setContentsMargins(4, 0, 4, 0);
  if (number == 1) {
    addWidget(panel, 1);
  } else {
    addPermanentWidget(panel);
  }
  return panel;
}

void StatusBar::SetStatus(const QString& text) {
  message_->setText(text);
}

void StatusBar::ShowDateAndTime() {
  const QDateTime now = clock_.WallTime();
  date_->setText(QLocale().toString(now.date(), QLocale::ShortFormat));
  time_->setText(QLocale().toString(now.time(), QLocale::ShortFormat));
}

}  // namespace zth::shell
