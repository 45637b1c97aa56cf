#pragma once

#include <array>
#include <memory>
#include <string>

#include "windows/fancontrol/CurveView.h"
#include "windows/fancontrol/LiveWindow.h"

class QTabWidget;

namespace zth::windows {

/// The chip's automatic fan control: every control writes at once, and the transfer curve of one PWM shows the effect,
/// with a live dot for each temperature that controls it. Only the load step reads the chip.
class frmAutoGraph final : public LiveWindow {
  Q_OBJECT

 public:
  explicit frmAutoGraph(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// Redraws the curve and the live dots. Called by the master timer.
  void PlotAFCTemps();

 protected:
  void AfterWrite(const Binding& row) override;
  void Reread() override;

 private:
  QWidget* MakeAllFans();
  QTabWidget* MakeTabs(const char* name);
  QWidget* MakePage(std::span<const Binding> rows);

  /// Gives all boxes the same width and left edge, in the frame and on all pages.
  void LineUp();
  /// Adds a tool tip to each Trange whose drawn line differs from the chip's, with the difference.
  void ShowTrangeTips(const CurveModel& model);
  void BuildModel();
  void DrawCurve() { view_->Draw(Ready()); }

  void tbPWM_Click();
  void cmdCancel_Click();

  QTabWidget* tbPWM_ = nullptr;
  QTabWidget* tbTemp_ = nullptr;
  std::unique_ptr<CurveView> view_;

  /// What the tip of a list of Tranges was made of.
  struct TrangeTip {
    std::string text;
    int apart = -1;
  };
  std::array<TrangeTip, chip::kTemperatures> tips_;
};

}  // namespace zth::windows
