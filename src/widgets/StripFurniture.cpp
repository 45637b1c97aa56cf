#include "widgets/StripFurniture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QPainter>
#include <QPainterPath>

#include "widgets/StripOverlay.h"
#include "widgets/StripReadout.h"

namespace zth::widgets {
namespace {

QPolygonF Triangle(const QRectF& rect, StripPart::Kind kind) {
  const QPointF middle = rect.center();
  switch (kind) {
    case StripPart::Kind::XLow:
      return {QPointF(rect.left() + 2, middle.y()), rect.topRight() + QPointF(-2, 1),
              rect.bottomRight() + QPointF(-2, -1)};
    case StripPart::Kind::XHigh:
      return {QPointF(rect.right() - 2, middle.y()), rect.topLeft() + QPointF(2, 1),
              rect.bottomLeft() + QPointF(2, -1)};
    case StripPart::Kind::YHigh:
      return {QPointF(middle.x(), rect.top() + 2), rect.bottomLeft() + QPointF(1, -2),
              rect.bottomRight() + QPointF(-1, -2)};
    default:
      return {QPointF(middle.x(), rect.bottom() - 2), rect.topLeft() + QPointF(1, 2), rect.topRight() + QPointF(-1, 2)};
  }
}

}  // namespace

StripFurniture::StripFurniture(const StripSheet& sheet)
    : painter_(sheet.painter),
      scene_(sheet.scene),
      layout_(sheet.layout),
      colours_(sheet.colours),
      text_(sheet.text),
      bold_(sheet.bold),
      readout_(sheet.readout),
      tag_(StripOverlay::TagOf(sheet)) {}

void StripFurniture::Heading(QRect rect, const QString& text) {
  painter_.setPen(colours_.text);
  const bool whole = bold_.Width(text) <= rect.width();
  const int top = rect.center().y() + 1 - bold_.Height() / 2;
  bold_.Draw(painter_, QPointF(rect.left(), top),
             whole ? text : bold_.Metrics().elidedText(text, Qt::ElideRight, rect.width()));
}

void StripFurniture::Still(QSize size, bool handles, bool paper) {
  const QRect& plot = layout_.plot;
  painter_.fillRect(QRect(QPoint(0, 0), size), colours_.window);
  if (const StripLabel* title = scene_.Label(0)) Heading(layout_.title, title->text);
  for (const StripLabel& label : scene_.labels) {
    if (label.slot == 0 || label.place != StripPlace::Heading) continue;
    const auto zone = static_cast<std::size_t>(std::clamp(label.axis, 0, static_cast<int>(layout_.zones.size()) - 1));
    const int height = bold_.Height();
    const int above = zone > 0 ? layout_.zones[zone - 1].bottom() + 1 : 0;
    const int centre = (above + layout_.zones[zone].top()) / 2;
    Heading(QRect(plot.left(), centre - height / 2, plot.width(), height), label.text);
  }
  if (paper) Paper();
  Frames();
  Numbers();
  Samples();
  if (handles) Handles();
}

void StripFurniture::Scales() {
  // Between the handles and the frames of the zones, and half a line above and below the plot, because the outermost
  // numbers extend that far.
  const int half = text_.Height() / 2 + 1;
  int left = 0;
  for (const StripLayout::Handle& handle : layout_.handles) {
    const bool beside = handle.part.kind == StripPart::Kind::YHigh || handle.part.kind == StripPart::Kind::YLow;
    if (beside) left = std::max(left, handle.rect.right() + 1);
  }
  const QRect beside(QPoint(left, layout_.plot.top() - half),
                     QPoint(layout_.plot.left() - 2, layout_.plot.bottom() + half));
  painter_.setClipRect(beside);
  painter_.fillRect(beside, colours_.window);
  Numbers();
}

void StripFurniture::Paper() {
  for (std::size_t i = 0; i < layout_.zones.size(); ++i) {
    const QRect& zone = layout_.zones[i];
    painter_.fillRect(zone, colours_.paper);
    for (const Tick& tick : layout_.yTicks[i]) {
      const double y = layout_.PixelOfY(scene_.view.At(i), i, tick.value);
      painter_.fillRect(QRectF(zone.left(), std::floor(y), zone.width(), 1), colours_.grid);
    }
  }
}

void StripFurniture::Frames() {
  painter_.setPen(QPen(colours_.frame, 1));
  painter_.setBrush(Qt::NoBrush);
  for (const QRect& zone : layout_.zones) painter_.drawRect(QRectF(zone).adjusted(-0.5, -0.5, 0.5, 0.5));
}

void StripFurniture::Numbers() {
  int lastBottom = -1000;  // across all zones: in low zones, the numbers of two would collide at their border
  painter_.setPen(colours_.text);
  for (std::size_t i = 0; i < layout_.zones.size(); ++i) {
    const QRect& zone = layout_.zones[i];
    for (auto tick = layout_.yTicks[i].rbegin(); tick != layout_.yTicks[i].rend(); ++tick) {
      const double y = layout_.PixelOfY(scene_.view.At(i), i, tick->value);
      const int top = std::clamp(static_cast<int>(std::lround(y)) - text_.Height() / 2, zone.top() - text_.Height() / 2,
                                 zone.bottom() - text_.Height() / 2);
      if (top < lastBottom) continue;
      lastBottom = top + text_.Height();
      text_.Draw(painter_, QPointF(layout_.plot.left() - 6 - text_.Width(tick->text), top), tick->text);
    }
  }
}

void StripFurniture::Handles() {
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setPen(Qt::NoPen);
  for (const StripLayout::Handle& handle : layout_.handles) {
    const bool hovered = scene_.overlay.hovered == handle.part;
    painter_.setBrush(hovered ? colours_.accent : colours_.faint);
    if (handle.part.kind == StripPart::Kind::Border) {
      // The whole gap can be dragged; in a narrow chart the dots make way for the heading in it.
      QPointF middle(handle.rect.center());
      for (const StripLabel& label : scene_.labels) {
        const bool heading = label.place == StripPlace::Heading && label.axis == handle.part.index + 1;
        if (heading) middle.rx() = std::max(middle.x(), layout_.plot.left() + bold_.Width(label.text) + 16.0);
      }
      for (const int dx : {-8, 0, 8}) painter_.drawEllipse(middle + QPointF(dx + 0.5, 0.5), 1.8, 1.8);
    } else {
      painter_.drawPolygon(Triangle(handle.rect, handle.part.kind));
    }
  }
  if (scene_.overlay.focus) {
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(colours_.accent, 1));
    painter_.drawRect(QRectF(layout_.plot).adjusted(-2.5, -2.5, 2.5, 2.5));
  }
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

void StripFurniture::XLabels() {
  painter_.setPen(colours_.text);
  const QRect& row = layout_.xLabels;
  double lastRight = -1e9;
  for (const Tick& tick : layout_.xTicks) {
    const double x = layout_.PixelOfX(tick.value);
    const int width = text_.Width(tick.text);
    if (x < layout_.plot.left() - 1 || x > layout_.plot.right() + 2 || x - width / 2.0 < lastRight + 6) continue;
    lastRight = x + width / 2.0;
    const QRect place(static_cast<int>(std::lround(x - width / 2.0)), row.top(), width, row.height());
    if (!place.adjusted(-2, 0, 2, 0).intersects(tag_)) text_.Draw(painter_, place.topLeft(), tick.text);
  }
  const bool clock = !layout_.xTicks.empty() && layout_.xTicks.back().text.contains(QLatin1Char(':'));
  const QString unit = scene_.IsXY()           ? scene_.setup.xUnit.trimmed()
                       : scene_.ShowsDayTime() ? QStringLiteral("time of day")
                       : clock                 ? QStringLiteral("h:m:s")
                                               : QStringLiteral("s");
  const double left = layout_.plot.right() + layout_.xReach + 2 + kStripHandle;
  if (!layout_.legend.empty()) {
    painter_.setPen(colours_.faint);
    text_.Draw(painter_, QPointF(left + 4, row.top()), unit);
  }
}

void StripFurniture::Sample(QRectF rect, const StripTrace& style, bool shown) {
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setPen(QPen(colours_.frame, 1));
  painter_.setBrush(shown ? colours_.paper : QColor(Qt::transparent));
  painter_.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
  if (shown) {
    QPen pen(colours_.OfTrace(style.colour), std::max(2, style.width), style.style, Qt::FlatCap);
    painter_.setPen(pen);
    painter_.drawLine(QPointF(rect.left() + 3, rect.center().y()), QPointF(rect.right() - 3, rect.center().y()));
  }
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

QRectF StripFurniture::SampleRect(const QRect& row) const {
  return {static_cast<double>(row.left()), std::round(row.center().y() - 4.5), kLegendSample - 6.0, 10};
}

void StripFurniture::Samples() {
  for (const StripLayout::LegendRow& row : layout_.legend) {
    if (row.label < 0) continue;
    const StripLabel& label = scene_.labels[static_cast<std::size_t>(row.label)];
    if (!scene_.HasSample(label)) continue;
    if (scene_.overlay.hovered == StripPart{StripPart::Kind::LegendRow, row.label}) {
      QColor wash = colours_.accent;
      wash.setAlpha(48);
      painter_.fillRect(row.rect.adjusted(-3, 0, 3, 0), wash);
    }
    Sample(SampleRect(row.rect), scene_.TraceAt(label.trace).style, scene_.Shown(label.trace));
  }
}

// The value has priority. When the row is too narrow, the difference to the second cursor gets its own line if the row
// is high enough, and otherwise replaces the value. The name is cut.
void StripFurniture::Reading(const StripLayout::LegendRow& row) {
  const StripReadout::Line* read = readout_->Of(row.trace);
  const QRect room = row.rect.adjusted(kLegendSample, 0, 0, 0);
  const QString name = read != nullptr ? read->name : scene_.NameOf(row.trace);
  QString value = read != nullptr ? read->value : QStringLiteral("\u2013");
  QString below;
  if (read != nullptr && !read->difference.isEmpty()) {
    const QString both = value + QStringLiteral("  ") + read->difference;
    const bool fits = text_.Width(name) + kReadingGap + text_.Width(both) <= room.width();
    const bool high = room.height() >= 2 * text_.Height();
    value = fits ? both : high ? value : read->difference;
    if (!fits && high) below = read->difference;
  }
  const int lines = below.isEmpty() ? 1 : 2;
  const double top = std::round(room.center().y() + 0.5 - lines * text_.Height() / 2.0);
  const auto right = [&](const QString& text) { return room.right() + 1 - text_.Width(text); };
  const int left = right(value) - kReadingGap - room.left();
  const bool whole = text_.Width(name) <= left;
  text_.Draw(painter_, QPointF(room.left(), top),
             whole ? name : text_.Metrics().elidedText(name, Qt::ElideRight, left));
  text_.Draw(painter_, QPointF(right(value), top), value);
  text_.Draw(painter_, QPointF(right(below), top + text_.Height()), below);
}

void StripFurniture::Legend() {
  for (const StripLayout::LegendRow& row : layout_.legend) {
    const bool alone = row.label < 0;
    const bool traced = alone || scene_.HasSample(scene_.labels[static_cast<std::size_t>(row.label)]);
    if (readout_ != nullptr && traced && scene_.Shown(row.trace)) {
      if (alone) Sample(SampleRect(row.rect), scene_.TraceAt(row.trace).style, true);
      painter_.setPen(colours_.text);
      Reading(row);
    }
    if (alone || (readout_ != nullptr && traced && scene_.Shown(row.trace))) continue;
    const StripLabel& label = scene_.labels[static_cast<std::size_t>(row.label)];
    if (label.text.isEmpty()) continue;
    painter_.setPen(!traced || scene_.Shown(label.trace) ? colours_.text : colours_.faint);
    // A text without a line sample keeps its column if it fits; otherwise it uses the sample's room.
    const bool indented =
        traced || (scene_.HasTrace(label.trace) && text_.Width(label.text) <= row.rect.width() - kLegendSample);
    const QRect room = row.rect.adjusted(indented ? kLegendSample : 0, 0, 0, 0);
    if (text_.Width(label.text) <= room.width()) {
      const double middle = row.rect.center().y() + 0.5;
      text_.Draw(painter_, QPointF(room.left(), std::round(middle - text_.Height() / 2.0)), label.text);
    } else {
      painter_.setFont(text_.Font());
      painter_.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, label.text);
    }
  }
}

}  // namespace zth::widgets
