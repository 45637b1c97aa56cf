#pragma once

#include <initializer_list>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

/// What a user's hands do, as events sent straight to a widget: no event loop runs, so no timer fires and nothing
/// waits.
namespace zth::tests {

inline void Mouse(QWidget& widget, QEvent::Type type, const QPointF& at) {
  const bool moves = type == QEvent::MouseMove;
  const bool releases = type == QEvent::MouseButtonRelease;
  QMouseEvent event(type, at, widget.mapToGlobal(at), moves ? Qt::NoButton : Qt::LeftButton,
                    releases ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void Press(QWidget& widget, const QPointF& at) {
  Mouse(widget, QEvent::MouseButtonPress, at);
}
inline void Drag(QWidget& widget, const QPointF& to) {
  Mouse(widget, QEvent::MouseMove, to);
}
inline void Release(QWidget& widget, const QPointF& at) {
  Mouse(widget, QEvent::MouseButtonRelease, at);
}
/// A whole drag from one place to another.
inline void DragFrom(QWidget& widget, const QPointF& from, const QPointF& to) {
  Press(widget, from);
  Drag(widget, to);
  Release(widget, to);
}

inline void KeyDown(QWidget& widget, Qt::Key key, bool repeat = false) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, repeat);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void KeyUp(QWidget& widget, Qt::Key key, bool repeat = false) {
  QKeyEvent event(QEvent::KeyRelease, key, Qt::NoModifier, {}, repeat);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void Tap(QWidget& widget, Qt::Key key) {
  KeyDown(widget, key);
  KeyUp(widget, key);
}

inline void Wheel(QWidget& widget, int eighths) {
  const QPointF at = QRectF(widget.rect()).center();
  QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, eighths}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                    false);
  QCoreApplication::sendEvent(&widget, &event);
}

}  // namespace zth::tests
