#pragma once

#include <array>
#include <cstdint>

#include "windows/ChildWindow.h"

class QCheckBox;
class QGroupBox;
class QLabel;

namespace zth::windows {

/// Manual control of the board's two ADG715 switch devices: check boxes show a snapshot of their ports, which Apply
/// writes. The settings last until the next write to the pin configuration sets the switches again.
class frmSwitches final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmSwitches(const Context& context);

  void Form_Load() override;

 protected:
  bool HoldsChanges() const override;

 private:
  QGroupBox* MakeFrame();
  void cmdRefresh_Click();
  void cmbApply_Click();

  /// Boxes 0 to 5 are bits 0 to 5 of chip::kSwitchDevice0, boxes 6 to 13 are all bits of chip::kSwitchDevice1.
  std::array<QCheckBox*, 14> chkSwitch_{};
  std::array<bool, 14> read_{};  ///< their states when the board was last read
  QLabel* lblNoAdapter_ = nullptr;
};

}  // namespace zth::windows
