#pragma once

#include <QStatusBar>

class QLabel;

namespace zth::platform {
class Clock;
}

namespace zth::shell {

/// The main window's status bar: a message, the date and the time.
class StatusBar final : public QStatusBar {
 public:
  StatusBar(platform::Clock& clock, QWidget* parent);

  void SetStatus(const QString& text);

 private:
  QLabel* AddPanel(int number);
  void ShowDateAndTime();

  platform::Clock& clock_;
  QLabel* message_;
  QLabel* date_;
  QLabel* time_;
};

}  // namespace zth::shell
