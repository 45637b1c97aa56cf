#include "widgets/StepKeys.h"

namespace zth::widgets {
namespace {

constexpr double kPageSteps = 10;

}  // namespace

std::optional<double> SteppedByKey(const QKeyEvent& event, double value, double step, double minimum, double maximum) {
  if (event.modifiers() & ~Qt::KeypadModifier) return std::nullopt;
  switch (event.key()) {
    case Qt::Key_Right:
    case Qt::Key_Up:
      return value + step;
    case Qt::Key_Left:
    case Qt::Key_Down:
      return value - step;
    case Qt::Key_PageUp:
      return value + kPageSteps * step;
    case Qt::Key_PageDown:
      return value - kPageSteps * step;
    case Qt::Key_Home:
      return minimum;
    case Qt::Key_End:
      return maximum;
    default:
      return std::nullopt;
  }
}

}  // namespace zth::widgets
