#include "widgets/Strip.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QCoreApplication>
#include <QPainter>
#include <QTimer>

#include "widgets/Drawings.h"
#include "widgets/Named.h"
#include "widgets/StripAccessible.h"
#include "widgets/StripBar.h"
#include "widgets/StripCaption.h"
#include "widgets/StripExport.h"
#include "widgets/StripPrivate.h"

namespace zth::widgets {
namespace {

// The least time between two redraws of a chart, however fast data arrive.
constexpr int kFrameMs = 16;
// A chart that moves slowly is redrawn this often. All such charts keep one beat, so that they are drawn together: what
// a redraw costs besides its pixels is then paid once.
constexpr int kBeatMs = 250;
// The same for the data of an X-Y chart, which does not move.
constexpr int kXyBeatMs = 125;
// With columns narrower than this a chart moves fast enough to be redrawn for each of them.
constexpr int kFastColumnMs = 80;
constexpr double kTellSeconds = 1;
constexpr double kNoteSeconds = 1;

/// The frame timer shared by all charts, so that they are drawn together.
QTimer& Frames() {
  const QString name = QStringLiteral("stripFrames");
  auto* timer = QCoreApplication::instance()->findChild<QTimer*>(name, Qt::FindDirectChildrenOnly);
  if (timer == nullptr) {
    timer = Named<QTimer>(name, QCoreApplication::instance());
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
  }
  return *timer;
}

void AwaitFrame(int ms) {
  QTimer& timer = Frames();
  if (!timer.isActive() || timer.remainingTime() > ms) timer.start(std::max(ms, kFrameMs));
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

void Strip::Private::BeginFrame() {
  frame.setSingleShot(true);
  frame.setTimerType(Qt::PreciseTimer);
  const double column = strip.IsXY() ? kFastColumnMs : painter.Layout().ColumnWidth() * 1000;
  if (column < kFastColumnMs) {
    // A live chart moves by whole columns, so more redraws than columns would show little that is new.
    frame.start(std::max(static_cast<int>(column), kFrameMs));
    return;
  }
  const int beat = strip.IsXY() ? kXyBeatMs : kBeatMs;
  frame.start(beat - static_cast<int>(std::fmod(clock() * 1000, beat)));
}

Strip::Strip(std::function<double()> clock, QWidget* parent, const std::optional<StripOutlets>& outlets)
    : StripState(parent), p_(std::make_unique<Private>(*this, std::move(clock))), files_(*this, outlets) {
  InstallStripAccessibility();
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  p_->bar = new StripBar(*this);
  connect(&Frames(), &QTimer::timeout, this, [this] {
    if (!p_->waiting) return;
    if (const int left = p_->FrameLeft(); left > 0) return AwaitFrame(left);
    p_->waiting = false;
    // Covered by other windows. What uncovers it draws it, too.
    if (visibleRegion().isEmpty()) return;
    p_->BeginFrame();
    // New values do not change the title's row or the buttons in it.
    const int top = p_->painter.Layout().plot.top() - 1;
    update(0, top, width(), height() - top);
  });
}

Strip::Strip(const platform::Clock& clock, QWidget* parent, const std::optional<StripOutlets>& outlets)
    : Strip([&clock] { return clock.Now(); }, parent, outlets) {
  p_->wallClock = [&clock] { return clock.WallTime(); };
}

Strip::~Strip() = default;

bool Strip::HasTimeOfDay() const {
  return p_->wallClock && !IsXY();
}

void Strip::SetUp(const StripSetup& setup) {
  Renew(setup);
  p_->feed.Restart();
  p_->painter.ResetColumns();
  p_->painter.Forget();
  p_->LayOut();
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
  ShowBar();
  update();
}

void Strip::PlaceBar() {
  p_->LayOut();
  ShowBar();
}

// Uses the latest layout: a change of ranges moves the title by a few pixels at most, and the next picture tells.
void Strip::ShowBar() {
  if (p_->bar == nullptr) return;
  p_->bar->ShowState();
  p_->titleEnd = p_->painter.TitleEnd(scene_);
  p_->bar->Place(p_->painter.Layout().plot.top(), p_->titleEnd);
}

// New samples only mark the chart; the shared timer combines any number of them into one redraw. A hidden chart does
// not start the timer, since showing it draws it anyway.
void Strip::Touch() {
  TellValue();
  if (p_->waiting || !isVisible()) return;
  p_->waiting = true;
  AwaitFrame(p_->FrameLeft());
}

// A screen reader speaks for seconds, so it is told of new values at most once a second.
void Strip::TellValue() {
  if (!QAccessible::isActive() || !isVisible() || p_->clock() < p_->tellNext) return;
  p_->tellNext = p_->clock() + kTellSeconds;
  // Not as a change of value: a chart has no single number, and Qt's bridge would complain of that each time.
  QAccessibleEvent described(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&described);
}

void Strip::ClearData() {
  scene_.ClearData();
  p_->painter.Forget();
  p_->feed.Restart();
  TellHeld();
  p_->bar->ShowState();
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
  NoteDayTime(x);
  Touch();
}

// Asking for the time of day reads the file of the time zone, and between two jumps of the clock nothing new is learnt.
void Strip::NoteDayTime(double x) {
  if (!p_->wallClock || (scene_.dayTime.Known() && std::abs(x - p_->notedX) < kNoteSeconds)) return;
  p_->notedX = x;
  scene_.dayTime.Note(x, p_->wallClock());
}

void ShareTimeOfDay(std::span<Strip* const> charts) {
  for (Strip* from : charts) {
    for (Strip* to : charts) {
      if (from != to) QObject::connect(from, &Strip::TimeOfDayChanged, to, &Strip::SetTimeOfDay);
    }
  }
}

void Strip::GoLive() {
  p_->input.GoLive();
}
void Strip::ToggleHold() {
  p_->input.ToggleHold();
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

QImage Strip::Picture(const QString& caption) {
  StripScene::Overlay overlay;
  std::swap(overlay, scene_.overlay);
  const double ratio = devicePixelRatioF();
  QImage image(size() * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  QPainter painter(&image);
  p_->painter.Paint(painter, scene_, size(), ratio, palette());
  painter.end();
  std::swap(overlay, scene_.overlay);
  return StripCaption{caption, font(), palette()}.Under(image);
}

QByteArray Strip::PictureSvg(const QString& caption) const {
  const StripCaption beneath{caption, font(), palette()};
  const QSize whole(width(), height() + beneath.Height(width()));
  return SvgOf({whole, Title(), Summary()}, [&](QPainter& painter) {
    p_->painter.PaintVector(painter, scene_, size(), palette(), false);
    beneath.Paint(painter, size());
  });
}

QString Strip::VisibleData() const {
  return StripCsv(scene_);
}

}  // namespace zth::widgets
