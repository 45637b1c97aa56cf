#include "tests/looks/Audit.h"

#include <vector>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QFontInfo>
#include <QLabel>
#include <QPaintEngine>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

namespace zth::testing {
namespace {

constexpr double kSlack = 1.5;     ///< pixels: rounding of a text's measures
constexpr double kSmallest = 0.6;  ///< of the application's font: the least that a text may be

struct DrawnText {
  QString text;
  QRectF rect;
  QFont font;
};

/// Keeps the texts of what is drawn on it, and nothing else.
class TextCatcher final : public QPaintEngine, public QPaintDevice {
 public:
  explicit TextCatcher(QSize size) : QPaintEngine(AllFeatures), size_(size) {}

  bool begin(QPaintDevice*) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState&) override {}
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {}
  void drawPath(const QPainterPath&) override {}
  void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
  void drawEllipse(const QRectF&) override {}
  Type type() const override { return User; }
  void drawTextItem(const QPointF& at, const QTextItem& item) override {
    if (item.text().trimmed().isEmpty()) return;
    const QTransform transform = painter()->combinedTransform();
    const QRectF rect(at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent());
    texts.push_back({item.text(), transform.mapRect(rect), item.font()});
  }
  QPaintEngine* paintEngine() const override { return const_cast<TextCatcher*>(this); }

  std::vector<DrawnText> texts;

 protected:
  int metric(PaintDeviceMetric metric) const override {
    switch (metric) {
      case PdmWidth:
        return size_.width();
      case PdmHeight:
        return size_.height();
      case PdmDpiX:
      case PdmDpiY:
        return 96;
      default:
        return metric == PdmDevicePixelRatio ? 1 : 0;
    }
  }

 private:
  QSize size_;
};

std::string Name(const QWidget& widget) {
  for (const QWidget* at = &widget; at != nullptr; at = at->parentWidget()) {
    if (at->objectName().isEmpty()) continue;
    return at == &widget ? at->objectName().toStdString()
                         : std::string(widget.metaObject()->className()) + " in " + at->objectName().toStdString();
  }
  return widget.metaObject()->className();
}

/// The scroll area whose contents stand on this widget.
const QAbstractScrollArea* ScrollsOn(const QWidget& widget) {
  const auto* area = qobject_cast<const QAbstractScrollArea*>(widget.parentWidget());
  return area != nullptr && area->viewport() == &widget ? area : nullptr;
}

bool Scrolls(const QScrollBar* bar) {
  return bar->maximum() > bar->minimum();
}

}  // namespace

void Audit::Look(const QWidget& root, const std::string& where) {
  where_ = where;
  LookAt(const_cast<QWidget&>(root));
}

void Audit::Tell(const QWidget& widget, const std::string& fault) {
  faults_.insert(Name(widget) + ": " + fault + " [" + where_ + "]");
}

void Audit::LookAt(QWidget& widget) {
  ++widgets_;
  LookAtPlace(widget);
  LookAtTexts(widget);
  for (QObject* child : widget.children()) {
    auto* inner = qobject_cast<QWidget*>(child);
    if (inner != nullptr && inner->isVisible() && !inner->isWindow()) LookAt(*inner);
  }
}

void Audit::LookAtTexts(QWidget& widget) {
  TextCatcher catcher(widget.size());
  QPainter painter(&catcher);
  widget.render(&painter, QPoint(), QRegion(), QWidget::RenderFlags());
  painter.end();
  QRectF room = QRectF(widget.rect()).adjusted(-kSlack, -kSlack, kSlack, kSlack);
  if (const QAbstractScrollArea* area = ScrollsOn(widget)) {
    if (Scrolls(area->horizontalScrollBar())) room.adjust(-1e6, 0, 1e6, 0);
    if (Scrolls(area->verticalScrollBar())) room.adjust(0, -1e6, 0, 1e6);
  }
  const double smallest = kSmallest * QFontInfo(QApplication::font()).pixelSize();
  for (std::size_t i = 0; i < catcher.texts.size(); ++i) {
    const DrawnText& text = catcher.texts[i];
    const std::string quoted = '"' + text.text.toStdString() + '"';
    ++texts_;
    if (text.text.contains(QChar(0x2026))) Tell(widget, "elides " + quoted);
    if (!room.contains(text.rect)) Tell(widget, "cuts " + quoted);
    if (QFontInfo(text.font).pixelSize() < smallest) Tell(widget, "draws a tiny " + quoted);
    for (std::size_t j = 0; j < i; ++j) {
      // A text drawn twice in one place has a shadow.
      if (catcher.texts[j].text == text.text) continue;
      const QRectF inner = catcher.texts[j].rect.adjusted(kSlack, kSlack, -kSlack, -kSlack);
      if (inner.intersects(text.rect)) Tell(widget, quoted + " over \"" + catcher.texts[j].text.toStdString() + '"');
    }
  }
}

void Audit::LookAtPlace(const QWidget& widget) {
  if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(list);
    const int room =
        list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list).width();
    for (int i = 0; i < list->count(); ++i) {
      const QString text = list->itemText(i);
      if (list->fontMetrics().horizontalAdvance(text) > room) Tell(widget, "is too narrow for " + text.toStdString());
    }
  }
  const QWidget* parent = widget.parentWidget();
  if (widget.isWindow() || parent == nullptr || ScrollsOn(*parent) != nullptr) return;
  if (!parent->rect().contains(widget.geometry())) Tell(widget, "sticks out of " + Name(*parent));
  const auto* label = qobject_cast<const QLabel*>(&widget);
  const QSize least = label != nullptr && label->text().isEmpty() ? QSize() : widget.minimumSizeHint();
  if (widget.width() < least.width() || widget.height() < least.height()) Tell(widget, "is smaller than it can be");
  const bool forMore = qobject_cast<const QTabBar*>(parent) != nullptr || widget.objectName().endsWith("_ext_button");
  if (forMore && qobject_cast<const QToolButton*>(&widget) != nullptr) Tell(widget, "shows: not all finds room");
  if (qobject_cast<const QTabWidget*>(parent) != nullptr) return;  // its bar stands on its pages' frame
  for (const QObject* child : parent->children()) {
    const auto* other = qobject_cast<const QWidget*>(child);
    if (other == nullptr || !other->isVisible() || other->isWindow() || other == &widget) continue;
    if (other->geometry().intersects(widget.geometry())) Tell(widget, "overlaps " + Name(*other));
  }
}

}  // namespace zth::testing
