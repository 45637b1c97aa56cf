#include "widgets/StripState.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "widgets/StripReadout.h"

namespace zth::widgets {

void StripState::Renew(const StripSetup& setup) {
  const bool dayTime = scene_.dayTimeWanted;
  scene_ = StripScene(setup);
  scene_.dayTimeWanted = dayTime;
  scene_.overlay.focus = hasFocus();
  labelIndex_ = axisIndex_ = 0;
}

void StripState::TellHeld() {
  if (std::exchange(held_, Held()) != Held()) emit HeldChanged(Held());
}

const StripView::Axis& StripState::ChosenAxis() const {
  return scene_.view.At(static_cast<std::size_t>(axisIndex_));
}

const StripLabel* StripState::FindLabel() const {
  return scene_.Label(labelIndex_);
}

StripLabel& StripState::ChosenLabel() {
  if (FindLabel() == nullptr) scene_.labels.push_back(StripLabel{.slot = labelIndex_});
  return *scene_.Label(labelIndex_);
}

double StripState::XSpan() const {
  return scene_.view.XSpan();
}
void StripState::SetXSpan(double span) {
  scene_.view.SetX(XEnd(), span);
  Changed(StripChange::View);
}
double StripState::XEnd() const {
  return scene_.view.XEnd();
}
void StripState::SetXEnd(double end) {
  scene_.view.SetX(end, XSpan());
  Changed(StripChange::View);
}
bool StripState::Held() const {
  return scene_.view.Held();
}

bool StripState::TimeOfDay() const {
  return scene_.dayTimeWanted;
}
void StripState::SetTimeOfDay(bool on) {
  if (!HasTimeOfDay() || on == TimeOfDay()) return;
  scene_.dayTimeWanted = on;
  Changed(StripChange::View);
  emit TimeOfDayChanged(on);
}

QString StripState::Caption() const {
  const StripLabel* label = FindLabel();
  return label != nullptr ? label->text : QString();
}
void StripState::SetCaption(const QString& caption) {
  StripLabel& label = ChosenLabel();
  if (label.text == caption) return;
  label.text = caption;
  Changed(labelIndex_ == 0 ? StripChange::View : StripChange::Values);
}
float StripState::LabelTop() const {
  const StripLabel* label = FindLabel();
  return label != nullptr ? static_cast<float>(label->top) : 0.0F;
}
void StripState::SetLabelTop(float top) {
  if (!std::isfinite(top)) return;
  ChosenLabel().top = static_cast<double>(top);
  Changed(StripChange::Values);
}
float StripState::LabelLeft() const {
  const StripLabel* label = FindLabel();
  return label != nullptr ? static_cast<float>(label->left) : 0.0F;
}
void StripState::SetLabelLeft(float left) {
  if (!std::isfinite(left)) return;
  ChosenLabel().left = static_cast<double>(left);
  Changed(StripChange::Values);
}
int StripState::LabelTrace() const {
  const StripLabel* label = FindLabel();
  return label != nullptr ? label->trace : -1;
}
void StripState::SetLabelTrace(int trace) {
  ChosenLabel().trace = trace;
  Changed(StripChange::Values);
}
bool StripState::LabelLine() const {
  const StripLabel* label = FindLabel();
  return label != nullptr && label->line;
}
void StripState::SetLabelLine(bool line) {
  ChosenLabel().line = line;
  Changed(StripChange::Values);
}
QColor StripState::LabelColour() const {
  return TraceColour(LabelTrace());
}

void StripState::SetAxisIndex(int index) {
  if (index >= 0 && index < AxisCount()) axisIndex_ = index;
}
double StripState::AxisMin() const {
  return ChosenAxis().min;
}
void StripState::SetAxisMin(double min) {
  scene_.view.SetAxis(static_cast<std::size_t>(axisIndex_), min, AxisMax());
  Changed(StripChange::View);
}
double StripState::AxisMax() const {
  return ChosenAxis().max;
}
void StripState::SetAxisMax(double max) {
  scene_.view.SetAxis(static_cast<std::size_t>(axisIndex_), AxisMin(), max);
  Changed(StripChange::View);
}
double StripState::AxisAreaTop() const {
  return ChosenAxis().areaTop;
}
void StripState::SetAxisAreaTop(double top) {
  if (axisIndex_ == 0 || !scene_.view.MoveBorder(static_cast<std::size_t>(axisIndex_ - 1), top)) return;
  Changed(StripChange::Zones);
}
double StripState::AxisAreaBottom() const {
  return ChosenAxis().areaBottom;
}

int StripState::Index() const {
  return scene_.setup.index;
}
int StripState::TraceCount() const {
  return static_cast<int>(scene_.traces.size());
}
int StripState::AxisCount() const {
  return static_cast<int>(scene_.view.AxisCount());
}
QString StripState::Title() const {
  const StripLabel* title = std::as_const(scene_).Label(0);
  return title != nullptr ? title->text : QString();
}
QString StripState::Summary() const {
  return StripSummary(scene_);
}

QVariantList StripState::TracePoints(int trace) const {
  QVariantList pairs;
  if (!scene_.HasTrace(trace)) return pairs;
  const StripScene::Trace& source = scene_.TraceAt(trace);
  for (const QPointF& point : source.points) pairs.append(QVariant(QVariantList{point.x(), point.y()}));
  const double everything = std::numeric_limits<double>::max();
  for (const TraceHistory::Point& point : source.history.Points(-everything, everything)) {
    pairs.append(QVariant(QVariantList{point.x, point.y}));
  }
  return pairs;
}
QColor StripState::TraceColour(int trace) const {
  return scene_.HasTrace(trace) ? scene_.TraceAt(trace).style.colour : QColor();
}
int StripState::TraceWidth(int trace) const {
  return scene_.HasTrace(trace) ? scene_.TraceAt(trace).style.width : 0;
}
int StripState::TraceAxis(int trace) const {
  return scene_.HasTrace(trace) ? static_cast<int>(scene_.AxisOf(trace)) : -1;
}
int StripState::VariableLineStyle(int trace) const {
  return scene_.HasTrace(trace) ? static_cast<int>(scene_.TraceAt(trace).style.style) : 0;
}
QString StripState::TraceName(int trace) const {
  return scene_.NameOf(trace);
}
bool StripState::TraceVisible(int trace) const {
  return scene_.Shown(trace);
}
void StripState::SetTraceVisible(int trace, bool visible) {
  if (!scene_.HasTrace(trace) || scene_.TraceAt(trace).visible == visible) return;
  scene_.TraceAt(trace).visible = visible;
  Changed(StripChange::View);
}
bool StripState::HasLegend(int trace) const {
  return std::any_of(scene_.labels.begin(), scene_.labels.end(), [&](const StripLabel& label) {
    return label.slot != 0 && label.trace == trace && label.line && !label.text.isEmpty();
  });
}

}  // namespace zth::widgets
