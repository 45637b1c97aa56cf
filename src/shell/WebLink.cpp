#include "shell/WebLink.h"

#include <QFrame>
#include <QKeyEvent>
#include <QMouseEvent>

#include "widgets/ActionAccess.h"
#include "widgets/Colours.h"

namespace zth::shell {
namespace {

class LinkAccess final : public widgets::ActionAccess {
 public:
  explicit LinkAccess(WebLink* link)
      : ActionAccess(link, QAccessible::Link, {{pressAction(), [link] { emit link->Click(); }}}) {}
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* link = qobject_cast<WebLink*>(object);
  return link != nullptr ? new LinkAccess(link) : nullptr;
}

}  // namespace

WebLink::WebLink(const QString& address, QWidget* parent) : QLabel(address, parent) {
  QAccessible::installFactory(Make);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setFrameStyle(QFrame::NoFrame);
  setToolTip("Open the web site");
  setAccessibleName("Web site " + address);
  QFont underlined = font();
  underlined.setUnderline(true);
  setFont(underlined);
  ShowColour();
}

void WebLink::MarkVisited() {
  visited_ = true;
  ShowColour();
}

void WebLink::ShowColour() {
  const QPalette around = parentWidget()->palette();
  QPalette colours;
  colours.setColor(QPalette::WindowText, visited_ ? QColor(0x80, 0x00, 0x80) : around.color(QPalette::Link));
  // The purple needs a light background, so in a dark palette it gets one.
  const bool ownGround = visited_ && widgets::IsDark(around);
  if (ownGround) colours.setColor(QPalette::Window, QColor(245, 245, 245));
  setAutoFillBackground(ownGround);
  setPalette(colours);
}

void WebLink::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit Click();
}

void WebLink::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
    emit Click();
  } else {
    QLabel::keyPressEvent(event);
  }
}

void WebLink::focusInEvent(QFocusEvent* event) {
  setFrameStyle(QFrame::Box | QFrame::Plain);
  QLabel::focusInEvent(event);
}

void WebLink::focusOutEvent(QFocusEvent* event) {
  setFrameStyle(QFrame::NoFrame);
  QLabel::focusOutEvent(event);
}

void WebLink::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowColour();
}

}  // namespace zth::shell
