#include "windows/config/frmEasySetup.h"

#include <QCheckBox>
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
#include "widgets/UpDown.h"
#include "windows/Handlers.h"
#include "windows/config/RegisterTip.h"

namespace zth::windows {
namespace {

constexpr char kSetting[] = "OpenEasySetup";
constexpr int kGraphPlaceTwips = 500;

/// What a ticked option does at OK.
enum class Action : std::uint8_t { EasyOption, SetBits, WriteOnes, OpenGraphs };

struct SetupOption {
  const char* caption;
  bool ticked;  ///< when the window opens
  Action action;
  std::uint8_t reg = 0;
  base::BitField bits{};
};

// In the order in which they run. The blanks at the ends belong to the texts.
constexpr std::array<SetupOption, 7> kSetupOptions{{
    {"Set &Easy Configuration Option", true, Action::EasyOption, 0x14, {0, 5}},
    {"Enable &Tachs 1-4 ", true, Action::SetBits, 0x07, {0, 4}},
    {"Enable '&Setup Complete' configuration bit", true, Action::SetBits, 0x01, {5, 1}},
    {"Load &Graphing Window", true, Action::OpenGraphs},
    {"Set Max &PWM1-4 to 100%", true, Action::WriteOnes, 0x2C, {0, 8}},
    {"Set &fans to run at Max PWM", false, Action::SetBits, 0x02, {5, 1}},
    {"Set &ALERT to Comparator mode ", false, Action::SetBits, 0x01, {3, 1}},
}};

}  // namespace

frmEasySetup::frmEasySetup(const Context& context)
    : ChildWindow("frmEasySetup", "Setup", context),
      txtOption_(new QLineEdit("1", this)),
      chkStartUp_(new QCheckBox("Show at start-&up", this)) {
  QWidget* options = BuildOptions();
  chkStartUp_->setObjectName("chkStartUp");
  chkStartUp_->setToolTip("Open this window each time the program starts");

  auto* cmdApply = new QPushButton("OK", this);
  cmdApply->setObjectName("cmdApply");
  OnClick(*cmdApply, [this] { cmdApply_Click(); });
  SetDefaultButton(*cmdApply);
  auto* cmdClose = new QPushButton("Cancel", this);
  cmdClose->setObjectName("cmdClose");
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
}

QWidget* frmEasySetup::BuildOptions() {
  auto* frame = new QGroupBox("Initialisation options : ", this);
  frame->setObjectName("Frame1");
  auto* column = new QVBoxLayout(frame);
  for (std::size_t i = 0; i < chkOption_.size(); ++i) {
    const SetupOption& option = kSetupOptions[i];
    auto* box = new QCheckBox(option.caption, frame);
    box->setObjectName(QString("chkOption(%1)").arg(i));
    box->setChecked(option.ticked);
    if (option.action != Action::OpenGraphs) box->setToolTip(RegisterTip(option.reg, option.bits));
    chkOption_[i] = box;
    if (option.action != Action::EasyOption) {
      column->addWidget(box);
      continue;
    }
    txtOption_->setObjectName("txtOption");
    txtOption_->setAccessibleName("Easy Configuration Option, 1 to 5");
    OnChange(*txtOption_, [this] { txtOption_Change(); });
    upDown1_ = new widgets::UpDown(txtOption_, {1, 5, 1}, frame);
    upDown1_->setObjectName("UpDown1");
    auto* line = new QHBoxLayout;
    line->addWidget(box);
    line->addLayout(upDown1_->Row());
    line->addStretch();
    column->addLayout(line);
  }
  column->addStretch();
  return frame;
}

void frmEasySetup::Form_Load() {
  // Missing or spoilt it counts as True, as it does for the start of the program.
  const QString setting = Services().settings.Get(kSetting, "True").trimmed();
  chkStartUp_->setChecked(setting.compare("False", Qt::CaseInsensitive) != 0);
  txtOption_Change();
}

bool frmEasySetup::OptionIsValid() const {
  const std::string text = txtOption_->text().toStdString();
  const double option = base::LeadingDecimal(text);
  return base::IsDecimal(text) && option > 0 && option < 6;
}

void frmEasySetup::txtOption_Change() {
  const QString where = RegisterTip(kSetupOptions[0].reg, kSetupOptions[0].bits);
  if (!OptionIsValid()) {
    txtOption_->setToolTip(where + "\nOption value must be in range 1-5");
    return;
  }
  const int byte = chip::EasyOptionByte(base::LeadingDecimal(txtOption_->text().toStdString()));
  txtOption_->setToolTip(where + "\nOK writes 0x" + QString("%1").arg(byte, 2, 16, QChar('0')).toUpper());
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
      link::WriteRegisterValue(link::DeviceAddress, option.reg, base::PutField(0, option.bits, 0xFF));
      return true;
    case Action::SetBits: {
      const auto before = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, option.reg));
      link::WriteRegisterValue(link::DeviceAddress, option.reg, base::PutField(before, option.bits, 0xFF));
      return true;
    }
  }
  return true;
}

bool frmEasySetup::SetEasyOption() {
  if (!OptionIsValid()) {
    Services().prompts.Ask(
        {base::kTitle, "Option value must be in range 1-5", platform::BoxIcon::Warning, platform::BoxButtons::Ok});
    txtOption_->setFocus();
    txtOption_->selectAll();
    return false;
  }
  const double option = base::LeadingDecimal(txtOption_->text().toStdString());
  link::WriteRegisterValue(link::DeviceAddress, kSetupOptions[0].reg, chip::EasyOptionByte(option));
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
