#pragma once

#include <span>

#include "windows/Bindings.h"

class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QString;
class QTabWidget;
class QWidget;

namespace zth::windows {

/// A row of a grid: the control, the label before it unless it is a check box, and a text box's line with its up-down,
/// which ends in a stretch.
struct PlacedRow {
  QWidget* control;
  QLabel* label = nullptr;
  QHBoxLayout* pair = nullptr;
};

/// Makes a row's control on a line of its own under what the grid holds already. A check box takes all `columns`.
PlacedRow PlaceRow(QGridLayout& grid, const Binding& row, int columns);

/// Makes the controls of a table, each on a row of its own under what the grid holds already: a check box over both
/// columns, a label ("lblControl(0)" for "cmbControl(0)") and the list or text box that is its buddy. A row without a
/// caption becomes a hidden check box. The tab order is the table's.
void BuildRows(QGridLayout& grid, std::span<const Binding> rows);

/// The same under a heading of its own, with a gap above it unless it is the first.
void BuildGroup(QGridLayout& grid, const QString& heading, std::span<const Binding> rows);

/// A frame with a caption, which may be empty, whose layout is a grid for BuildRows.
QGroupBox* MakeFrame(const QString& name, const QString& caption, QWidget* parent);
QGridLayout& GridOf(QGroupBox& frame);

/// A page more on a tab strip: its grid, or the grid of a frame on it. The rows stand at the top.
QGridLayout& AddPage(QTabWidget& tabs, const QString& caption);
QGridLayout& AddFramedPage(QTabWidget& tabs, const QString& caption, const QString& frame, const QString& frameCaption);

}  // namespace zth::windows
