#include "windows/config/frmGPIO.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/BitField.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/config/RegisterTip.h"

namespace zth::windows {
namespace {

using base::BitField;
using Flags = chip::PinFunctionFlags;

constexpr std::uint8_t kConfiguration3 = 0x03;
constexpr BitField kEnableGpio{0, 1};
constexpr std::uint8_t kBehaviour1 = 0x09;
constexpr std::uint8_t kBehaviour2 = 0x0A;
constexpr std::uint8_t kStatus = 0xBF;

/// One pin: its bits, and the flag that is 0 while the pin configuration gives the pin to GPIO.
struct GpioPin {
  std::uint8_t behaviour;
  BitField polarity;
  BitField direction;
  BitField status;
  std::int16_t Flags::*function;
  std::uint8_t pinRegister;  ///< where `function` stands
  BitField pinBits;
};

constexpr std::array<GpioPin, 8> kGpioPins{{
    {kBehaviour1, {0, 1}, {1, 1}, {0, 1}, &Flags::Pin1, 0x10, {4, 1}},
    {kBehaviour1, {2, 1}, {3, 1}, {1, 1}, &Flags::Pin2, 0x10, {3, 1}},
    {kBehaviour1, {4, 1}, {5, 1}, {2, 1}, &Flags::Pin3, 0x10, {2, 1}},
    {kBehaviour1, {6, 1}, {7, 1}, {3, 1}, &Flags::Pin4, 0x10, {1, 1}},
    {kBehaviour2, {0, 1}, {1, 1}, {4, 1}, &Flags::Pin31, 0x13, {3, 1}},
    {kBehaviour2, {2, 1}, {3, 1}, {5, 1}, &Flags::Pin32, 0x13, {2, 1}},
    {kBehaviour2, {4, 1}, {5, 1}, {6, 1}, &Flags::Pin28, 0x13, {6, 2}},
    {kBehaviour2, {6, 1}, {7, 1}, {7, 1}, &Flags::Pin29, 0x13, {4, 2}},
}};

enum Column : int { kPin, kDirection, kPolarity, kStatusColumn, kPinEnabled };

/// Shows an item without running the handler: a refresh writes nothing.
void Show(QComboBox& list, unsigned item) {
  const QSignalBlocker quiet(list);
  list.setCurrentIndex(static_cast<int>(item));
}

/// The bit of a list of two items: 0 for the first.
unsigned BitOf(const QComboBox& list) {
  return list.currentIndex() == 0 ? 0U : 1U;
}

QComboBox* MakeList(const QString& name, const QStringList& items, const QString& tip, const QString& spoken) {
  auto* list = new QComboBox;
  list->setObjectName(name);
  list->addItems(items);
  list->setToolTip(tip);
  list->setAccessibleName(spoken);
  return list;
}

}  // namespace

frmGPIO::frmGPIO(const Context& context)
    : ChildWindow("frmGPIO", "GPIO Configuration", context), chkEnGPIO_(new QCheckBox("&Enable GPIO", this)) {
  chkEnGPIO_->setObjectName("chkEnGPIO");
  chkEnGPIO_->setToolTip(RegisterTip(kConfiguration3, kEnableGpio));
  OnToggle(*chkEnGPIO_, [this] { chkEnGPIO_Click(); });

  auto* frame = new QGroupBox(this);
  frame->setObjectName("Frame1");
  auto* grid = new QGridLayout(frame);
  grid->setHorizontalSpacing(16);
  const auto heading = [&](const QString& name, const QString& caption, Column column, Qt::Alignment alignment) {
    auto* label = new QLabel(caption, frame);
    label->setObjectName(name);
    grid->addWidget(label, 0, column, alignment);
  };
  heading("lblDirection", "Direction", kDirection, Qt::AlignLeft);
  heading("lblPolarity", "Polarity", kPolarity, Qt::AlignLeft);
  heading("lblStatusHeading", "Status", kStatusColumn, Qt::AlignLeft);
  heading("lblPinEnabled", "Pin Enabled", kPinEnabled, Qt::AlignHCenter);
  for (int i = 0; i < kPins; ++i) BuildRow(i, *grid);

  auto* cmdCancel = new QPushButton("&Close", this);
  cmdCancel->setObjectName("cmdCancel");
  OnClick(*cmdCancel, [this] { Unload(); });
  SetCancelButton(*cmdCancel);

  auto* column = new QVBoxLayout(this);
  column->addWidget(chkEnGPIO_);
  column->addWidget(frame);
  column->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdCancel);
  column->addLayout(buttons);
}

void frmGPIO::BuildRow(int i, QGridLayout& grid) {
  const GpioPin& pin = kGpioPins[static_cast<std::size_t>(i)];
  Row& row = rows_[static_cast<std::size_t>(i)];
  const QString element = QString("(%1)").arg(i);
  const QString spoken = QString("GPIO %1 ").arg(i + 1);

  row.cmbDir =
      MakeList("cmbDir" + element, {"I/P", "O/P"}, RegisterTip(pin.behaviour, pin.direction), spoken + "Direction");
  row.cmbPolarity = MakeList("cmbPolarity" + element, {"Active Low", "Active High"},
                             RegisterTip(pin.behaviour, pin.polarity), spoken + "Polarity");
  row.cmbStatus =
      MakeList("cmbStatus" + element, {"Active", "Inactive"}, RegisterTip(kStatus, pin.status), spoken + "Status");
  row.cmbStatus->hide();
  row.lblStatus = new QLabel;
  row.lblStatus->setObjectName("lblStatus" + element);
  row.lblStatus->setToolTip(row.cmbStatus->toolTip());
  row.lblStatus->setMinimumWidth(row.cmbStatus->sizeHint().width());
  // The text stands where the list shows its own, so that nothing jumps when they take each other's place.
  row.lblStatus->setIndent(row.lblStatus->fontMetrics().horizontalAdvance('n'));
  row.chkPinEn = new QCheckBox;
  row.chkPinEn->setObjectName("chkPinEn" + element);
  row.chkPinEn->setEnabled(false);
  row.chkPinEn->setToolTip(RegisterTip(pin.pinRegister, pin.pinBits) + ": ticked while the pin serves GPIO");
  row.chkPinEn->setAccessibleName(spoken + "Pin Enabled");

  auto* caption = new QLabel(QString("GPIO &%1").arg(i + 1));
  caption->setObjectName("Label3" + element);
  caption->setBuddy(row.cmbDir);

  const int line = i + 1;
  grid.addWidget(caption, line, kPin);
  grid.addWidget(row.cmbDir, line, kDirection);
  grid.addWidget(row.cmbPolarity, line, kPolarity);
  grid.addWidget(row.cmbStatus, line, kStatusColumn);
  grid.addWidget(row.lblStatus, line, kStatusColumn);
  grid.addWidget(row.chkPinEn, line, kPinEnabled, Qt::AlignHCenter);
  grid.setRowMinimumHeight(line, row.cmbStatus->sizeHint().height());

  OnSelect(*row.cmbDir, [this] { cmbDir_Click(); });
  OnSelect(*row.cmbPolarity, [this] { cmbPolarity_Click(); });
  OnSelect(*row.cmbStatus, [this] { cmbStatus_Click(); });
}

void frmGPIO::Form_Load() {
  loaded_ = false;
  const std::int16_t configuration = link::ReadRegister(link::DeviceAddress, kConfiguration3);
  chkEnGPIO_->setChecked(base::GetField(static_cast<unsigned>(configuration), kEnableGpio) != 0);
  UpdateGPIOStatus();
  loaded_ = true;
  GpioOpen = true;
}

void frmGPIO::Form_Unload() {
  loaded_ = false;
  GpioOpen = false;
}

void frmGPIO::UpdateGPIOStatus() {
  link::ReadRegisterBlock(link::DeviceAddress, kBehaviour1, 2);
  const std::array behaviours{link::ReadBuffer[0], link::ReadBuffer[1]};
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const GpioPin& pin = kGpioPins[i];
    const unsigned behaviour = behaviours[pin.behaviour - kBehaviour1];
    const bool output = base::GetField(behaviour, pin.direction) != 0;
    Show(*rows_[i].cmbPolarity, base::GetField(behaviour, pin.polarity));
    Show(*rows_[i].cmbDir, base::GetField(behaviour, pin.direction));
    rows_[i].cmbStatus->setVisible(output);
    rows_[i].lblStatus->setVisible(!output);
  }
  const auto status = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, kStatus));
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const Row& row = rows_[i];
    Show(*row.cmbStatus, base::GetField(status, kGpioPins[i].status));
    row.lblStatus->setText(row.cmbStatus->currentText());
    row.chkPinEn->setChecked(chip::PinFunctions.*kGpioPins[i].function == 0);
  }
}

void frmGPIO::chkEnGPIO_Click() {
  if (!loaded_) return;
  const auto configuration = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, kConfiguration3));
  link::WriteRegisterValue(link::DeviceAddress, kConfiguration3,
                           base::PutField(configuration, kEnableGpio, chkEnGPIO_->isChecked() ? 1U : 0U));
}

// Any of the lists writes all of them.
void frmGPIO::cmbDir_Click() {
  if (loaded_) WriteGpioRegisters();
}

void frmGPIO::cmbPolarity_Click() {
  if (loaded_) WriteGpioRegisters();
}

void frmGPIO::cmbStatus_Click() {
  if (loaded_) WriteGpioRegisters();
}

void frmGPIO::WriteGpioRegisters() {
  std::array<std::uint8_t, 2> behaviours{};
  std::uint8_t status = 0;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const GpioPin& pin = kGpioPins[i];
    std::uint8_t& behaviour = behaviours[pin.behaviour - kBehaviour1];
    behaviour = base::PutField(behaviour, pin.polarity, BitOf(*rows_[i].cmbPolarity));
    behaviour = base::PutField(behaviour, pin.direction, BitOf(*rows_[i].cmbDir));
    status = base::PutField(status, pin.status, BitOf(*rows_[i].cmbStatus));
  }
  link::WriteRegisterValue(link::DeviceAddress, kBehaviour1, behaviours[0]);
  link::WriteRegisterValue(link::DeviceAddress, kBehaviour2, behaviours[1]);
  link::WriteRegisterValue(link::DeviceAddress, kStatus, status);
}

}  // namespace zth::windows
