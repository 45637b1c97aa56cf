#pragma once

#include <array>

#include "windows/ChildWindow.h"
#include "windows/config/frmPinConfigTables.h"

class QBoxLayout;
class QComboBox;
class QGridLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace zth::windows {

/// What the chip's multi-function pins do: one of its ready-made assignments, or pin by pin. Each tab has its own
/// Apply, which writes that tab's registers alone and then makes open windows read the chip again.
class frmPinConfig final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmPinConfig(const Context& context);

  void Form_Load() override;

 private:
  QWidget* BuildEasyTab();
  QWidget* BuildIndividualTab();
  QBoxLayout* BuildButtons(const QString& apply, int close, void (frmPinConfig::*handler)());
  QWidget* BuildBox(PinBox box, const QString& name, const QString& title);
  void BuildList(std::size_t row, QGridLayout& grid);
  QComboBox& List(const char* control) const;

  void cmbPins1234_31_32_Click();
  void cmbPins1516_Click();
  void cmbPins1920_Click();
  void optEasy_Click();
  void cmdApply_Click();
  void cmdEasyApply_Click();
  void cmdClose_Click();

  void EnablePinsOf(const char* group);
  void ShowEasyOptionDetails();
  void ReloadLimits();

  QTabWidget* tabs_;
  std::array<QRadioButton*, kEasyOptions> optEasy_{};
  std::array<QListWidget*, kEasyOptions> details_{};
  QLabel* noDetails_ = nullptr;  ///< in the lists' place while no option is selected
  std::array<QComboBox*, kPinLists.size()> lists_{};
  std::array<QLabel*, kPinLists.size()> labels_{};
};

}  // namespace zth::windows
