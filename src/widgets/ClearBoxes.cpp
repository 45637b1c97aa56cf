#include "widgets/ClearBoxes.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

#include "widgets/Colours.h"

namespace zth::widgets {

void ClearBoxes::Install() {
  if (qobject_cast<ClearBoxes*>(QApplication::style()) == nullptr) {
    QApplication::setStyle(new ClearBoxes(QApplication::style()->name()));
  }
}

QString ClearBoxes::NameBeneath() {
  const auto* own = qobject_cast<ClearBoxes*>(QApplication::style());
  return (own != nullptr ? own->baseStyle() : QApplication::style())->name();
}

void ClearBoxes::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool ring = element == PE_IndicatorRadioButton;
  const bool box = element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck;
  if ((!ring && !box) || !IsDark(option->palette)) return;
  const QPalette& palette = option->palette;
  const double share = (option->state & State_Enabled) != 0 ? 0.8 : 0.35;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(Blend(palette.color(QPalette::Base), palette.color(QPalette::WindowText), share), 1));
  painter->setBrush(Qt::NoBrush);
  const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  ring ? painter->drawEllipse(edge) : painter->drawRect(edge);
  painter->restore();
}

}  // namespace zth::widgets
