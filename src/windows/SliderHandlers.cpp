#include "windows/SliderHandlers.h"

#include "platform/Services.h"
#include "widgets/GSlider.h"

namespace zth::windows {
namespace {

void Connect(widgets::GSlider& slider, void (widgets::GSlider::*report)(int), const Handler& handler) {
  if (handler) QObject::connect(&slider, report, &slider, ByUser(slider, handler));
}

}  // namespace

void OnSlide(widgets::GSlider& slider, const SliderHandlers& handlers, platform::Clock& clock) {
  LimitWheel(slider, Wheel::WithFocus);
  clock.Adopt(slider.PaceTimer());
  Connect(slider, &widgets::GSlider::MouseDown, handlers.mouseDown);
  Connect(slider, &widgets::GSlider::Change, handlers.change);
  Connect(slider, &widgets::GSlider::MouseUp, handlers.mouseUp);
}

}  // namespace zth::windows
