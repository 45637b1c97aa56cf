#pragma once

#include <array>

#include "windows/ChildWindow.h"

class QCheckBox;
class QLineEdit;
class QWidget;

namespace zth::windows {

/// The setting "OpenEasySetup": whether the start opens this window. Whatever does not read as False does; a setting
/// that is missing or spoilt counts as its default.
bool OpensEasySetup(const platform::Settings& settings);

/// The first steps with a new chip: a few ticks, each of which only ever sets bits. Reads nothing from the chip when it
/// opens, so that its boxes show what will be done and not what is.
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
