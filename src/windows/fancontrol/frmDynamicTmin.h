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

/// The chip's dynamic Tmin on Remote1 and Remote2: each control writes at once, and a live chart for each of the two
/// shows what the chip makes of it. The button of the demo stands here as well.
class frmDynamicTmin final : public LiveWindow {
  Q_OBJECT

 public:
  explicit frmDynamicTmin(const Context& context);

  /// Runs again while the window is open when the demo has set the chip up. The window is then ready, so that each
  /// control that changes writes back what has just been read.
  void Form_Load() override;
  void Form_Unload() override;

  /// Feeds both charts: for the master timer.
  void UpdateDynTminGraph();

 private:
  QTabWidget* MakeTabs();
  QWidget* MakeTab(int channel);
  QWidget* MakeCommonRow();
  widgets::Strip* MakeChart(int channel);

  void ShowRemote1Available(bool available);
  void PlotChannel(int channel);
  /// In the chart's title, while values of it are stale.
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
  std::array<std::uint8_t, 4> configs_{};  ///< of the PWMs, as they were last read well
};

}  // namespace zth::windows
