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

/// The duty of each PWM by hand. A slider works only on a PWM whose behaviour stands at manual; the others follow the
/// measured duty once a second, as does a manual one that nobody holds, as soon as it has been measured since its
/// write.
class frmManualControl final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmManualControl(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// Which PWMs are under manual control, and their measured duties: for the master timer.
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
  /// How often the duties had been read when the slider was last written; none once they have been read since.
  std::array<std::optional<std::uint32_t>, 4> writtenAfter_{};
};

}  // namespace zth::windows
