#include "widgets/Strip.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QBuffer>
#include <QCoreApplication>
#include <QPainter>
#include <QSvgGenerator>
#include <QTimer>

#include "widgets/Named.h"
#include "widgets/StripAccessible.h"
#include "widgets/StripExport.h"
#include "widgets/StripPrivate.h"

namespace zth::widgets {
namespace {

// At most this often a chart redraws, however fast it is fed.
constexpr int kFrameMs = 16;
constexpr double kTellSeconds = 1;

/// The frame timer of all charts of the program, so that they are drawn together.
QTimer& Frames() {
  const QString name = QStringLiteral("stripFrames");
  auto* timer = QCoreApplication::instance()->findChild<QTimer*>(name, Qt::FindDirectChildrenOnly);
  if (timer == nullptr) {
    timer = Named<QTimer>(name, QCoreApplication::instance());
    timer->setSingleShot(true);
    timer->setInterval(kFrameMs);
  }
  return *timer;
}

}  // namespace

Strip::Private::Private(Strip& owner, std::function<double()> time)
    : strip(owner),
      clock(std::move(time)),
      painter(owner.font()),
      input(owner.scene_, painter.Layout(), [this](StripChange change) {
        strip.setCursor(input.Shape());
        strip.Changed(change);
      }) {}

Strip::Strip(std::function<double()> clock, QWidget* parent, const std::optional<StripOutlets>& outlets)
    : StripState(parent), p_(std::make_unique<Private>(*this, std::move(clock))), files_(*this, outlets) {
  InstallStripAccessibility();
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  connect(&Frames(), &QTimer::timeout, this, [this] {
    if (std::exchange(p_->waiting, false)) update();
  });
}

Strip::~Strip() = default;

void Strip::SetUp(const StripSetup& setup) {
  Renew(setup);
  p_->feed.Restart();
  p_->painter.ResetColumns();
  p_->painter.Forget();
  Changed(StripChange::View);
  emit Strip2_LayoutChanged(setup.index);
}

void Strip::Changed(StripChange change) {
  if (change == StripChange::Values) {
    Touch();
    return;
  }
  if (change == StripChange::Zones) emit Strip2_LayoutChanged(Index());
  TellHeld();
  update();
}

// Samples only mark the chart; the shared timer turns any number of them into one picture. A hidden chart does not even
// start it: showing draws anyway.
void Strip::Touch() {
  TellValue();
  if (p_->waiting || !isVisible()) return;
  p_->waiting = true;
  if (!Frames().isActive()) Frames().start();
}

// A reader speaks for seconds: it is told of new values once a second, however many come.
void Strip::TellValue() {
  if (!QAccessible::isActive() || !isVisible() || p_->clock() < p_->tellNext) return;
  p_->tellNext = p_->clock() + kTellSeconds;
  QAccessibleValueChangeEvent event(this, Summary());
  QAccessible::updateAccessibility(&event);
}

void Strip::ClearData() {
  scene_.ClearData();
  p_->painter.Forget();
  p_->feed.Restart();
  TellHeld();
  Touch();
}

void Strip::PlotXY(int trace, double x, double y) {
  if (!scene_.HasTrace(trace) || !std::isfinite(x)) return;
  if (IsXY()) {
    if (std::isfinite(y)) scene_.AddPoint(trace, QPointF(x, y));
  } else {
    TraceHistory& history = scene_.TraceAt(trace).history;
    history.Append(x, y);
    scene_.view.Advance(history.Newest().x);
  }
  Touch();
}

void Strip::PlotValue(int trace, double value) {
  if (!scene_.HasTrace(trace) || IsXY()) return;
  TraceHistory& history = scene_.TraceAt(trace).history;
  const double x = p_->feed.XAt(p_->clock(), history);
  history.Append(x, value);
  scene_.view.Advance(x);
  Touch();
}

void Strip::GoLive() {
  p_->input.GoLive();
}
void Strip::ResetRanges() {
  p_->input.Reset();
}
void Strip::FitAll() {
  p_->input.FitAll();
}
void Strip::FitAxis(int axis) {
  if (axis >= 0 && axis < AxisCount()) p_->input.Fit(static_cast<std::size_t>(axis));
}

void Strip::Tell(const QString& notice) {
  scene_.overlay.notice = notice;
  update();
}

QImage Strip::Picture() {
  StripScene::Overlay overlay;
  std::swap(overlay, scene_.overlay);
  const double ratio = devicePixelRatioF();
  QImage image(size() * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  QPainter painter(&image);
  p_->painter.Paint(painter, scene_, size(), ratio, palette());
  painter.end();
  std::swap(overlay, scene_.overlay);
  return image;
}

QByteArray Strip::PictureSvg() const {
  QByteArray svg;
  QBuffer buffer(&svg);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(size());
  generator.setViewBox(rect());
  generator.setTitle(Title());
  generator.setDescription(Summary());
  QPainter painter(&generator);
  p_->painter.PaintVector(painter, scene_, size(), palette());
  painter.end();
  return svg;
}

QString Strip::VisibleData() const {
  return StripCsv(scene_);
}

}  // namespace zth::widgets
