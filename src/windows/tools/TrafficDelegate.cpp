#include "windows/tools/TrafficDelegate.h"

#include <QPainter>
#include <QStyle>

namespace zth::windows {

TrafficDelegate::TrafficDelegate(QWidget& table) : QStyledItemDelegate(&table), table_(table), text_(table.font()) {}

void TrafficDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  if (text_.Font() != option.font) text_ = widgets::StripText(option.font);
  const bool isPlain = !(option.state & (QStyle::State_Selected | QStyle::State_HasFocus)) &&
                       !index.data(Qt::ForegroundRole).isValid() && !index.data(Qt::FontRole).isValid();
  const QString text = isPlain ? index.data(Qt::DisplayRole).toString() : QString();
  if (isPlain && text.isEmpty()) return;
  const int margin = table_.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, &table_) + 1;
  if (!isPlain || text_.Width(text) > option.rect.width() - 2 * margin) {
    QStyledItemDelegate::paint(painter, option, index);
    return;
  }
  painter->setPen(option.palette.color(QPalette::Text));
  const int top = option.rect.center().y() + 1 - text_.Height() / 2;
  text_.Draw(*painter, QPointF(option.rect.left() + margin, top), text);
}

}  // namespace zth::windows
