#include "windows/board/frmSwitches.h"

#include <algorithm>

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "base/BitField.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"

namespace zth::windows {
namespace {

constexpr std::array kSwitchCaptions{
    "D2+ ( Pin17)", "D2- ( Pin18)", "THERM1 (Pin28)", "THERM2 (Pin29)", "PWM1 (Pin31)", "PWM2 (Pin32)", "Tach1 (Pin1)",
    "Tach2 (Pin2)", "Tach3 (Pin3)", "Tach4 (Pin4)",   "Pin23",          "Pin24",        "Pin25",        "Pin26",
};

/// The run of boxes of one device; bit 0 is the first.
struct Device {
  std::int32_t address;
  const char* caption;
  std::size_t firstBox;
  std::size_t boxes;
};

constexpr std::array kDevices{
    Device{chip::kSwitchDevice0, "Device at 4Ah", 0, 6},
    Device{chip::kSwitchDevice1, "Device at 48h", 6, 8},
};

}  // namespace

frmSwitches::frmSwitches(const Context& context)
    : ChildWindow("frmSwitches", "ADG715 Switch Control ", context, kShowsBoard) {
  QGroupBox* frame = MakeFrame();
  lblNoAdapter_ = widgets::Named<QLabel>("lblNoAdapter", "The switches can be reached over USB only.", this);

  auto* cmdRefresh = widgets::Named<QPushButton>("cmdRefresh", "&Read", this);
  cmdRefresh->setToolTip("Show what the two devices hold now");
  auto* cmbApply = widgets::Named<QPushButton>("cmbApply", "A&pply", this);
  cmbApply->setToolTip("Write both devices and read them back");
  auto* cmdCancel = widgets::Named<QPushButton>("cmdCancel", "Clo&se", this);
  OnClick(*cmdRefresh, [this] { cmdRefresh_Click(); });
  OnClick(*cmbApply, [this] { cmbApply_Click(); });
  OnClick(*cmdCancel, [this] { Unload(); });
  SetDefaultButton(*cmbApply);
  SetCancelButton(*cmdCancel);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdRefresh);
  buttons->addStretch();
  buttons->addWidget(cmbApply);
  buttons->addWidget(cmdCancel);
  auto* column = new QVBoxLayout(this);
  column->addWidget(frame, 1);
  column->addWidget(lblNoAdapter_);
  column->addLayout(buttons);
}

QGroupBox* frmSwitches::MakeFrame() {
  auto* frame = widgets::Named<QGroupBox>("Frame1", "Switch Control", this);
  auto* row = new QHBoxLayout(frame);
  row->setSpacing(32);
  for (std::size_t device = 0; device < kDevices.size(); ++device) {
    auto* column = new QVBoxLayout;
    column->setSpacing(6);
    auto* heading = widgets::Named<QLabel>(QString("lblDevice(%1)").arg(device), kDevices[device].caption, frame);
    column->addWidget(heading);
    for (std::size_t bit = 0; bit < kDevices[device].boxes; ++bit) {
      const std::size_t box = kDevices[device].firstBox + bit;
      chkSwitch_[box] = widgets::Named<QCheckBox>(QString("chkSwitch(%1)").arg(box), kSwitchCaptions[box], frame);
      chkSwitch_[box]->setToolTip("Ticked: the switch is closed");
      column->addWidget(chkSwitch_[box]);
    }
    column->addStretch();
    row->addLayout(column);
  }
  row->addStretch();
  return frame;
}

void frmSwitches::Form_Load() {
  lblNoAdapter_->setVisible(link::Bus.InterfaceMode != link::kModeUsb);
  for (const Device& device : kDevices) {
    const auto port = static_cast<unsigned>(link::ReadBoardPort(device.address));
    for (std::size_t bit = 0; bit < device.boxes; ++bit) {
      read_[device.firstBox + bit] = base::GetBit(port, static_cast<int>(bit));
      chkSwitch_[device.firstBox + bit]->setChecked(read_[device.firstBox + bit]);
    }
  }
}

bool frmSwitches::HoldsChanges() const {
  return !std::ranges::equal(chkSwitch_, read_, {}, &QCheckBox::isChecked);
}

void frmSwitches::cmdRefresh_Click() {
  Load();
}

void frmSwitches::cmbApply_Click() {
  if (link::Bus.InterfaceMode != link::kModeUsb) return;
  for (const Device& device : kDevices) {
    unsigned port = 0;
    for (std::size_t bit = 0; bit < device.boxes; ++bit) {
      port = base::PutBit(port, static_cast<int>(bit), chkSwitch_[device.firstBox + bit]->isChecked());
    }
    link::WriteBoardPortUnchecked(device.address, static_cast<std::int32_t>(port));
  }
  Load();  // the boxes show what the devices took
}

}  // namespace zth::windows
