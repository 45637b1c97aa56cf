#pragma once

#include <array>
#include <cstdint>

#include "windows/ChildWindow.h"

class QCheckBox;
class QGroupBox;
class QLabel;

namespace zth::windows {

/// The board's two ADG715 switch devices by hand: a snapshot of their ports as check boxes, written on Apply. What is
/// set here lasts until the next write to the pin configuration routes the board anew.
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

  /// Boxes 0 to 5 are bits 0 to 5 of chip::kSwitchDevice0, boxes 6 to 13 all bits of chip::kSwitchDevice1.
  std::array<QCheckBox*, 14> chkSwitch_{};
  std::array<bool, 14> read_{};  ///< what they showed when the board was last read
  QLabel* lblNoAdapter_ = nullptr;
};

}  // namespace zth::windows
