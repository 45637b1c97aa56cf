#pragma once

#include <QStatusBar>

class QLabel;

namespace zth::platform {
class Clock;
}

namespace zth::shell {

/// The main window's status bar: a message, the board that the link in use talks to, the date and the time.
class StatusBar final : public QStatusBar {
 public:
  StatusBar(platform::Clock& clock, QWidget* parent);

  void SetStatus(const QString& text);
  /// Sets the board that the link in use talks to. Its panel shows only when the name is not empty.
  void SetBoard(const QString& name);

  /// Shows what the program is doing in place of the current message, and paints it at once. EndWork brings that
  /// message back.
  void ShowWork(const QString& text);
  void EndWork();

  /// How long a message shows.
  static constexpr int kMessageMs = 10'000;

 private:
  QLabel* AddPanel(int number);
  void AddBoard();
  void ShowDateAndTime();

  platform::Clock& clock_;
  QLabel* message_;
  QString work_;
  QString beneathWork_;  ///< the message that was replaced
  QLabel* date_;
  QLabel* time_;
  QLabel* lblBoard_;
};

}  // namespace zth::shell
