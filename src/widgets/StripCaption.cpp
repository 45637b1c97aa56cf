#include "widgets/StripCaption.h"

#include <QFontMetrics>
#include <QPainter>

namespace zth::widgets {
namespace {

constexpr int kHow = Qt::AlignHCenter | Qt::TextWrapAnywhere;
constexpr int kAtTheSides = 8;

int TextHeight(const StripCaption& caption, int width) {
  const QRect room(0, 0, width - 2 * kAtTheSides, 1 << 14);
  return QFontMetrics(caption.font).boundingRect(room, kHow, caption.text).height();
}

}  // namespace

int StripCaption::Height(int width) const {
  return text.isEmpty() ? 0 : TextHeight(*this, width) + QFontMetrics(font).descent() * 2;
}

void StripCaption::Paint(QPainter& painter, QSize chart) const {
  const int height = Height(chart.width());
  if (height == 0) return;
  const QRect place(0, chart.height(), chart.width(), height);
  painter.fillRect(place, palette.color(QPalette::Window));
  painter.setFont(font);
  painter.setPen(palette.color(QPalette::WindowText));
  painter.drawText(place.adjusted(kAtTheSides, 0, -kAtTheSides, 0), kHow, text);
}

QImage StripCaption::Under(const QImage& picture) const {
  const QSize chart = (QSizeF(picture.size()) / picture.devicePixelRatio()).toSize();
  const int height = Height(chart.width());
  if (height == 0) return picture;
  const double ratio = picture.devicePixelRatio();
  QImage both(picture.width(), picture.height() + static_cast<int>(height * ratio), picture.format());
  both.setDevicePixelRatio(ratio);
  QPainter painter(&both);
  Paint(painter, chart);
  painter.drawImage(0, 0, picture);
  return both;
}

}  // namespace zth::widgets
