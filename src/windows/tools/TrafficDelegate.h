#pragma once

#include <QStyledItemDelegate>

#include "widgets/StripText.h"

namespace zth::windows {

/// Draws the cells of the table of calls. The table is drawn anew with every line that is added, and Qt lays out every
/// text of it each time; here a text is laid out once.
class TrafficDelegate : public QStyledItemDelegate {
 public:
  explicit TrafficDelegate(QWidget& table);

  /// Cells that are selected, marked or too narrow for their text look as Qt draws them; all others, too.
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  QWidget& table_;
  mutable widgets::StripText text_;
};

}  // namespace zth::windows
