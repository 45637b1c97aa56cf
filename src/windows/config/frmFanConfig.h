#pragma once

#include "windows/ConfigWindow.h"

class QTabWidget;

namespace zth::windows {

/// Settings of all fans: the four PWM outputs and the eight tach inputs.
class frmFanConfig final : public ConfigWindow {
 public:
  explicit frmFanConfig(const Context& context);

 private:
  void BuildTachPage(QTabWidget& tabs);
  void TickAllTachs(bool on);
  void cmdEnableAll_Click();
  void cmdDisableAll_Click();
};

}  // namespace zth::windows
