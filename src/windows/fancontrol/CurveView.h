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

/// The chart of the automatic fan control: the transfer curves of one PWM, a live dot for each temperature that
/// controls it, and the dots' trail. Does not access the chip.
class CurveView {
 public:
  CurveView(QWidget* parent, platform::Services& services);

  widgets::Strip* Chart() const { return stpGraph_; }

  void SetModel(const CurveModel& model) { model_ = model; }
  /// Shows the curves of PWM 0 to 3 from the next drawing on.
  void ShowPwm(int pwm, const QString& title);
  /// The curve of the PWM shown.
  const PwmCurve& Curve() const { return model_.Pwm[static_cast<std::size_t>(pwm_)]; }

  /// Draws the legend, and also the curves and the trail if `ready`.
  void Draw(bool ready);
  /// The same, with dots at the current temperatures.
  void DrawWithDots(bool ready);

 private:
  void SetLegend();
  void PlotCorners();
  void PlotPaths(const std::vector<CurvePaths>& paths);
  /// The current dots of the sources.
  std::vector<DotTrail::Dot> DotsNow() const;
  void RecordDots();
  void PlotTrail();
  /// Identifies the curves: the chip in use, the PWM shown and its channels.
  std::vector<int> SourcesShown() const;

  platform::Services& services_;
  widgets::Strip* stpGraph_;
  int pwm_ = 0;
  CurveModel model_;
  DotTrail trail_;
  std::vector<int> trailOf_;  ///< SourcesShown() when the trail was recorded
};

}  // namespace zth::windows
