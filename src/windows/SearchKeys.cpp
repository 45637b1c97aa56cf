#include "windows/SearchKeys.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QShortcut>

namespace zth::windows {
namespace {

class SearchKeys final : public QObject {
 public:
  SearchKeys(QLineEdit& box, QWidget& view) : QObject(&box), box_(box), view_(&view) { box.installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != &box_ || event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape && !box_.text().isEmpty()) {
      box_.clear();
      return true;
    }
    if (key == Qt::Key_Down && view_ != nullptr) {
      view_->setFocus();
      return true;
    }
    return false;
  }

 private:
  QLineEdit& box_;
  QPointer<QWidget> view_;
};

}  // namespace

void AddSearchKeys(QLineEdit& box, QWidget& view) {
  new SearchKeys(box, view);
}

void AddFindKey(QWidget& window, QLineEdit& box) {
  auto* find = new QShortcut(QKeySequence::Find, &window);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  QObject::connect(find, &QShortcut::activated, &box, [&box] {
    box.setFocus(Qt::ShortcutFocusReason);
    box.selectAll();
  });
}

void KeepRoomForHint(QLineEdit& box) {
  constexpr int kAround = 6;  // of a character's width: the frame and the button that clears the box
  const QFontMetrics metrics = box.fontMetrics();
  box.setMinimumWidth(metrics.horizontalAdvance(box.placeholderText()) + kAround * metrics.averageCharWidth());
}

}  // namespace zth::windows
