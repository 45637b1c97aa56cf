#pragma once

#include <array>
#include <deque>
#include <vector>

#include "windows/fancontrol/ChipHint.h"
#include "windows/fancontrol/CurveModel.h"
#include "windows/fancontrol/DotTrail.h"
#include "windows/fancontrol/LiveWindow.h"

class QTabWidget;

namespace zth::widgets {
class Strip;
}

namespace zth::windows {

/// The chip's automatic fan control: each control writes at once, and the transfer curve of one PWM follows them, with
/// a live dot for each temperature that drives it. Only the load step reads the chip.
class frmAutoGraph final : public LiveWindow {
  Q_OBJECT

 public:
  explicit frmAutoGraph(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// Redraws the curve and the live dots: for the master timer.
  void PlotAFCTemps();

 protected:
  void Reread() override;

 private:
  struct PwmControls {
    QComboBox* cmbControl = nullptr;
    QLineEdit* txtMinPWM = nullptr;
    QCheckBox* chkMinSpeed = nullptr;
  };
  struct TemperatureControls {
    QLineEdit* txtTmin = nullptr;
    QComboBox* cmbTrange = nullptr;
    QLineEdit* txtTminHyst = nullptr;
    QLineEdit* txtTH1 = nullptr;
    QLineEdit* txtTH2 = nullptr;
    QLineEdit* txtHyst = nullptr;
  };

  QWidget* MakeAllFans();
  QTabWidget* MakePwmTabs();
  QWidget* MakePwmTab(int pwm);
  QTabWidget* MakeTemperatureTabs();
  QWidget* MakeTemperatureTab(int channel);
  widgets::Strip* MakeChart();

  void FillThermOptions();
  void FillPwmControls();
  void FillTemperatureControls();

  void BuildModel();
  void SetCurveLegend(int pwm);
  void DrawCurve();
  void PlotPaths(const std::vector<CurvePaths>& paths);
  void RecordDots(int pwm);
  void PlotTrail();
  /// The chip in use, the PWM showing and the channels behind its curves.
  std::vector<int> SourcesShown() const;

  void tbPWM_Click();
  void cmdCancel_Click();
  void cmbControl_Click(int pwm);
  void txtMinPWM_Change(int pwm);
  void chkMinSpeed_Click(int pwm);
  void cmbTrange_Click(int channel);
  void txtTminHyst_Change(int channel);
  void txtHyst_Change(int channel);
  /// The handlers that set or clear one bit, and those that write a whole byte of degrees.
  void ThermOption(int bit, bool ticked);
  void Degrees(std::int32_t number, const QLineEdit& box);
  /// After a write.
  void Redraw();

  QCheckBox* chkThermFS1_ = nullptr;
  QCheckBox* chkThermFS2_ = nullptr;
  QLineEdit* txtMaxPWM_ = nullptr;
  QTabWidget* tbPWM_ = nullptr;
  std::array<PwmControls, kPwms> pwms_;
  QTabWidget* tbTemp_ = nullptr;
  std::array<TemperatureControls, kChannels> temperatures_;
  std::deque<ChipHint> hints_;  ///< of Tmin, by channel
  widgets::Strip* stpGraph_ = nullptr;

  CurveModel model_;
  DotTrail trail_;
  std::vector<int> trailOf_;  ///< SourcesShown() when the trail was left
};

}  // namespace zth::windows
