#pragma once

class QWidget;

/// Boxes and file dialogs that wait for an answer. Each runs its own event loop while the asking handler is still on
/// the stack. An event in that loop may close the handler's window, yet the handler continues afterwards. So a closing
/// window cancels its questions, and it is deleted only after the last asking handler has returned.
namespace zth::platform {

/// Exists while a question waits.
class OpenQuestion {
 public:
  OpenQuestion();
  ~OpenQuestion();
  OpenQuestion(const OpenQuestion&) = delete;
  OpenQuestion& operator=(const OpenQuestion&) = delete;
};

/// Called for a widget that is being closed: cancels the questions asked from within it and, while any question waits,
/// delays the deletion that WA_DeleteOnClose would cause.
void CloseQuestions(QWidget& closing);

/// True if the widget's window is closed and its deletion delayed: the user would not see its questions.
bool IsClosed(const QWidget* asker);

}  // namespace zth::platform
