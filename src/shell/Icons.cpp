#include "shell/Icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QResource>
#include <QSvgRenderer>

/// The drawings stand in a static library, from which a program takes only what it names. Q_INIT_RESOURCE wants to
/// stand outside every namespace.
static void NameResources() {
  Q_INIT_RESOURCE(icons);
}

namespace zth::shell {
namespace {

/// Draws an SVG whose "currentColor" stands for the palette's button text, so that one drawing serves light and dark.
class PaletteSvgEngine final : public QIconEngine {
 public:
  explicit PaletteSvgEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    QByteArray drawing = drawing_;
    drawing.replace("currentColor", QGuiApplication::palette().color(group, QPalette::ButtonText).name().toLatin1());
    QSvgRenderer renderer(drawing);
    if (mode == QIcon::Disabled) painter->setOpacity(0.5);
    renderer.render(painter, rect);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new PaletteSvgEngine(*this); }

 private:
  QByteArray drawing_;
};

QIcon FromResource(const QString& name) {
  NameResources();
  const QResource drawing(":/shell/icons/" + name + ".svg");
  return drawing.isValid() ? QIcon(new PaletteSvgEngine(drawing.uncompressedData())) : QIcon();
}

}  // namespace

QIcon ToolIcon(const QString& key) {
  return FromResource(key);
}

QIcon ProgramIcon() {
  return FromResource("Program");
}

}  // namespace zth::shell
