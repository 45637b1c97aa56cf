#pragma once

class QMenu;

namespace zth::widgets {

class Strip;

/// Creates the context menu for the chart's present state; a child of the chart.
QMenu& MakeStripMenu(Strip& strip);

/// The menu's entries that save and copy, for the button.
QMenu& MakeExportMenu(Strip& strip);

}  // namespace zth::widgets
