#include "widgets/PaletteIcon.h"

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace zth::widgets {
namespace {

class PaletteSvgEngine final : public QIconEngine {
 public:
  explicit PaletteSvgEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    QByteArray drawing = drawing_;
    drawing.replace("currentColor", ColourOf(mode).name().toLatin1());
    QSvgRenderer renderer(drawing);
    if (mode == QIcon::Disabled) painter->setOpacity(0.5);
    renderer.render(painter, rect);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    const QString key =
        QString("%1x%2 %3 %4").arg(size.width()).arg(size.height()).arg(mode).arg(ColourOf(mode).name());
    if (const auto found = drawn_.constFind(key); found != drawn_.constEnd()) return *found;
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    painter.end();
    if (drawn_.size() >= kMostDrawn) drawn_.clear();
    return drawn_[key] = picture;
  }

  QIconEngine* clone() const override { return new PaletteSvgEngine(*this); }

 private:
  static constexpr int kMostDrawn = 16;

  static QColor ColourOf(QIcon::Mode mode) {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    return QGuiApplication::palette().color(group, QPalette::ButtonText);
  }

  QByteArray drawing_;
  QHash<QString, QPixmap> drawn_;
};

}  // namespace

QIcon PaletteIcon(const QByteArray& drawing) {
  return QIcon(new PaletteSvgEngine(drawing));
}

}  // namespace zth::widgets
