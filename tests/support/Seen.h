#pragma once

#include <string>
#include <vector>

#include <QColor>
#include <QFont>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QWidget>

#include "widgets/Strip.h"

/// What a user sees of widgets.
namespace zth::testing {

struct DrawnText {
  QString text;
  QRectF place;
  QColor colour;
  QFont font;
};

/// Records the texts drawn on it, except blank ones, and draws nothing.
class TextRecorder final : public QPaintDevice, private QPaintEngine {
 public:
  /// Renders the widget itself, without its children.
  explicit TextRecorder(QWidget& widget);
  QPaintEngine* paintEngine() const override { return const_cast<TextRecorder*>(this); }

  std::vector<DrawnText> texts;

 private:
  bool begin(QPaintDevice*) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState&) override {}
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {}
  void drawPath(const QPainterPath&) override {}
  void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
  Type type() const override { return User; }
  void drawTextItem(const QPointF& at, const QTextItem& item) override;
  int metric(PaintDeviceMetric of) const override;

  QSize size_;
};

/// The visible widgets of a page, without those in frmMain's area of child windows.
std::vector<QWidget*> Shown(QWidget& root);

/// For failure messages: the class and objectName of a widget, or of its nearest parent that has one.
std::string Told(const QWidget& widget);

/// Toggles each check box and selects another item of each list that is enabled.
void ChangeEach(const QWidget& window);

using Points = std::vector<std::pair<double, double>>;

/// The points of a chart's trace.
Points PointsOf(const widgets::Strip& chart, int trace);

/// The captions of a chart's label slots from first to last, separated by "|".
std::string Captions(widgets::Strip& chart, int first, int last);

}  // namespace zth::testing
