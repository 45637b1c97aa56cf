#pragma once

#include <array>
#include <cstdint>

#include "windows/fancontrol/LiveWindow.h"

class QPushButton;
class QTabWidget;

namespace zth::widgets {
class Strip;
}

namespace zth::windows {

/// The chip's dynamic Tmin on Remote1 and Remote2: every control writes at once, and a live chart for each channel
/// shows the chip's response. Also contains the demo's button.
class frmDynamicTmin final : public LiveWindow {
  Q_OBJECT

 public:
  explicit frmDynamicTmin(const Context& context);

  /// Also called while the window is open, after the demo has set up the chip. The window is then ready, so every
  /// control that changes writes back the value just read.
  void Form_Load() override;
  void Form_Unload() override;

  /// Feeds both charts. Called by the master timer.
  void UpdateDynTminGraph();

 private:
  QTabWidget* MakeTabs();
  QWidget* MakeTab(int channel);
  QWidget* MakeCommonRow();
  widgets::Strip* MakeChart(int channel);

  void ShowRemote1Available(bool available);
  void PlotChannel(int channel);
  /// Shows the age of stale values in the chart's title.
  static void ShowAges(widgets::Strip& strip, int channel);
  void PlaceTraceLabel(widgets::Strip& strip, int label, double value);
  void SetDutyLegend();

  void SSTab1_Click();
  void Strip2_LayoutChanged(int index);
  void cmdCancel_Click();
  void cmdDemo_Click();

  QTabWidget* SSTab1_ = nullptr;
  QPushButton* cmdDemo_ = nullptr;
  std::array<widgets::Strip*, 2> Strip2_{};
  std::array<std::uint8_t, 4> configs_{};  ///< of the PWMs, from the last good read
};

}  // namespace zth::windows
