#pragma once

#include <QStatusBar>

class QLabel;

namespace zth::platform {
class Clock;
}

namespace zth::shell {

/// The main window's status bar: a message, the date and the time; between them what the
/// link in use talks to.
class StatusBar final : public QStatusBar {
 public:
  StatusBar(platform::Clock& clock, QWidget* parent);

  void SetStatus(const QString& text);
  /// What the link in use talks to; its panel shows when there is something to say.
  void SetBoard(const QString& name);

  /// Says what the program is at, over what stands there, and paints it at once; then puts back what was there.
  void ShowWork(const QString& text);
  void EndWork();

  /// How long a message stands.
  static constexpr int kMessageMs = 10'000;

 private:
  QLabel* AddPanel(int number);
  void AddBoard();
  void ShowDateAndTime();

  platform::Clock& clock_;
  QLabel* message_;
  QString work_;
  QString beneathWork_;  ///< the message that stood there before
  QLabel* date_;
  QLabel* time_;
  QLabel* lblBoard_;
};

}  // namespace zth::shell
