#pragma once

#include <functional>
#include <stdexcept>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

/// A user's input, as events sent directly to a widget: no event loop runs, so no timer fires and nothing waits.
namespace zth::tests {

inline void Mouse(QWidget& widget, QEvent::Type type, const QPointF& at, Qt::MouseButton button = Qt::LeftButton) {
  const bool moves = type == QEvent::MouseMove;
  const bool releases = type == QEvent::MouseButtonRelease;
  QMouseEvent event(type, at, widget.mapToGlobal(at), moves ? Qt::NoButton : button, releases ? Qt::NoButton : button,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void Key(QWidget& widget, QEvent::Type type, Qt::Key key, bool repeat) {
  QKeyEvent event(type, key, Qt::NoModifier, {}, repeat);
  QCoreApplication::sendEvent(&widget, &event);
}

inline void Wheel(QWidget& widget, int eighths, Qt::KeyboardModifiers modifiers = {}, const QPointF& at = {}) {
  QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, eighths}, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&widget, &event);
}

/// Plays steps separated by blanks: "press@70", "drag@10", "drop@10", and "pull@70>10" for all three, at places that
/// `place` resolves by name; "Right" taps a key, "+Right" holds it down, "*Right" repeats it, "-Right" releases it;
/// "wheel=120" turns the wheel; "enabled=0" and the like set a property.
inline void Play(QWidget& widget, const QString& steps, const std::function<QPointF(const QString&)>& place = {}) {
  for (const QString& step : steps.split(' ', Qt::SkipEmptyParts)) {
    const QString name = step.section('=', 0, 0), at = step.section('@', 1).section('>', 0, 0);
    if (step.contains('@')) {
      const bool pull = step.contains('>');
      const auto to = pull ? step.section('>', 1) : at;
      if (step[0] == 'p') Mouse(widget, QEvent::MouseButtonPress, place(at));
      if (pull || step.startsWith("drag")) Mouse(widget, QEvent::MouseMove, place(to));
      if (pull || step.startsWith("drop")) Mouse(widget, QEvent::MouseButtonRelease, place(to));
    } else if (step.contains('=')) {
      const double value = step.section('=', 1).toDouble();
      if (name == "wheel") {
        Wheel(widget, static_cast<int>(value));
      } else if (!widget.setProperty(name.toLatin1().constData(), value)) {
        throw std::runtime_error(step.toStdString());
      }
    } else {
      const bool repeat = step[0] == '*', down = step[0] == '+', up = step[0] == '-';
      const Qt::Key key = QKeySequence(step.mid(repeat || down || up ? 1 : 0))[0].key();
      if (repeat) Key(widget, QEvent::KeyRelease, key, true);
      if (!up) Key(widget, QEvent::KeyPress, key, repeat);
      if (!down && !repeat) Key(widget, QEvent::KeyRelease, key, false);
    }
  }
}

}  // namespace zth::tests
