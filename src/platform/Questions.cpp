#include "platform/Questions.h"

#include <algorithm>
#include <vector>

#include <QDialog>
#include <QPointer>

namespace zth::platform {
namespace {

struct Questions {
  int open = 0;
  std::vector<QPointer<QWidget>> closed;  ///< deleted after the last question
};

Questions& All() {
  static Questions questions;
  return questions;
}

}  // namespace

OpenQuestion::OpenQuestion() {
  ++All().open;
}

OpenQuestion::~OpenQuestion() {
  Questions& all = All();
  if (--all.open > 0) return;
  // deleteLater is called here, at the handler's loop level, so that the widget is deleted once the handler has
  // returned to its event loop, and not in the loop of its next question. The widgets stay in the list until then.
  std::erase_if(all.closed, [](const QPointer<QWidget>& widget) { return widget.isNull(); });
  for (const QPointer<QWidget>& widget : all.closed) widget->deleteLater();
}

void CloseQuestions(QWidget& closing) {
  const auto dialogs = closing.findChildren<QDialog*>();
  for (QDialog* dialog : dialogs) dialog->reject();
  if (All().open == 0 || !closing.testAttribute(Qt::WA_DeleteOnClose)) return;
  closing.setAttribute(Qt::WA_DeleteOnClose, false);
  All().closed.emplace_back(&closing);
}

bool IsClosed(const QWidget* asker) {
  const auto& closed = All().closed;
  for (; asker != nullptr; asker = asker->parentWidget()) {
    if (std::ranges::find(closed, asker, &QPointer<QWidget>::data) != closed.end()) return true;
  }
  return false;
}

}  // namespace zth::platform
