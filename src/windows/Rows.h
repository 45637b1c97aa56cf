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

/// A row of a grid: the control, the label before it (none for a check box), and for a text box the line with its
/// up-down, which ends in a stretch.
struct PlacedRow {
  QWidget* control;
  QLabel* label = nullptr;
  QHBoxLayout* pair = nullptr;
};

/// Creates a row's control on the grid's next free line. A check box spans all `columns`.
PlacedRow PlaceRow(QGridLayout& grid, const Binding& row, int columns);

/// Creates the controls of a table on the grid's next free lines, one row each: a check box across both columns, or a
/// label ("lblControl(0)" for "cmbControl(0)") and its buddy, the list or text box. A row without a caption becomes a
/// hidden check box. The tab order is the table's.
void BuildRows(QGridLayout& grid, std::span<const Binding> rows);

/// The same under a heading, with a gap above it unless it is the first.
void BuildGroup(QGridLayout& grid, const QString& heading, std::span<const Binding> rows);

/// A frame with a caption (may be empty) and a grid layout for BuildRows.
QGroupBox* MakeFrame(const QString& name, const QString& caption, QWidget* parent);
QGridLayout& GridOf(QGroupBox& frame);

/// Adds a page to a tab strip and returns its grid, or the grid of a frame on it. The rows are at the top.
QGridLayout& AddPage(QTabWidget& tabs, const QString& caption);
QGridLayout& AddFramedPage(QTabWidget& tabs, const QString& caption, const QString& frame, const QString& frameCaption);

}  // namespace zth::windows
