#pragma once

#include <array>

#include "windows/ChildWindow.h"

class QCheckBox;
class QLineEdit;
class QWidget;

namespace zth::windows {

/// The setting "OpenEasySetup": whether this window is opened at the start. Any value but False means yes; a missing or
/// invalid setting counts as its default.
bool OpensEasySetup(const platform::Settings& settings);

/// The first steps with a new chip: a few check boxes, each of which only sets bits. Opening the window reads nothing
/// from the chip, so the boxes show what will be done, not the chip's state.
class frmEasySetup final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmEasySetup(const Context& context);

  void Form_Load() override;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  static constexpr int kOptions = 7;

  QWidget* BuildOptions();
  void cmdApply_Click();
  void cmdClose_Click();
  void txtOption_Change();
  bool OptionIsValid() const;
  bool SetEasyOption();
  void OpenGraphs();
  bool RunOption(std::size_t i);

  std::array<QCheckBox*, kOptions> chkOption_{};
  QLineEdit* txtOption_;
  QCheckBox* chkStartUp_;
};

}  // namespace zth::windows
