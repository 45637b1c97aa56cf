#pragma once

namespace zth::widgets {

/// Makes every Strip accessible to screen readers: its title is its name, and StripSummary is its value and part of its
/// description. Calling it twice is harmless.
void InstallStripAccessibility();

}  // namespace zth::widgets
