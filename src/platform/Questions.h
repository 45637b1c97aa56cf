#pragma once

class QWidget;

/// The boxes and file dialogs that wait for an answer. Under each runs an event loop, and above it on the stack stands
/// the handler that asked. What the loop lets through may close that handler's own window, and the handler goes on
/// afterwards all the same. So a window that closes takes its questions back, they count as cancelled, and it is
/// deleted only when the last handler that has asked is through.
namespace zth::platform {

/// Stands while a question waits.
class OpenQuestion {
 public:
  OpenQuestion();
  ~OpenQuestion();
  OpenQuestion(const OpenQuestion&) = delete;
  OpenQuestion& operator=(const OpenQuestion&) = delete;
};

/// For a widget that is being closed: cancels what is asked from within it, and while any question waits puts off the
/// deletion that WA_DeleteOnClose announces.
void CloseQuestions(QWidget& closing);

/// True for a widget in a window whose deletion was put off: nobody sees what it would ask.
bool IsClosed(const QWidget* asker);

}  // namespace zth::platform
