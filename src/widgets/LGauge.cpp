#include "widgets/LGauge.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QEvent>
#include <QPaintEngine>
#include <QPainter>

#include "widgets/LGaugeAccess.h"

namespace zth::widgets {
namespace {

double ValueOf(const std::map<int, double>& values, int index) {
  const auto found = values.find(index);
  return found == values.end() ? 0 : found->second;
}

QString TagText(const GaugeSlider& slider, const std::string& value) {
  const QString number = QString::fromStdString(value);
  switch (slider.kind) {
    case SliderKind::Low:
      return LGauge::tr("Low %1").arg(number);
    case SliderKind::High:
      return LGauge::tr("High %1").arg(number);
    case SliderKind::Sole:
      break;
  }
  return number;
}

}  // namespace

LGauge::LGauge(QWidget* parent) : QWidget(parent) {
  InstallLGaugeAccess();
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

std::vector<GaugeSlider> LGauge::LowAndHighSliders() {
  return {{2, SliderKind::Low, tr("Low limit")}, {3, SliderKind::High, tr("High limit")}};
}

std::vector<GaugeSlider> LGauge::SoleSlider() {
  return {{3, SliderKind::Sole, tr("Limit")}};
}

void LGauge::SetSliders(std::vector<GaugeSlider> sliders) {
  End(false);
  sliders_ = std::move(sliders);
  active_ = 0;
  hovered_ = -1;
  setFocusPolicy(sliders_.empty() ? Qt::NoFocus : Qt::StrongFocus);
  update();
}

double LGauge::NeedleValue() const {
  return ValueOf(needles_, needleIndex_);
}

double LGauge::PointerValue() const {
  return ValueOf(pointers_, pointerIndex_);
}

QVariantList LGauge::SliderNumbers() const {
  QVariantList numbers;
  for (const GaugeSlider& slider : sliders_) numbers.append(slider.number);
  return numbers;
}

void LGauge::SetScaleMin(double value) {
  if (!std::isfinite(value) || value == scaleMin_) return;
  scaleMin_ = value;
  InvalidateFace();
}

void LGauge::SetScaleMax(double value) {
  if (!std::isfinite(value) || value == scaleMax_) return;
  scaleMax_ = value;
  InvalidateFace();
}

void LGauge::SetNeedleValue(double value) {
  const auto [entry, added] = needles_.try_emplace(needleIndex_, value);
  if (!added && entry->second == value) return;
  entry->second = value;
  update();
  if (needleIndex_ == 1) TellValue(-1, value);
}

void LGauge::SetPointerValue(double value) {
  if (std::isnan(value)) return;
  const auto [entry, added] = pointers_.try_emplace(pointerIndex_, value);
  // If code writes to a slider that the user holds, Escape returns to the value that code wrote last.
  const bool active = active_ < static_cast<int>(sliders_.size()) &&
                      sliders_[static_cast<std::size_t>(active_)].number == pointerIndex_;
  if (gesture_ != Gesture::None && active) startValue_ = value;
  if (!added && entry->second == value) return;
  entry->second = value;
  update();
  for (std::size_t i = 0; i < sliders_.size(); ++i) {
    if (sliders_[i].number == pointerIndex_) TellValue(static_cast<int>(i), value);
  }
}

void LGauge::SetCaption(const QString& text) {
  if (text == caption_) return;
  caption_ = text;
  update();
}

void LGauge::SetStale(bool stale) {
  if (stale == stale_) return;
  stale_ = stale;
  update();
}

void LGauge::SetSliderStops(int number, std::vector<double> stops) {
  stops_[number] = std::move(stops);
}

double LGauge::SliderValue(int position) const {
  return ValueOf(pointers_, sliders_.at(static_cast<std::size_t>(position)).number);
}

double LGauge::Reading() const {
  return ValueOf(needles_, 1);
}

QRect LGauge::SliderRect(int position) const {
  const SliderKind kind = sliders_.at(static_cast<std::size_t>(position)).kind;
  const DialMeasures measures(size());
  return SliderShape(measures, kind, Scale().Angle(SliderValue(position))).boundingRect().toAlignedRect();
}

QSize LGauge::sizeHint() const {
  const int line = fontMetrics().height();
  return {line * 14, line * 13};
}

QSize LGauge::minimumSizeHint() const {
  const int line = fontMetrics().height();
  return {line * 21 / 2, line * 19 / 2};
}

void LGauge::InvalidateFace() {
  face_ = QPixmap();
  update();
}

void LGauge::TellValue(int child, double value) {
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent event(this, value);
  event.setChild(child);
  QAccessible::updateAccessibility(&event);
}

void LGauge::changeEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::EnabledChange:
      if (!isEnabled()) End(false);
      [[fallthrough]];
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
    case QEvent::FontChange:
    case QEvent::ActivationChange:
      updateGeometry();
      InvalidateFace();
      break;
    default:
      break;
  }
  QWidget::changeEvent(event);
}

int LGauge::TaggedSlider() const {
  if (gesture_ != Gesture::None) return active_;
  if (hovered_ >= 0) return hovered_;
  return hasFocus() && byKeyboard_ ? active_ : -1;
}

void LGauge::PaintKeptFace(QPainter& painter, const DialMeasures& measures) {
  const qreal ratio = devicePixelRatioF();
  const QSize wanted = (QSizeF(size()) * ratio).toSize();
  if (face_.size() != wanted || face_.devicePixelRatio() != ratio) {
    face_ = QPixmap(wanted);
    face_.setDevicePixelRatio(ratio);
    face_.fill(Qt::transparent);
    QPainter once(&face_);
    DialPainter(once, measures, palette(), font()).Face(scaleMin_, scaleMax_);
  }
  painter.drawPixmap(0, 0, face_);
}

void LGauge::paintEvent(QPaintEvent*) {
  const DialMeasures measures(size());
  QPainter painter(this);
  DialPainter dial(painter, measures, palette(), font());
  if (painter.paintEngine()->type() == QPaintEngine::Raster) {
    PaintKeptFace(painter, measures);
  } else {
    dial.Face(scaleMin_, scaleMax_);  // a drawing stays sharp at any size
  }
  const DialScale scale = Scale();
  const auto angleOf = [&](std::size_t i) { return scale.Angle(SliderValue(static_cast<int>(i))); };
  if (sliders_.size() == 2 && sliders_[0].kind == SliderKind::Low && sliders_[1].kind == SliderKind::High) {
    dial.AllowedBand(angleOf(0), angleOf(1));
  }
  if (const auto mark = needles_.find(0); mark != needles_.end()) dial.Mark(scale.Angle(mark->second));
  dial.Caption(caption_, stale_);

  const int count = static_cast<int>(sliders_.size());
  for (int i = 0; i < count; ++i) {  // the active slider last, on top
    const int position = (active_ + 1 + i) % count;
    const bool active = position == active_;
    dial.Slider(sliders_[static_cast<std::size_t>(position)].kind, angleOf(static_cast<std::size_t>(position)),
                position == TaggedSlider(), active && hasFocus());
  }
  const auto hand = needles_.find(1);
  const bool live = hand != needles_.end() && !std::isnan(hand->second);
  dial.Hand(scale.Angle(live ? hand->second : scaleMin_), live && !stale_);
  if (const int tagged = TaggedSlider(); tagged >= 0) {
    const GaugeSlider& slider = sliders_[static_cast<std::size_t>(tagged)];
    dial.ValueTag(slider.kind, TagText(slider, scale.Text(SliderValue(tagged))));
  }
}

}  // namespace zth::widgets
