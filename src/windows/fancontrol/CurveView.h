#pragma once

#include <vector>

#include "windows/fancontrol/CurveModel.h"
#include "windows/fancontrol/DotTrail.h"

class QString;
class QWidget;

namespace zth::platform {
struct Services;
}
namespace zth::widgets {
class Strip;
}

namespace zth::windows {

/// The chart of the automatic fan control: the transfer curves of one PWM, a live dot for each temperature that drives
/// it, and the trail that the dots have left. Touches no chip.
class CurveView {
 public:
  CurveView(QWidget* parent, platform::Services& services);

  widgets::Strip* Chart() const { return stpGraph_; }

  void SetModel(const CurveModel& model) { model_ = model; }
  /// The curves are those of PWM 0 to 3 from the next drawing on.
  void ShowPwm(int pwm, const QString& title);
  /// Of the PWM showing.
  const PwmCurve& Curve() const { return model_.Pwm[static_cast<std::size_t>(pwm_)]; }

  /// Draws the legend, and the curves with the trail unless `ready` is false.
  void Draw(bool ready);
  /// The same with dots where the temperatures are now.
  void DrawWithDots(bool ready);

 private:
  void SetLegend();
  void PlotPaths(const std::vector<CurvePaths>& paths);
  /// Where the dots of the sources are now.
  std::vector<DotTrail::Dot> DotsNow() const;
  void RecordDots();
  void PlotTrail();
  /// The chip in use, the PWM showing and the channels behind its curves.
  std::vector<int> SourcesShown() const;

  platform::Services& services_;
  widgets::Strip* stpGraph_;
  int pwm_ = 0;
  CurveModel model_;
  DotTrail trail_;
  std::vector<int> trailOf_;  ///< SourcesShown() when the trail was left
};

}  // namespace zth::windows
