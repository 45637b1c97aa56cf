#pragma once

#include <array>
#include <deque>

#include "windows/fancontrol/ChipHint.h"
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
  /// One box a bit: three for each channel, and the control loop.
  static constexpr int kChecks = 7;
  struct ChannelControls {
    QComboBox* cmbCycle = nullptr;
    QLineEdit* txtOpPoint = nullptr;
    QLineEdit* txtTmin = nullptr;
    QLineEdit* txtLowLim = nullptr;
    QLineEdit* txtHighLim = nullptr;
  };

  QTabWidget* MakeTabs();
  QWidget* MakeTab(int channel);
  QWidget* MakeCommonRow();
  QCheckBox* MakeCheck(ControlRows& rows, int check);
  widgets::Strip* MakeChart(int channel);

  void ShowChecks(const std::array<std::uint8_t, 2>& bytes);
  void ShowRemote1Available(bool available);
  void PlotChannel(int channel);
  void PlaceTraceLabel(widgets::Strip& strip, int label, double value);
  void SetDutyLegend();

  void SSTab1_Click();
  void Strip2_LayoutChanged(int index);
  void cmdCancel_Click();
  void cmdDemo_Click();
  void Check_Click(int check);
  void cmbCycle_Click(int channel);
  void Degrees_Change(std::int32_t number, const QLineEdit& box);
  void txtOpPointHyst_Change();

  QTabWidget* SSTab1_ = nullptr;
  std::array<QCheckBox*, kChecks> checks_{};
  std::array<ChannelControls, 2> channels_;
  std::deque<ChipHint> hints_;  ///< of the boxes that the chip, or the demo, can move
  QLineEdit* txtOpPointHyst_ = nullptr;
  QPushButton* cmdDemo_ = nullptr;
  std::array<widgets::Strip*, 2> Strip2_{};
};

}  // namespace zth::windows
