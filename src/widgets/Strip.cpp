#include "widgets/Strip.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <QAccessible>
#include <QCoreApplication>
#include <QTimer>

#include "base/Twips.h"
#include "widgets/StripAccessible.h"
#include "widgets/StripPrivate.h"
#include "widgets/StripReadout.h"

namespace zth::widgets {
namespace {

// At most this often a chart redraws, however fast it is fed.
constexpr int kFrameMs = 16;
// Samples of several traces that come within this time of the first belong to one feed.
constexpr double kFeedSeconds = 0.005;
constexpr double kTellSeconds = 1;

/// The frame timer of all charts of the program, so that they are drawn together.
QTimer& Frames() {
  const QString name = QStringLiteral("stripFrames");
  auto* timer = QCoreApplication::instance()->findChild<QTimer*>(name, Qt::FindDirectChildrenOnly);
  if (timer == nullptr) {
    timer = new QTimer(QCoreApplication::instance());
    timer->setObjectName(name);
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
      input(scene, painter.Layout(), [this](StripInput::Change change) { Changed(change); }) {}

StripLabel& Strip::Private::ChosenLabel(int slot) {
  if (scene.Label(slot) == nullptr) scene.labels.push_back(StripLabel{.slot = slot});
  return *scene.Label(slot);
}

void Strip::Private::Changed(StripInput::Change change) {
  if (change == StripInput::Change::Zones) emit strip.Strip2_LayoutChanged(scene.setup.index);
  strip.setCursor(input.Shape());
  strip.ViewChanged();
}

Strip::Strip(std::function<double()> clock, QWidget* parent, const std::optional<StripOutlets>& outlets)
    : QWidget(parent), p_(std::make_unique<Private>(*this, std::move(clock))), outlets_(outlets) {
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
  p_->scene = StripScene(setup);
  p_->scene.overlay.focus = hasFocus();
  p_->origin.reset();
  p_->instantX.reset();
  p_->painter.ResetColumns();
  p_->painter.Forget();
  labelIndex_ = axisIndex_ = 0;
  ViewChanged();
  emit Strip2_LayoutChanged(setup.index);
}

bool Strip::IsXY() const {
  return p_->scene.IsXY();
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

void Strip::ViewChanged() {
  if (std::exchange(p_->held, Held()) != Held()) emit HeldChanged(Held());
  update();
}

void Strip::ClearData() {
  p_->scene.ClearData();
  p_->painter.Forget();
  p_->origin.reset();
  p_->instantX.reset();
  if (std::exchange(p_->held, Held()) != Held()) emit HeldChanged(Held());
  Touch();
}

void Strip::PlotXY(int trace, double x, double y) {
  if (!p_->scene.HasTrace(trace) || !std::isfinite(x)) return;
  if (IsXY()) {
    if (std::isfinite(y)) p_->scene.AddPoint(trace, QPointF(x, y));
  } else {
    TraceHistory& history = p_->scene.TraceAt(trace).history;
    history.Append(x, y);
    p_->scene.view.Advance(history.Newest().x);
  }
  Touch();
}

void Strip::PlotValue(int trace, double value) {
  if (!p_->scene.HasTrace(trace) || IsXY()) return;
  const double now = p_->clock();
  if (!p_->origin) p_->origin = now;
  double x = now - *p_->origin;
  TraceHistory& history = p_->scene.TraceAt(trace).history;
  const bool sameFeed =
      p_->instantX && x - *p_->instantX < kFeedSeconds && (history.Empty() || history.Newest().x < *p_->instantX);
  if (sameFeed) {
    x = *p_->instantX;
  } else {
    p_->instantX = x;
  }
  history.Append(x, value);
  p_->scene.view.Advance(x);
  Touch();
}

double Strip::XSpan() const {
  return p_->scene.view.XSpan();
}
void Strip::SetXSpan(double span) {
  p_->scene.view.SetX(XEnd(), span);
  ViewChanged();
}
double Strip::XEnd() const {
  return p_->scene.view.XEnd();
}
void Strip::SetXEnd(double end) {
  p_->scene.view.SetX(end, XSpan());
  ViewChanged();
}
bool Strip::Held() const {
  return p_->scene.view.Held();
}

QString Strip::Caption() const {
  const StripLabel* label = std::as_const(p_->scene).Label(labelIndex_);
  return label != nullptr ? label->text : QString();
}
void Strip::SetCaption(const QString& caption) {
  StripLabel& label = p_->ChosenLabel(labelIndex_);
  if (label.text == caption) return;
  label.text = caption;
  Touch();
}
float Strip::LabelTop() const {
  const StripLabel* label = std::as_const(p_->scene).Label(labelIndex_);
  return label != nullptr ? static_cast<float>(label->top) : 0.0F;
}
void Strip::SetLabelTop(float top) {
  if (!std::isfinite(top)) return;
  p_->ChosenLabel(labelIndex_).top = static_cast<double>(top);
  Touch();
}
float Strip::LabelLeft() const {
  const StripLabel* label = std::as_const(p_->scene).Label(labelIndex_);
  return label != nullptr ? static_cast<float>(label->left) : 0.0F;
}
void Strip::SetLabelLeft(float left) {
  if (!std::isfinite(left)) return;
  p_->ChosenLabel(labelIndex_).left = static_cast<double>(left);
  Touch();
}
int Strip::LabelTrace() const {
  const StripLabel* label = std::as_const(p_->scene).Label(labelIndex_);
  return label != nullptr ? label->trace : -1;
}
void Strip::SetLabelTrace(int trace) {
  p_->ChosenLabel(labelIndex_).trace = trace;
  Touch();
}
bool Strip::LabelLine() const {
  const StripLabel* label = std::as_const(p_->scene).Label(labelIndex_);
  return label != nullptr && label->line;
}
void Strip::SetLabelLine(bool line) {
  p_->ChosenLabel(labelIndex_).line = line;
  Touch();
}
QColor Strip::LabelColour() const {
  return TraceColour(LabelTrace());
}

void Strip::SetAxisIndex(int index) {
  if (index >= 0 && index < AxisCount()) axisIndex_ = index;
}
double Strip::AxisMin() const {
  return p_->ChosenAxis(axisIndex_).min;
}
void Strip::SetAxisMin(double min) {
  p_->scene.view.SetAxis(static_cast<std::size_t>(axisIndex_), min, AxisMax());
  ViewChanged();
}
double Strip::AxisMax() const {
  return p_->ChosenAxis(axisIndex_).max;
}
void Strip::SetAxisMax(double max) {
  p_->scene.view.SetAxis(static_cast<std::size_t>(axisIndex_), AxisMin(), max);
  ViewChanged();
}
double Strip::AxisAreaTop() const {
  return p_->ChosenAxis(axisIndex_).areaTop;
}
void Strip::SetAxisAreaTop(double top) {
  if (axisIndex_ == 0 || !p_->scene.view.MoveBorder(static_cast<std::size_t>(axisIndex_ - 1), top)) return;
  p_->Changed(StripInput::Change::Zones);
}
double Strip::AxisAreaBottom() const {
  return p_->ChosenAxis(axisIndex_).areaBottom;
}

int Strip::Left() const {
  return base::TwipsFromPixels(x());
}
void Strip::SetLeft(int twips) {
  move(base::PixelsFromTwips(twips), y());
}
int Strip::Top() const {
  return base::TwipsFromPixels(y());
}
void Strip::SetTop(int twips) {
  move(x(), base::PixelsFromTwips(twips));
}
int Strip::Width() const {
  return base::TwipsFromPixels(width());
}
void Strip::SetWidth(int twips) {
  resize(std::max(0, base::PixelsFromTwips(twips)), height());
}
int Strip::Height() const {
  return base::TwipsFromPixels(height());
}
void Strip::SetHeight(int twips) {
  resize(width(), std::max(0, base::PixelsFromTwips(twips)));
}

int Strip::Index() const {
  return p_->scene.setup.index;
}
int Strip::TraceCount() const {
  return static_cast<int>(p_->scene.traces.size());
}
int Strip::AxisCount() const {
  return static_cast<int>(p_->scene.view.AxisCount());
}
QString Strip::Title() const {
  const StripLabel* title = std::as_const(p_->scene).Label(0);
  return title != nullptr ? title->text : QString();
}
QString Strip::Summary() const {
  return StripSummary(p_->scene);
}

QVariantList Strip::TracePoints(int trace) const {
  QVariantList pairs;
  if (!p_->scene.HasTrace(trace)) return pairs;
  const StripScene::Trace& source = p_->scene.TraceAt(trace);
  for (const QPointF& point : source.points) pairs.append(QVariant(QVariantList{point.x(), point.y()}));
  const double everything = std::numeric_limits<double>::max();
  for (const TraceHistory::Point& point : source.history.Points(-everything, everything)) {
    pairs.append(QVariant(QVariantList{point.x, point.y}));
  }
  return pairs;
}
QColor Strip::TraceColour(int trace) const {
  return p_->scene.HasTrace(trace) ? p_->scene.TraceAt(trace).style.colour : QColor();
}
int Strip::TraceWidth(int trace) const {
  return p_->scene.HasTrace(trace) ? p_->scene.TraceAt(trace).style.width : 0;
}
int Strip::TraceAxis(int trace) const {
  return p_->scene.HasTrace(trace) ? static_cast<int>(p_->scene.AxisOf(trace)) : -1;
}
int Strip::VariableLineStyle(int trace) const {
  return p_->scene.HasTrace(trace) ? static_cast<int>(p_->scene.TraceAt(trace).style.style) : 0;
}
QString Strip::TraceName(int trace) const {
  return p_->scene.NameOf(trace);
}
bool Strip::TraceVisible(int trace) const {
  return p_->scene.Shown(trace);
}
void Strip::SetTraceVisible(int trace, bool visible) {
  if (p_->scene.HasTrace(trace) && p_->scene.TraceAt(trace).visible != visible) p_->input.ToggleTrace(trace);
}
bool Strip::HasLegend(int trace) const {
  return std::any_of(p_->scene.labels.begin(), p_->scene.labels.end(), [&](const StripLabel& label) {
    return label.slot != 0 && label.trace == trace && label.line && !label.text.isEmpty();
  });
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

}  // namespace zth::widgets
