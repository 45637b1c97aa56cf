#pragma once

#include <functional>
#include <stdexcept>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QStringList>
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

inline void KeyDown(QWidget& widget, Qt::Key key, bool repeat = false) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, repeat);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void KeyUp(QWidget& widget, Qt::Key key, bool repeat = false) {
  QKeyEvent event(QEvent::KeyRelease, key, Qt::NoModifier, {}, repeat);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void Wheel(QWidget& widget, int eighths) {
  const QPointF at = QRectF(widget.rect()).center();
  QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, eighths}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                    false);
  QCoreApplication::sendEvent(&widget, &event);
}

/// Plays steps that stand apart by blanks: "press@70", "drag@10", "drop@10" and "pull@70>10", all three, at places
/// that `place` knows by name; "Right" taps a key, "+Right" holds it down, "*Right" is its repetition, "-Right" lets
/// go; "wheel=120" turns the wheel; "enabled=0" and the like set a property.
inline void Play(QWidget& widget, const QString& steps, const std::function<QPointF(const QString&)>& place = {}) {
  for (const QString& step : steps.split(' ', Qt::SkipEmptyParts)) {
    const auto key = [&](qsizetype from) { return QKeySequence(step.mid(from))[0].key(); };
    const QString name = step.section('=', 0, 0), at = step.section('@', 1).section('>', 0, 0);
    if (step.contains('@')) {
      if (step[0] == 'p') Press(widget, place(at));
      if (step.startsWith("drag")) Drag(widget, place(at));
      if (step.startsWith("drop")) Release(widget, place(at));
      if (!step.contains('>')) continue;
      Drag(widget, place(step.section('>', 1)));
      Release(widget, place(step.section('>', 1)));
    } else if (step.contains('=')) {
      const double value = step.section('=', 1).toDouble();
      if (name == "wheel") {
        Wheel(widget, static_cast<int>(value));
      } else if (!widget.setProperty(name.toLatin1().constData(), value)) {
        throw std::runtime_error(step.toStdString());
      }
    } else if (step[0] == '*') {
      KeyUp(widget, key(1), true);
      KeyDown(widget, key(1), true);
    } else {
      const int sign = step[0] == '+' || step[0] == '-' ? 1 : 0;
      if (step[0] != '-') KeyDown(widget, key(sign));
      if (step[0] != '+') KeyUp(widget, key(sign));
    }
  }
}

}  // namespace zth::tests
