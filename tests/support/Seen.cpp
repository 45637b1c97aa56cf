#include "tests/support/Seen.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMdiArea>
#include <QPainter>

namespace zth::testing {

TextRecorder::TextRecorder(QWidget& widget) : QPaintEngine(AllFeatures), size_(widget.size()) {
  widget.render(this, {}, {}, {});
}

void TextRecorder::drawTextItem(const QPointF& at, const QTextItem& item) {
  if (item.text().trimmed().isEmpty()) return;
  const QRectF place(at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent());
  texts.push_back({item.text(), painter()->deviceTransform().mapRect(place), painter()->pen().color(), item.font()});
}

int TextRecorder::metric(PaintDeviceMetric of) const {
  if (of == PdmWidth || of == PdmHeight) return of == PdmWidth ? size_.width() : size_.height();
  if (of == PdmDevicePixelRatioScaled) return static_cast<int>(devicePixelRatioFScale());
  return of == PdmDevicePixelRatio ? 1 : of == PdmDepth ? 32 : 96;
}

std::vector<QWidget*> Shown(QWidget& root) {
  std::vector<QWidget*> shown;
  for (QWidget* widget : root.findChildren<QWidget*>()) {
    bool child = false;
    for (const QWidget* at = widget; at != &root; at = at->parentWidget()) {
      child = child || at->isWindow() || qobject_cast<const QMdiArea*>(at) != nullptr;
    }
    if (widget->isVisible() && !child) shown.push_back(widget);
  }
  return shown;
}

std::string Told(const QWidget& widget) {
  const QWidget* named = &widget;
  while (named->objectName().isEmpty() && named->parentWidget() != nullptr) named = named->parentWidget();
  return std::string(widget.metaObject()->className()) + " " + named->objectName().toStdString();
}

void ChangeEach(const QWidget& window) {
  for (auto* check : window.findChildren<QCheckBox*>()) {
    if (check->isEnabled()) check->toggle();
  }
  for (auto* list : window.findChildren<QComboBox*>()) {
    if (list->isEnabled()) list->setCurrentIndex((list->currentIndex() + 1) % std::max(1, list->count()));
  }
}

Points PointsOf(const widgets::Strip& chart, int trace) {
  Points points;
  for (const QVariant& pair : chart.TracePoints(trace)) {
    points.emplace_back(pair.toList()[0].toDouble(), pair.toList()[1].toDouble());
  }
  return points;
}

std::string Captions(widgets::Strip& chart, int first, int last) {
  QStringList captions;
  for (int slot = first; slot <= last; ++slot) {
    chart.SetLabelIndex(slot);
    captions << chart.Caption();
  }
  return captions.join('|').toStdString();
}

}  // namespace zth::testing
