#include "widgets/PaletteIcon.h"

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "widgets/Drawings.h"

namespace zth::widgets {
namespace {

class PaletteEngine final : public QIconEngine {
 public:
  explicit PaletteEngine(QString icon) : icon_(std::move(icon)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    if (mode == QIcon::Disabled) painter->setOpacity(0.5);
    Draw(icon_, ColourOf(mode), *painter, rect);
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

  QIconEngine* clone() const override { return new PaletteEngine(*this); }

 private:
  static constexpr int kMostDrawn = 16;

  static QColor ColourOf(QIcon::Mode mode) {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    return QGuiApplication::palette().color(group, QPalette::ButtonText);
  }

  QString icon_;
  QHash<QString, QPixmap> drawn_;
};

}  // namespace

QIcon PaletteIcon(const QString& icon) {
  return HasDrawing(icon) ? QIcon(new PaletteEngine(icon)) : QIcon();
}

}  // namespace zth::widgets
