#pragma once

namespace zth::widgets {

/// Presents a gauge to assistive technology as a dial with its reading, with the sliders as children with value and
/// range.
void InstallLGaugeAccess();

}  // namespace zth::widgets
