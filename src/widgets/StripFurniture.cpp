// The parts of StripPainter that draw what stands around the traces.
#include <algorithm>
#include <array>
#include <cmath>

#include <QPainter>
#include <QPainterPath>

#include "widgets/StripPainter.h"

namespace zth::widgets {
namespace {

constexpr double kRound = 4;

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

void StripPainter::PaintHeading(QPainter& painter, QRect rect, const QString& text, const StripColours& colours) {
  painter.setPen(colours.text);
  painter.setFont(bold_.Font());
  painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   bold_.Metrics().elidedText(text, Qt::ElideRight, rect.width()));
}

void StripPainter::PaintStill(QPainter& painter, const StripScene& scene, const StripColours& colours, bool handles) {
  const QRect& plot = layout_.plot;
  painter.fillRect(QRect(QPoint(0, 0), size_), colours.window);
  if (const StripLabel* title = scene.Label(0)) PaintHeading(painter, layout_.title, title->text, colours);
  for (const StripLabel& label : scene.labels) {
    if (label.slot == 0 || label.place != StripPlace::Heading) continue;
    const auto zone = static_cast<std::size_t>(std::clamp(label.axis, 0, static_cast<int>(layout_.zones.size()) - 1));
    const int height = bold_.Height();
    const int above = zone > 0 ? layout_.zones[zone - 1].bottom() + 1 : 0;
    const int centre = (above + layout_.zones[zone].top()) / 2;
    PaintHeading(painter, QRect(plot.left(), centre - height / 2, plot.width(), height), label.text, colours);
  }
  int lastBottom = -1000;  // through all zones: where they are low, the numbers of two would meet at their border
  for (std::size_t i = 0; i < layout_.zones.size(); ++i) {
    const QRect& zone = layout_.zones[i];
    const StripView::Axis& axis = scene.view.At(i);
    painter.fillRect(zone, colours.paper);
    for (auto tick = layout_.yTicks[i].rbegin(); tick != layout_.yTicks[i].rend(); ++tick) {
      const double y = layout_.PixelOfY(axis, i, tick->value);
      painter.fillRect(QRectF(zone.left(), std::floor(y), zone.width(), 1), colours.grid);
      const int top = std::clamp(static_cast<int>(std::lround(y)) - text_.Height() / 2, zone.top() - text_.Height() / 2,
                                 zone.bottom() - text_.Height() / 2);
      if (top < lastBottom) continue;
      lastBottom = top + text_.Height();
      painter.setPen(colours.text);
      text_.Draw(painter, QPointF(plot.left() - 6 - text_.Width(tick->text), top), tick->text);
    }
    painter.setPen(QPen(colours.frame, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(zone).adjusted(-0.5, -0.5, 0.5, 0.5));
  }
  PaintSamples(painter, scene, colours);
  if (handles) PaintHandles(painter, scene, colours);
}

void StripPainter::PaintHandles(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  for (const StripLayout::Handle& handle : layout_.handles) {
    const bool hovered = scene.overlay.hovered == handle.part;
    painter.setBrush(hovered ? colours.accent : colours.faint);
    if (handle.part.kind == StripPart::Kind::Border) {
      for (const int dx : {-8, 0, 8}) {
        painter.drawEllipse(QPointF(handle.rect.center()) + QPointF(dx + 0.5, 0.5), 1.8, 1.8);
      }
    } else {
      painter.drawPolygon(Triangle(handle.rect, handle.part.kind));
    }
  }
  if (scene.overlay.focus) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours.accent, 1));
    painter.drawRect(QRectF(layout_.plot).adjusted(-2.5, -2.5, 2.5, 2.5));
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void StripPainter::PaintXLabels(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  painter.setPen(colours.text);
  const QRect& row = layout_.xLabels;
  double lastRight = -1e9;
  for (const Tick& tick : layout_.xTicks) {
    const double x = layout_.PixelOfX(tick.value);
    const int width = text_.Width(tick.text);
    if (x < layout_.plot.left() - 1 || x > layout_.plot.right() + 2 || x - width / 2.0 < lastRight + 6) continue;
    text_.Draw(painter, QPointF(std::round(x - width / 2.0), row.top()), tick.text);
    lastRight = x + width / 2.0;
  }
  const bool clock = !layout_.xTicks.empty() && layout_.xTicks.back().text.contains(QLatin1Char(':'));
  const QString unit = scene.IsXY() ? scene.setup.xUnit.trimmed()
                       : clock      ? QStringLiteral("h:m:s")
                                    : QStringLiteral("s");
  const double left = layout_.plot.right() + layout_.xReach + 2 + kStripHandle;
  if (!layout_.legend.empty()) {
    painter.setPen(colours.faint);
    text_.Draw(painter, QPointF(left + 4, row.top()), unit);
  }
}

void StripPainter::PaintSample(QPainter& painter, QRectF rect, const StripTrace& style, bool shown,
                               const StripColours& colours) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colours.frame, 1));
  painter.setBrush(shown ? colours.paper : QColor(Qt::transparent));
  painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
  if (shown) {
    QPen pen(style.colour, std::max(2, style.width), style.style, Qt::FlatCap);
    painter.setPen(pen);
    painter.drawLine(QPointF(rect.left() + 3, rect.center().y()), QPointF(rect.right() - 3, rect.center().y()));
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void StripPainter::PaintSamples(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  for (const StripLayout::LegendRow& row : layout_.legend) {
    const StripLabel& label = scene.labels[static_cast<std::size_t>(row.label)];
    if (!HasSample(scene, label)) continue;
    if (scene.overlay.hovered == StripPart{StripPart::Kind::LegendRow, row.label}) {
      QColor wash = colours.accent;
      wash.setAlpha(48);
      painter.fillRect(row.rect.adjusted(-3, 0, 3, 0), wash);
    }
    PaintSample(painter, QRectF(row.rect.left(), std::round(row.rect.center().y() - 4.5), kLegendSample - 6, 10),
                scene.TraceAt(label.trace).style, scene.Shown(label.trace), colours);
  }
}

void StripPainter::PaintLegend(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  for (const StripLayout::LegendRow& row : layout_.legend) {
    const StripLabel& label = scene.labels[static_cast<std::size_t>(row.label)];
    if (label.text.isEmpty()) continue;
    const bool traced = HasSample(scene, label);
    painter.setPen(!traced || scene.Shown(label.trace) ? colours.text : colours.faint);
    // A text without a sample keeps its column where it fits, and else takes the sample's room.
    const bool indented =
        traced || (scene.HasTrace(label.trace) && text_.Width(label.text) <= row.rect.width() - kLegendSample);
    const QRect room = row.rect.adjusted(indented ? kLegendSample : 0, 0, 0, 0);
    if (text_.Width(label.text) <= room.width()) {
      const double middle = row.rect.center().y() + 0.5;
      text_.Draw(painter, QPointF(room.left(), std::round(middle - text_.Height() / 2.0)), label.text);
    } else {
      painter.setFont(text_.Font());
      painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, label.text);
    }
  }
}

// A moving label is ink on paper with its trace's line before it: readable in any trace colour, and over any trace.
void StripPainter::PaintFreeLabels(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  const QRect& plot = layout_.plot;
  for (const StripLabel& label : scene.labels) {
    if (label.slot == 0 || label.place != StripPlace::Free || label.text.isEmpty()) continue;
    const bool traced = scene.HasTrace(label.trace) && label.line;
    if (traced && !scene.Shown(label.trace)) continue;
    const int sample = traced ? 18 : 0;
    const QSizeF size(text_.Width(label.text) + sample + 8, text_.Height());
    double x = plot.left() + label.left * plot.width() - (label.alignRight ? size.width() : 0);
    x = std::clamp(x, plot.left() + 2.0, std::max(plot.left() + 2.0, plot.right() - 1 - size.width()));
    // A label that follows a trace stays whole within the trace's zone, also where it is parked at the zone's edge.
    const int bottom = traced ? layout_.zones[static_cast<std::size_t>(scene.TraceAt(label.trace).style.axis)].bottom()
                              : plot.bottom();
    const double y = std::min(plot.top() + label.top * plot.height(), bottom + 1 - size.height());
    const QRectF rect(QPointF(std::round(x), std::round(y)), size);
    QColor ground = colours.paper;
    ground.setAlpha(210);
    painter.fillRect(rect, ground);
    if (traced) {
      const StripTrace& style = scene.TraceAt(label.trace).style;
      painter.setPen(QPen(style.colour, std::max(3, style.width), style.style, Qt::FlatCap));
      painter.drawLine(QPointF(rect.left() + 4, rect.center().y()),
                       QPointF(rect.left() + sample - 1, rect.center().y()));
    }
    painter.setPen(colours.ink);
    text_.Draw(painter, rect.topLeft() + QPointF(sample + 4, 0), label.text);
  }
}

void StripPainter::PaintOverlay(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  const StripScene::Overlay& overlay = scene.overlay;
  const QRect& plot = layout_.plot;
  if (overlay.mark) {
    const double x = std::floor(layout_.PixelOfX(*overlay.mark)) + 0.5;
    if (x >= plot.left() && x <= plot.right()) {
      painter.setPen(QPen(colours.accent, 1, Qt::DashLine));
      painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
  }
  if (!overlay.box.isEmpty()) {
    QColor wash = colours.accent;
    wash.setAlpha(40);
    painter.setPen(QPen(colours.accent, 1));
    painter.setBrush(wash);
    painter.drawRect(QRectF(overlay.box).adjusted(0.5, 0.5, -0.5, -0.5));
  }
  if (overlay.cursor) PaintReadout(painter, scene, colours);
  const auto pill = [&](const QRectF& rect, const QColor& ground) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(Qt::white);
  };
  if (scene.view.Held()) {
    const QRectF rect(layout_.sign);
    pill(rect, overlay.hovered.kind == StripPart::Kind::Sign ? QColor(176, 80, 0) : QColor(148, 68, 0));
    for (const int x : {12, 17}) {
      painter.fillRect(QRectF(rect.left() + x, rect.center().y() - 4, 3, 9), Qt::white);
    }
    text_.Draw(painter, rect.topLeft() + QPointF(26, 4), QStringLiteral("Held: click for live"));
  }
  if (!overlay.notice.isEmpty()) {
    const QSizeF size(std::min(text_.Width(overlay.notice) + 24, plot.width() - 16), text_.Height() + 8);
    const QRectF rect(QPointF(plot.left() + 8, plot.bottom() - 8 - size.height()), size);
    pill(rect, QColor(50, 56, 62));
    painter.drawText(rect.adjusted(12, 0, -12, 0), Qt::AlignVCenter | Qt::TextSingleLine, overlay.notice);
  }
}

void StripPainter::PaintReadout(QPainter& painter, const StripScene& scene, const StripColours& colours) {
  const QRect& plot = layout_.plot;
  const QPointF cursor = *scene.overlay.cursor;
  const double x = std::floor(cursor.x()) + 0.5;
  painter.setPen(QPen(colours.ink, 1, Qt::DotLine));
  painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
  const StripReadout readout = ReadUnderCursor(scene, layout_);
  const int line = text_.Height() + 1;
  std::array<int, 3> widths{text_.Width(readout.heading), 0, text_.Width(readout.headingDifference)};
  for (const StripReadout::Line& entry : readout.lines) {
    widths[1] = std::max(widths[1], text_.Width(entry.value));
    widths[2] = std::max(widths[2], text_.Width(entry.difference));
    widths[0] = std::max(widths[0], 14 + text_.Width(entry.name));
  }
  const int gap = 12;
  const double width = 16 + widths[0] + gap + widths[1] + (widths[2] > 0 ? gap + widths[2] : 0);
  const double height = 10 + line * (1 + static_cast<double>(readout.lines.size()));
  double left = x + 12 + width <= plot.right() ? x + 12 : x - 12 - width;
  left = std::max(left, plot.left() + 2.0);
  const double top =
      std::clamp(cursor.y() + 14, plot.top() + 2.0, std::max(plot.top() + 2.0, plot.bottom() - 2 - height));
  const QRectF box(std::round(left), std::round(top), width, height);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colours.frame, 1));
  painter.setBrush(QColor(255, 255, 255, 236));
  painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), kRound, kRound);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(colours.ink);
  const double right = box.right() - 8;
  double y = box.top() + 5;
  text_.Draw(painter, QPointF(box.left() + 8, y), readout.heading);
  text_.Draw(painter, QPointF(right - text_.Width(readout.headingDifference), y), readout.headingDifference);
  for (const StripReadout::Line& entry : readout.lines) {
    y += line;
    painter.fillRect(QRectF(box.left() + 8, y + line / 2.0 - 4, 8, 8), scene.TraceAt(entry.trace).style.colour);
    text_.Draw(painter, QPointF(box.left() + 22, y), entry.name);
    const double values = right - (widths[2] > 0 ? gap + widths[2] : 0);
    text_.Draw(painter, QPointF(values - text_.Width(entry.value), y), entry.value);
    text_.Draw(painter, QPointF(right - text_.Width(entry.difference), y), entry.difference);
  }
}

}  // namespace zth::widgets
