#include "widgets/Badge.h"

#include <algorithm>

#include <QFont>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace zth::widgets {
namespace {

constexpr QRgb kRed = 0xFFBF1E1E;

void DrawBadge(QPainter& painter, QRectF place, const QString& number) {
  painter.setRenderHint(QPainter::Antialiasing);
  // The white rim sets it apart from the icon behind it and from a dark background.
  painter.setPen(QPen(Qt::white, std::max(1.0, place.height() / 14)));
  painter.setBrush(QColor(kRed));
  place.adjust(0.5, 0.5, -0.5, -0.5);
  const double corner = place.height() / 2;
  painter.drawRoundedRect(place, corner, corner);
  QFont font = painter.font();
  font.setBold(true);
  font.setPixelSize(std::max(6, static_cast<int>(place.height() * 0.74)));
  painter.setFont(font);
  painter.drawText(place, Qt::AlignCenter, number);
}

class BadgeEngine final : public QIconEngine {
 public:
  BadgeEngine(QIcon ground, int count) : ground_(std::move(ground)), count_(count) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    QRectF place(rect);
    if (!ground_.isNull()) {
      ground_.paint(painter, rect, Qt::AlignCenter, mode, state);
      const double height = place.height() * 0.6;
      const double width = height * (count_ > 9 ? 1.35 : 1);
      place = QRectF(place.right() - width, place.top(), width, height);
    }
    DrawBadge(*painter, place, QString::number(count_));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new BadgeEngine(*this); }

 private:
  QIcon ground_;
  int count_;
};

}  // namespace

QIcon BadgeIcon(int count) {
  return QIcon(new BadgeEngine({}, count));
}

QIcon WithBadge(const QIcon& icon, int count) {
  return QIcon(new BadgeEngine(icon, count));
}

}  // namespace zth::widgets
