#pragma once

namespace zth::widgets {

/// Makes every Strip tell screen readers its title as its name and StripSummary as its value and in its description.
/// Doing it twice is harmless.
void InstallStripAccessibility();

}  // namespace zth::widgets
