#include "windows/config/frmEasySetup.h"

#include <cmath>

#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/BitField.h"
#include "base/NumberText.h"
#include "base/Product.h"
#include "base/Twips.h"
#include "chip/EasyOption.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/Named.h"
#include "widgets/UpDown.h"
#include "windows/Editors.h"
#include "windows/Handlers.h"
#include "windows/PendingMarks.h"

namespace zth::windows {
namespace {

constexpr char kBadOption[] = "Option value must be in range 1-5";
constexpr char kSetting[] = "OpenEasySetup";
constexpr int kGraphPlaceTwips = 500;

/// The action of a ticked option on OK.
enum class Action : std::uint8_t { EasyOption, SetBits, WriteOnes, OpenGraphs };

struct SetupOption {
  Binding row;  ///< the option's box, and the bits it sets
  bool ticked;  ///< initial state
  Action action;
};

// In the order of execution. The leading and trailing blanks are part of the texts.
// clang-format off
constexpr std::array<SetupOption, 7> kSetupOptions{{
    {Check({"chkOption", 0}, "Set &Easy Configuration Option", {"Easy Config"_reg, Bits(4, 0)}),
     true, Action::EasyOption},
    {Check({"chkOption", 1}, "Ena&ble Tachs 1-4 ", chip::kTachs1To4), true, Action::SetBits},
    {Check({"chkOption", 2}, "Enable '&Setup Complete' configuration bit", chip::kSetupComplete),
     true, Action::SetBits},
    {Check({"chkOption", 3}, "Load &Graphing Window", {}), true, Action::OpenGraphs},
    {Check({"chkOption", 4}, "Set Max &PWM1-4 to 100%", Byte("PWM 1-4 Max"_reg)), true, Action::WriteOnes},
    {Check({"chkOption", 5}, "Set fa&ns to run at Max PWM", At("Configuration 2", "FFS")), false, Action::SetBits},
    {Check({"chkOption", 6}, "Set ALERT to Co&mparator mode ", At("Configuration 1", "ALT")), false, Action::SetBits},
}};
// clang-format on
constexpr std::uint8_t kEasyConfig = kSetupOptions[0].row.reg;

}  // namespace

frmEasySetup::frmEasySetup(const Context& context)
    : ChildWindow("frmEasySetup", "Setup", context),
      txtOption_(new QLineEdit("1", this)),
      chkStartUp_(new QCheckBox("Show at start-&up", this)) {
  QWidget* options = BuildOptions();
  chkStartUp_->setObjectName("chkStartUp");
  chkStartUp_->setToolTip("Open this window each time the program starts");

  auto* cmdApply = widgets::Named<QPushButton>("cmdApply", "OK", this);
  OnClick(*cmdApply, [this] { cmdApply_Click(); });
  SetDefaultButton(*cmdApply);
  auto* cmdClose = widgets::Named<QPushButton>("cmdClose", "Cancel", this);
  OnClick(*cmdClose, [this] { cmdClose_Click(); });
  SetCancelButton(*cmdClose);

  auto* column = new QVBoxLayout(this);
  column->addWidget(options, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(chkStartUp_);
  buttons->addStretch();
  buttons->addWidget(cmdApply);
  buttons->addWidget(cmdClose);
  column->addLayout(buttons);

  setTabOrder(chkOption_[0], txtOption_);
  setTabOrder(txtOption_, chkOption_[1]);
  setTabOrder(chkOption_.back(), chkStartUp_);
  setTabOrder(chkStartUp_, cmdApply);
  setTabOrder(cmdApply, cmdClose);
  chkOption_[0]->setFocus();
}

QWidget* frmEasySetup::BuildOptions() {
  auto* frame = widgets::Named<QGroupBox>("Frame1", "Initialisation options : ", this);
  auto* column = new QVBoxLayout(frame);
  for (std::size_t i = 0; i < chkOption_.size(); ++i) {
    const SetupOption& option = kSetupOptions[i];
    auto* box = widgets::Named<QCheckBox>(NameOf(option.row.control), option.row.caption, frame);
    box->setChecked(option.ticked);
    if (option.action != Action::OpenGraphs) box->setToolTip("Sets " + PlaceOf(option.row));
    chkOption_[i] = box;
    if (option.action != Action::EasyOption) {
      column->addWidget(box);
      continue;
    }
    txtOption_->setObjectName("txtOption");
    txtOption_->setAccessibleName("Easy Configuration Option, 1 to 5");
    OnChange(*txtOption_, [this] { txtOption_Change(); });
    auto* upDown1 = widgets::Named<widgets::UpDown>("UpDown1", txtOption_, widgets::UpDown::Range{1, 5, 1}, frame);
    auto* line = new QHBoxLayout;
    line->addWidget(box);
    line->addLayout(upDown1->Row());
    line->addStretch();
    column->addLayout(line);
  }
  column->addStretch();
  return frame;
}

bool OpensEasySetup(const platform::Settings& settings) {
  return settings.Get(kSetting, "True").trimmed().compare("False", Qt::CaseInsensitive) != 0;
}

void frmEasySetup::Form_Load() {
  chkStartUp_->setChecked(OpensEasySetup(Services().settings));
  txtOption_Change();
}

bool frmEasySetup::OptionIsValid() const {
  const std::string text = txtOption_->text().toStdString();
  const double option = base::LeadingDecimal(text);
  return base::IsDecimal(text) && option > 0 && option < 6;
}

void frmEasySetup::txtOption_Change() {
  const QString place = PlaceOf(kSetupOptions[0].row);
  if (!OptionIsValid()) {
    MarkControl(*txtOption_, *this, false, true);
    txtOption_->setToolTip(place + "\n" + kBadOption);
    return;
  }
  const double option = base::LeadingDecimal(txtOption_->text().toStdString());
  const int byte = chip::EasyOptionByte(option);
  // A fraction is accepted, but the chip gets a different option.
  const bool odd = option != std::floor(option);
  MarkControl(*txtOption_, *this, false, odd);
  txtOption_->setToolTip(place + (odd ? QString::asprintf("\nGoes out as 0x%02X", byte) : QString()));
}

void frmEasySetup::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) txtOption_Change();
}

void frmEasySetup::cmdApply_Click() {
  for (std::size_t i = 0; i < chkOption_.size(); ++i) {
    if (chkOption_[i]->isChecked() && !RunOption(i)) return;
  }
  Services().settings.Put(kSetting, chkStartUp_->isChecked() ? "True" : "False");
  Unload();
}

bool frmEasySetup::RunOption(std::size_t i) {
  const SetupOption& option = kSetupOptions[i];
  switch (option.action) {
    case Action::EasyOption:
      return SetEasyOption();
    case Action::OpenGraphs:
      OpenGraphs();
      return true;
    case Action::WriteOnes:
      link::WriteRegisterValue(link::Bus.DeviceAddress, option.row.reg,
                               static_cast<std::int32_t>(base::Mask(option.row.bits)));
      return true;
    case Action::SetBits:
      link::ModifyRegister(link::Bus.DeviceAddress, option.row.reg, 0, base::Mask(option.row.bits));
      return true;
  }
  return true;
}

bool frmEasySetup::SetEasyOption() {
  if (!OptionIsValid()) {
    Services().prompts.Ask({base::kTitle, kBadOption, platform::BoxIcon::Warning, platform::BoxButtons::Ok, this});
    txtOption_->setFocus();
    txtOption_->selectAll();
    return false;
  }
  const double option = base::LeadingDecimal(txtOption_->text().toStdString());
  link::WriteRegisterValue(link::Bus.DeviceAddress, kEasyConfig, chip::EasyOptionByte(option));
  return true;
}

void frmEasySetup::OpenGraphs() {
  ChildWindow* graphs = TheDesktop().OpenWindow("frmGraph");
  if (graphs == nullptr) return;
  QWidget* frame = graphs->parentWidget() != nullptr ? graphs->parentWidget() : graphs;
  if (!frame->isMaximized())
    frame->move(base::PixelsFromTwips(kGraphPlaceTwips), base::PixelsFromTwips(kGraphPlaceTwips));
}

void frmEasySetup::cmdClose_Click() {
  Unload();
}

}  // namespace zth::windows
