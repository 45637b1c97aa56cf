#pragma once

#include <array>

#include "windows/ChildWindow.h"

class QFrame;
class QLabel;

namespace zth::widgets {
class GSlider;
}

namespace zth::windows {

/// The board's two heaters: a drive slider for each, and its temperature beside it. A slider acts at once. The heaters
/// are on the USB adapter; over SMBus nothing is sent.
class frmHeaters final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmHeaters(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// Shows the latest temperatures of Remote1 and Remote2. Called by the master timer.
  void RefreshTemperatures();

 private:
  QFrame* MakeFrame(int heater);
  void cmdClose_Click();
  void sldHeater_Change(int index);

  std::array<widgets::GSlider*, 2> sldHeater_{};
  std::array<QLabel*, 2> lblTemp_{};
  QLabel* lblNoAdapter_ = nullptr;
};

}  // namespace zth::windows
