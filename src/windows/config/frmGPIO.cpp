#include "windows/config/frmGPIO.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include "chip/PinModel.h"
#include "windows/BoundControls.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

using Flags = chip::PinFunctionFlags;

constexpr std::array kPolarities{"Active Low", "Active High"};
constexpr std::array kDirections{"I/P", "O/P"};
constexpr std::array kStates{"Active", "Inactive"};

// clang-format off
constexpr std::array kRows{
    Check("chkEnGPIO", "E&nable GPIO", 0x03, 0),
    List({"cmbDir", 0}, nullptr, 0x09, Bits(1, 1), kDirections),
    List({"cmbDir", 1}, nullptr, 0x09, Bits(3, 3), kDirections),
    List({"cmbDir", 2}, nullptr, 0x09, Bits(5, 5), kDirections),
    List({"cmbDir", 3}, nullptr, 0x09, Bits(7, 7), kDirections),
    List({"cmbDir", 4}, nullptr, 0x0A, Bits(1, 1), kDirections),
    List({"cmbDir", 5}, nullptr, 0x0A, Bits(3, 3), kDirections),
    List({"cmbDir", 6}, nullptr, 0x0A, Bits(5, 5), kDirections),
    List({"cmbDir", 7}, nullptr, 0x0A, Bits(7, 7), kDirections),
    List({"cmbPolarity", 0}, nullptr, 0x09, Bits(0, 0), kPolarities),
    List({"cmbPolarity", 1}, nullptr, 0x09, Bits(2, 2), kPolarities),
    List({"cmbPolarity", 2}, nullptr, 0x09, Bits(4, 4), kPolarities),
    List({"cmbPolarity", 3}, nullptr, 0x09, Bits(6, 6), kPolarities),
    List({"cmbPolarity", 4}, nullptr, 0x0A, Bits(0, 0), kPolarities),
    List({"cmbPolarity", 5}, nullptr, 0x0A, Bits(2, 2), kPolarities),
    List({"cmbPolarity", 6}, nullptr, 0x0A, Bits(4, 4), kPolarities),
    List({"cmbPolarity", 7}, nullptr, 0x0A, Bits(6, 6), kPolarities),
    List({"cmbStatus", 0}, nullptr, 0xBF, Bits(0, 0), kStates),
    List({"cmbStatus", 1}, nullptr, 0xBF, Bits(1, 1), kStates),
    List({"cmbStatus", 2}, nullptr, 0xBF, Bits(2, 2), kStates),
    List({"cmbStatus", 3}, nullptr, 0xBF, Bits(3, 3), kStates),
    List({"cmbStatus", 4}, nullptr, 0xBF, Bits(4, 4), kStates),
    List({"cmbStatus", 5}, nullptr, 0xBF, Bits(5, 5), kStates),
    List({"cmbStatus", 6}, nullptr, 0xBF, Bits(6, 6), kStates),
    List({"cmbStatus", 7}, nullptr, 0xBF, Bits(7, 7), kStates),
};
// clang-format on
constexpr std::array kEnableRead{Read(0x03)};
constexpr std::array kEnableWrite{Modify(0x03)};
constexpr std::array kPinReads{Read(0x09, 2), Read(0xBF)};
constexpr std::array kPinWrites{Whole(0x09), Whole(0x0A), Whole(0xBF)};
static_assert(IsSound(kRows, Joined(kEnableRead, kPinReads), Joined(kEnableWrite, kPinWrites)));

/// Where the pin configuration tells a pin's function, and the flag made of it: 0 while the pin serves GPIO.
struct PinFunction {
  Binding place;
  std::int16_t Flags::*flag;
};

// clang-format off
constexpr std::array kPinFunctions{
    PinFunction{Check({"chkPinEn", 0}, nullptr, 0x10, 4), &Flags::Pin1},
    PinFunction{Check({"chkPinEn", 1}, nullptr, 0x10, 3), &Flags::Pin2},
    PinFunction{Check({"chkPinEn", 2}, nullptr, 0x10, 2), &Flags::Pin3},
    PinFunction{Check({"chkPinEn", 3}, nullptr, 0x10, 1), &Flags::Pin4},
    PinFunction{Check({"chkPinEn", 4}, nullptr, 0x13, 3), &Flags::Pin31},
    PinFunction{Check({"chkPinEn", 5}, nullptr, 0x13, 2), &Flags::Pin32},
    PinFunction{{{"chkPinEn", 6}, nullptr, 0x13, Bits(7, 6)}, &Flags::Pin28},
    PinFunction{{{"chkPinEn", 7}, nullptr, 0x13, Bits(5, 4)}, &Flags::Pin29},
};
// clang-format on

enum Column : int { kPinColumn, kDirColumn, kPolarityColumn, kStatusColumn, kPinEnColumn };

QComboBox* MakeList(const QString& name, Items items, const QString& spoken) {
  auto* list = new QComboBox;
  list->setObjectName(name);
  for (const char* item : items) list->addItem(item);
  list->setAccessibleName(spoken);
  list->setAccessibleDescription(spoken);  // all that a list without a label tells on some desktops
  return list;
}

}  // namespace

frmGPIO::frmGPIO(const Context& context)
    : ChildWindow("frmGPIO", "GPIO Configuration", context, kShowsChip | kShowsPins | kFollowsModel) {
  auto* chkEnGPIO = new QCheckBox(CaptionOf(kRows[0]), this);
  chkEnGPIO->setObjectName("chkEnGPIO");

  auto* frame = new QGroupBox(this);
  frame->setObjectName("Frame1");
  auto& grid = *new QGridLayout(frame);
  grid.setHorizontalSpacing(16);
  const auto heading = [&](const QString& name, const QString& caption, Column column) {
    auto* label = new QLabel(caption);
    label->setObjectName(name);
    grid.addWidget(label, 0, column, column == kPinEnColumn ? Qt::AlignHCenter : Qt::AlignLeft);
  };
  heading("lblDir", "Direction", kDirColumn);
  heading("lblPolarity", "Polarity", kPolarityColumn);
  heading("lblStatusHeading", "Status", kStatusColumn);
  heading("lblPinEn", "Pin Enabled", kPinEnColumn);
  for (std::size_t i = 0; i < kPins; ++i) BuildLine(i, grid);

  auto* cmdCancel = new QPushButton("C&lose", this);
  cmdCancel->setObjectName("cmdCancel");
  cmdCancel->setToolTip("Close this window; what it has written stays");
  OnClick(*cmdCancel, [this] { Unload(); });
  SetCancelButton(*cmdCancel);

  auto* column = new QVBoxLayout(this);
  column->addWidget(chkEnGPIO);
  column->addWidget(frame);
  column->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdCancel);
  column->addLayout(buttons);

  // Each change is written at once, so that its mark goes as it comes.
  controls_ = new BoundControls(*this, kRows);
  OnToggle(*chkEnGPIO, [this] { chkEnGPIO_Click(); });
  for (Line& line : lines_) {
    line.cmbStatus->hide();
    line.lblStatus->setMinimumWidth(line.cmbStatus->minimumWidth());
  }
}

void frmGPIO::BuildLine(std::size_t i, QGridLayout& grid) {
  const QString element = QString("(%1)").arg(i);
  const QString spoken = QString("GPIO %1 ").arg(i + 1);
  Line& line = lines_[i];
  line.cmbDir = MakeList("cmbDir" + element, kDirections, spoken + "Direction");
  auto* cmbPolarity = MakeList("cmbPolarity" + element, kPolarities, spoken + "Polarity");
  line.cmbStatus = MakeList("cmbStatus" + element, kStates, spoken + "Status");
  line.lblStatus = new QLabel;
  line.lblStatus->setObjectName("lblStatus" + element);
  // The text stands about where the list shows its own, so that little jumps when they take each other's place.
  line.lblStatus->setIndent(line.lblStatus->fontMetrics().horizontalAdvance('n'));
  line.chkPinEn = new QCheckBox;
  line.chkPinEn->setObjectName("chkPinEn" + element);
  line.chkPinEn->setEnabled(false);
  line.chkPinEn->setToolTip(PlaceOf(kPinFunctions[i].place) + "\nTicked while the pin serves GPIO");
  line.chkPinEn->setAccessibleName(spoken + "Pin Enabled");
  auto* caption = new QLabel(QString("GPIO &%1").arg(i + 1));
  caption->setObjectName("Label3" + element);
  caption->setBuddy(line.cmbDir);

  const int row = static_cast<int>(i) + 1;
  grid.addWidget(caption, row, kPinColumn);
  grid.addWidget(line.cmbDir, row, kDirColumn);
  grid.addWidget(cmbPolarity, row, kPolarityColumn);
  grid.addWidget(line.cmbStatus, row, kStatusColumn);
  grid.addWidget(line.lblStatus, row, kStatusColumn);
  grid.addWidget(line.chkPinEn, row, kPinEnColumn, Qt::AlignHCenter);
  OnSelect(*line.cmbDir, [this] { cmbDir_Click(); });
  OnSelect(*cmbPolarity, [this] { cmbPolarity_Click(); });
  OnSelect(*line.cmbStatus, [this] { cmbStatus_Click(); });
}

void frmGPIO::Form_Load() {
  loaded_ = false;
  controls_->Load(kEnableRead);
  UpdateGPIOStatus();
  loaded_ = true;
  GpioOpen = true;
}

void frmGPIO::Form_Unload() {
  loaded_ = false;
  GpioOpen = false;
}

void frmGPIO::UpdateGPIOStatus() {
  {
    const QScopedValueRollback refreshing(refreshing_, true);
    controls_->Load(kPinReads);
  }
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    const bool output = line.cmbDir->currentIndex() != 0;
    line.cmbStatus->setVisible(output);
    line.lblStatus->setVisible(!output);
    line.lblStatus->setText(line.cmbStatus->currentText());
    line.lblStatus->setToolTip(line.cmbStatus->toolTip());
    line.chkPinEn->setChecked(chip::PinFunctions.*kPinFunctions[i].flag == 0);
  }
}

void frmGPIO::chkEnGPIO_Click() {
  if (loaded_) controls_->Apply(kEnableWrite);
}

void frmGPIO::cmbDir_Click() {
  WriteGpioRegisters();
}

void frmGPIO::cmbPolarity_Click() {
  WriteGpioRegisters();
}

void frmGPIO::cmbStatus_Click() {
  WriteGpioRegisters();
}

void frmGPIO::WriteGpioRegisters() {
  // What a refresh shows stands in the chip already; written back, half of it would be older than the other half.
  if (loaded_ && !refreshing_) controls_->Apply(kPinWrites);
}

}  // namespace zth::windows
