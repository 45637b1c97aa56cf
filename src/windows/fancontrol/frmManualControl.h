#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "windows/ChildWindow.h"

class QGroupBox;
class QLabel;

namespace zth::widgets {
class GSlider;
}

namespace zth::windows {

/// Manual control of each PWM's duty. A slider works only if its PWM's behaviour is set to manual. The others follow
/// the measured duty once a second. So does a manual slider that is not held, as soon as the duty has been measured
/// since its write.
class frmManualControl final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmManualControl(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// Update which PWMs are manual, and their measured duties. Called by the master timer.
  void RefreshManualControlStates();
  void RefreshManualControlSliders();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QGroupBox* MakeFrame();
  void ShowAge();
  void cmdClose_Click();
  void sldManual_MouseDown();
  void sldManual_MouseUp();
  void sldManual_Change(int index);

  std::array<widgets::GSlider*, 4> sldManual_{};
  std::array<QLabel*, 4> lblManual_{};
  QLabel* lblStale_ = nullptr;
  /// The count of duty reads when the slider was last written; empty once they have been read since.
  std::array<std::optional<std::uint32_t>, 4> writtenAfter_{};
};

}  // namespace zth::windows
