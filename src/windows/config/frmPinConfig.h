#pragma once

#include <array>
#include <string_view>

#include "windows/ChildWindow.h"
#include "windows/config/frmPinConfigTables.h"

class QBoxLayout;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QListWidget;
class QRadioButton;

namespace zth::windows {

class BoundControls;

/// What the chip's multi-function pins do: one of its ready-made assignments, or pin by pin. Each tab has its own
/// Apply, which writes that tab's registers alone and then makes open windows read the chip again.
class frmPinConfig final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmPinConfig(const Context& context);

  void Form_Load() override;

 protected:
  bool HoldsChanges() const override;

 private:
  static constexpr int kEasyOptions = kEasyRows.size();

  QWidget* BuildEasyTab();
  QWidget* BuildDetails();
  QWidget* BuildIndividualTab();
  QBoxLayout* BuildButtons(const QString& apply, int close, void (frmPinConfig::*handler)());
  QGroupBox* BuildBox(PinBox box, const QString& name, const QString& title);
  void BuildPin(std::size_t i, QGridLayout& grid);
  QComboBox& List(std::string_view control) const;

  void cmbPins1234_31_32_Click();
  void cmbPins1516_Click();
  void cmbPins1920_Click();
  void optEasy_Click();
  void cmdApply_Click();
  void cmdEasyApply_Click();
  void cmdClose_Click();

  void EnablePinsOf(std::string_view group);
  void ShowEasyOptionDetails();
  void ReloadLimits();

  std::array<QRadioButton*, kEasyOptions> optEasy_{};
  std::array<QListWidget*, kEasyOptions> list1_{};
  QLabel* noDetails_ = nullptr;  ///< in the lists' place while no option is selected
  std::array<QComboBox*, kPins.size()> lists_{};
  std::array<QLabel*, kPins.size()> lblPin_{};  ///< by the row of the table
  BoundControls* controls_ = nullptr;
};

}  // namespace zth::windows
