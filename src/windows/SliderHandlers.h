#pragma once

#include "windows/Handlers.h"

namespace zth::widgets {
class GSlider;
}
namespace zth::platform {
class Clock;
}

/// Connects the handlers of a slider; the standard controls are in Handlers.h.
namespace zth::windows {

/// The user grabs the slider, changes its value, releases it. Empty handlers are skipped. `clock` drives the slider's
/// pace timer.
struct SliderHandlers {
  Handler mouseDown;
  Handler change;
  Handler mouseUp;
};

void OnSlide(widgets::GSlider& slider, const SliderHandlers& handlers, platform::Clock& clock);

}  // namespace zth::windows
