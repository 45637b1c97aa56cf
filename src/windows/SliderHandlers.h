#pragma once

#include "windows/Handlers.h"

namespace zth::widgets {
class GSlider;
}
namespace zth::platform {
class Clock;
}

/// The handlers of a slider, beside those of the standard controls in Handlers.h.
namespace zth::windows {

/// The user takes hold of the slider, changes its value, lets go. An empty handler is left out. The slider's pace runs
/// by `clock`.
struct SliderHandlers {
  Handler mouseDown;
  Handler change;
  Handler mouseUp;
};

void OnSlide(widgets::GSlider& slider, const SliderHandlers& handlers, platform::Clock& clock);

}  // namespace zth::windows
