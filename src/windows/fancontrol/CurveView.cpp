#include "windows/fancontrol/CurveView.h"

#include <utility>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "platform/Services.h"
#include "widgets/Strip.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/ChipCorners.h"

namespace zth::windows {

CurveView::CurveView(QWidget* parent, platform::Services& services)
    : services_(services),
      stpGraph_(new widgets::Strip(services.clock, parent, widgets::StripOutlets(services, link::BoardName))) {
  stpGraph_->setObjectName("stpGraph");
  stpGraph_->setToolTip("Drag the arrows at the edges of this graph to zoom in and out");
  stpGraph_->setAccessibleName("Duty against temperature");
  stpGraph_->SetUp(CurveChart());
}

void CurveView::ShowPwm(int pwm, const QString& title) {
  pwm_ = pwm;
  stpGraph_->SetLabelIndex(0);
  stpGraph_->SetCaption(title);
}

void CurveView::SetLegend() {
  const PwmCurve& curve = Curve();
  const auto caption = [this](int slot, const QString& text) {
    stpGraph_->SetLabelIndex(slot);
    stpGraph_->SetCaption(text);
  };
  for (int slot = 1; slot <= chip::kTemperatures; ++slot) caption(slot, "");
  const bool old = chip::IsStale(chip::kTemperatureGroup);
  const QString age = chip::AgeText(old ? chip::kTemperatureGroup : chip::kPwmGroup);
  for (int s = 0; s < curve.SourceCount; ++s) {
    const QString name = QString::fromStdString(curve.Sources[static_cast<std::size_t>(s)].Name);
    caption(s + 1, name + (age.isEmpty() ? "" : " = " + age));
  }
  if (curve.SourceCount > 0) return;
  stpGraph_->SetLabelIndex(0);
  caption(1, stpGraph_->Caption() + " is not under automatic control");
}

void CurveView::Draw(bool ready) {
  SetLegend();
  stpGraph_->ClearData();
  if (!ready) return;
  std::vector<CurvePaths> paths;
  for (int s = 0; s < Curve().SourceCount; ++s) {
    paths.push_back(BuildCurvePaths(model_, pwm_, s, {stpGraph_->XSpan(), stpGraph_->XEnd()}));
  }
  PlotPaths(paths);
  PlotTrail();
  PlotCorners();
}

void CurveView::PlotPaths(const std::vector<CurvePaths>& paths) {
  const auto plot = [this](int trace, const DrawPath& path) {
    for (const CurvePoint& point : path) stpGraph_->PlotXY(trace, point.x, point.y);
  };
  const int sources = static_cast<int>(paths.size());
  for (int s = 0; s < sources; ++s) {
    plot(s, VisibleMain(paths[static_cast<std::size_t>(s)].main, stpGraph_->XEnd()));
  }
  for (int s = 0; s < sources; ++s) {
    plot(s + kHysteresisTrace, VisibleHysteresis(paths[static_cast<std::size_t>(s)].hysteresis, stpGraph_->XEnd()));
  }
}

// The curve goes through whole degrees and percent, as its points are computed; they stay as they are. The chip's own
// corners lie beside them, so that they can be read exactly at any Trange.
void CurveView::PlotCorners() {
  for (int s = 0; s < Curve().SourceCount; ++s) {
    for (const ChipCorner& corner : ChipCorners(RampOf(model_, pwm_, s))) {
      stpGraph_->PlotXY(kCornerTrace + s, corner.x, corner.y);
    }
  }
}

void CurveView::DrawWithDots(bool ready) {
  RecordDots();
  Draw(ready);
  for (const DotTrail::Dot& dot : DotsNow()) {
    stpGraph_->PlotXY(dot.source + kDotTrace, dot.x, dot.y);
    stpGraph_->PlotXY(dot.source + kDotTrace, dot.x, dot.y);
  }
}

std::vector<DotTrail::Dot> CurveView::DotsNow() const {
  // A dot shows the fan's present state; there is none while one of its two values is stale.
  if (chip::IsStale(chip::kTemperatureGroup) || chip::IsStale(chip::kPwmGroup)) return {};
  const double now = services_.clock.Now();
  const double duty = chip::Model.Measurements.PwmPercent[static_cast<std::size_t>(pwm_)];
  std::vector<DotTrail::Dot> dots;
  for (int s = 0; s < Curve().SourceCount; ++s) {
    const auto channel = static_cast<std::size_t>(Curve().Sources[static_cast<std::size_t>(s)].Channel - 1);
    dots.push_back({s, static_cast<double>(chip::Model.Measurements.Temperature[channel]), duty, now});
  }
  return dots;
}

std::vector<int> CurveView::SourcesShown() const {
  std::vector<int> shown{link::Bus.InterfaceMode, link::Bus.DeviceAddress, pwm_};
  for (int s = 0; s < Curve().SourceCount; ++s) shown.push_back(Curve().Sources[static_cast<std::size_t>(s)].Channel);
  return shown;
}

void CurveView::RecordDots() {
  // A trail belongs to one PWM and its sources.
  const std::vector<int> of = SourcesShown();
  if (std::exchange(trailOf_, of) != of) trail_.Clear();
  trail_.Expire(services_.clock.Now());
  for (const DotTrail::Dot& dot : DotsNow()) trail_.Add(dot);
}

void CurveView::PlotTrail() {
  // After a change of the PWM or its sources, the trail belongs to another curve until the next dots are drawn.
  if (SourcesShown() != trailOf_) return;
  const double now = services_.clock.Now();
  for (const DotTrail::Dot& dot : trail_.Dots()) {
    stpGraph_->PlotXY(kTrailTrace + DotTrail::AgeOf(dot, now) * chip::kTemperatures + dot.source, dot.x, dot.y);
  }
}

}  // namespace zth::windows
