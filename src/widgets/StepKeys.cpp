#include "widgets/StepKeys.h"

namespace zth::widgets {
namespace {

constexpr int kPageSteps = 10;

}  // namespace

std::optional<int> StepsOfKey(const QKeyEvent& event) {
  if (event.modifiers() & ~Qt::KeypadModifier) return std::nullopt;
  switch (event.key()) {
    case Qt::Key_Right:
    case Qt::Key_Up:
      return 1;
    case Qt::Key_Left:
    case Qt::Key_Down:
      return -1;
    case Qt::Key_PageUp:
      return kPageSteps;
    case Qt::Key_PageDown:
      return -kPageSteps;
    case Qt::Key_Home:
      return -kAllSteps;
    case Qt::Key_End:
      return kAllSteps;
    default:
      return std::nullopt;
  }
}

std::optional<double> SteppedByKey(const QKeyEvent& event, double value, double step, double minimum, double maximum) {
  const auto steps = StepsOfKey(event);
  if (!steps) return std::nullopt;
  if (*steps == kAllSteps) return maximum;
  if (*steps == -kAllSteps) return minimum;
  return value + *steps * step;
}

}  // namespace zth::widgets
