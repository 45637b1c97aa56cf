#pragma once

namespace zth::widgets {

/// Lets assistive technology see a gauge as a dial with its reading, and its sliders as children with value and range.
void InstallLGaugeAccess();

}  // namespace zth::widgets
