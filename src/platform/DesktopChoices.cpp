#include <vector>

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "platform/DesktopParts.h"

namespace zth::platform {
namespace {

QMessageBox::Icon QtIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::Warning:
      return QMessageBox::Warning;
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

int DesktopPrompts::Choose(const ChoiceQuestion& question) {
  // On the heap: a window that is deleted underneath takes its boxes along.
  const QPointer box = new QMessageBox(QtIcon(question.icon), question.title, question.text, QMessageBox::NoButton,
                                       QApplication::activeWindow());
  box->setTextFormat(Qt::PlainText);
  box->setWindowModality(Qt::ApplicationModal);
  std::vector<QAbstractButton*> buttons;
  // One role for all, or the desktop would put them in an order of its own.
  for (const QString& caption : question.choices) {
    buttons.push_back(box->addButton(caption, QMessageBox::ActionRole));
    buttons.back()->setObjectName(QString("choice(%1)").arg(buttons.size() - 1));
  }
  auto* escape = qobject_cast<QPushButton*>(buttons.at(static_cast<std::size_t>(question.escape)));
  box->setEscapeButton(escape);
  box->setDefaultButton(escape);
  box->exec();
  if (box == nullptr) return question.escape;
  int answer = question.escape;
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (buttons[i] == box->clickedButton()) answer = static_cast<int>(i);
  }
  delete box;
  return answer;
}

}  // namespace zth::platform
