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

#include "chip/ChipState.h"
#include "chip/PinModel.h"
#include "widgets/Named.h"
#include "widgets/Pale.h"
#include "windows/BoundControls.h"
#include "windows/BoundMarks.h"
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
    Check("chkEnGPIO", "E&nable GPIO", "Configuration 3"_reg, 0),
    List({"cmbDir", 0}, nullptr, At("GPIO1_Bhvr", "D1"), kDirections),
    List({"cmbDir", 1}, nullptr, At("GPIO1_Bhvr", "D2"), kDirections),
    List({"cmbDir", 2}, nullptr, At("GPIO1_Bhvr", "D3"), kDirections),
    List({"cmbDir", 3}, nullptr, At("GPIO1_Bhvr", "D4"), kDirections),
    List({"cmbDir", 4}, nullptr, At("GPIO2_Bhvr", "D5"), kDirections),
    List({"cmbDir", 5}, nullptr, At("GPIO2_Bhvr", "D6"), kDirections),
    List({"cmbDir", 6}, nullptr, At("GPIO2_Bhvr", "D7"), kDirections),
    List({"cmbDir", 7}, nullptr, At("GPIO2_Bhvr", "D8"), kDirections),
    List({"cmbPolarity", 0}, nullptr, At("GPIO1_Bhvr", "P1"), kPolarities),
    List({"cmbPolarity", 1}, nullptr, At("GPIO1_Bhvr", "P2"), kPolarities),
    List({"cmbPolarity", 2}, nullptr, At("GPIO1_Bhvr", "P3"), kPolarities),
    List({"cmbPolarity", 3}, nullptr, At("GPIO1_Bhvr", "P4"), kPolarities),
    List({"cmbPolarity", 4}, nullptr, At("GPIO2_Bhvr", "P5"), kPolarities),
    List({"cmbPolarity", 5}, nullptr, At("GPIO2_Bhvr", "P6"), kPolarities),
    List({"cmbPolarity", 6}, nullptr, At("GPIO2_Bhvr", "P7"), kPolarities),
    List({"cmbPolarity", 7}, nullptr, At("GPIO2_Bhvr", "P8"), kPolarities),
    List({"cmbStatus", 0}, nullptr, At("GPIO Status,Host", "GP1"), kStates),
    List({"cmbStatus", 1}, nullptr, At("GPIO Status,Host", "GP2"), kStates),
    List({"cmbStatus", 2}, nullptr, At("GPIO Status,Host", "GP3"), kStates),
    List({"cmbStatus", 3}, nullptr, At("GPIO Status,Host", "GP4"), kStates),
    List({"cmbStatus", 4}, nullptr, At("GPIO Status,Host", "GP5"), kStates),
    List({"cmbStatus", 5}, nullptr, At("GPIO Status,Host", "GP6"), kStates),
    List({"cmbStatus", 6}, nullptr, At("GPIO Status,Host", "GP7"), kStates),
    List({"cmbStatus", 7}, nullptr, At("GPIO Status,Host", "GP8"), kStates),
};
// clang-format on
constexpr std::array kEnableRead{Read("Configuration 3"_reg)};
constexpr std::array kEnableWrite{Modify("Configuration 3"_reg)};
constexpr std::array kPinReads{Read("GPIO1_Bhvr"_reg, 2), Read("GPIO Status,Host"_reg)};
constexpr std::array kPinWrites{Whole("GPIO1_Bhvr"_reg), Whole("GPIO2_Bhvr"_reg), Whole("GPIO Status,Host"_reg)};
static_assert(IsSound(kRows, Joined(kEnableRead, kPinReads), Joined(kEnableWrite, kPinWrites)));

/// A pin's function in the pin configuration, and its flag: 0 while the pin is used as GPIO.
struct PinFunction {
  Binding place;
  std::int16_t Flags::*flag;
};

// clang-format off
constexpr std::array kPinFunctions{
    PinFunction{Check({"chkPinEn", 0}, nullptr, At("Pin Config 1", "P1")), &Flags::Pin1},
    PinFunction{Check({"chkPinEn", 1}, nullptr, At("Pin Config 1", "P2")), &Flags::Pin2},
    PinFunction{Check({"chkPinEn", 2}, nullptr, At("Pin Config 1", "P3")), &Flags::Pin3},
    PinFunction{Check({"chkPinEn", 3}, nullptr, At("Pin Config 1", "P4")), &Flags::Pin4},
    PinFunction{Check({"chkPinEn", 4}, nullptr, At("Pin Config 4", "P31")), &Flags::Pin31},
    PinFunction{Check({"chkPinEn", 5}, nullptr, At("Pin Config 4", "P32")), &Flags::Pin32},
    PinFunction{Check({"chkPinEn", 6}, nullptr, At("Pin Config 4", "P28")), &Flags::Pin28},
    PinFunction{Check({"chkPinEn", 7}, nullptr, At("Pin Config 4", "P29")), &Flags::Pin29},
};
// clang-format on

enum Column : int { kPinColumn, kDirColumn, kPolarityColumn, kStatusColumn, kPinEnColumn };

QComboBox* MakeList(const QString& name, Items items, const QString& spoken) {
  auto* list = widgets::Named<QComboBox>(name);
  for (const char* item : items) list->addItem(item);
  list->setAccessibleName(spoken);
  list->setAccessibleDescription(spoken);  // some desktops announce only this for a list without a label
  return list;
}

}  // namespace

frmGPIO::frmGPIO(const Context& context)
    : ChildWindow("frmGPIO", "GPIO Configuration", context, kShowsChip | kShowsPins | kFollowsModel) {
  auto* chkEnGPIO = widgets::Named<QCheckBox>("chkEnGPIO", CaptionOf(kRows[0]), this);

  auto* frame = widgets::Named<QGroupBox>("Frame1", this);
  auto& grid = *new QGridLayout(frame);
  grid.setHorizontalSpacing(16);
  const auto heading = [&](const QString& name, const QString& caption, Column column) {
    auto* label = widgets::Named<QLabel>(name, caption);
    grid.addWidget(label, 0, column, column == kPinEnColumn ? Qt::AlignHCenter : Qt::AlignLeft);
  };
  heading("lblDir", "Direction", kDirColumn);
  heading("lblPolarity", "Polarity", kPolarityColumn);
  heading("lblStatusHeading", "Status", kStatusColumn);
  heading("lblPinEn", "Pin Enabled", kPinEnColumn);
  for (std::size_t i = 0; i < kPins; ++i) BuildLine(i, grid);

  auto* cmdCancel = widgets::Named<QPushButton>("cmdCancel", "C&lose", this);
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

  // Each change is written at once, so marks disappear immediately.
  controls_ = new BoundControls(*this, kRows, [this](const Binding& row) { Control_Change(row); });
  new BoundMarks(*this, *controls_);
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
  line.lblStatus = widgets::Named<QLabel>("lblStatus" + element);
  // The text is placed about where the list shows its own, so that little moves when one replaces the other.
  line.lblStatus->setIndent(line.lblStatus->fontMetrics().horizontalAdvance('n'));
  line.chkPinEn = widgets::Named<QCheckBox>("chkPinEn" + element);
  line.chkPinEn->setEnabled(false);
  line.chkPinEn->setToolTip(PlaceOf(kPinFunctions[i].place) + "\nTicked while the pin serves GPIO");
  line.chkPinEn->setAccessibleName(spoken + "Pin Enabled");
  auto* caption = widgets::Named<QLabel>("Label3" + element, QString("GPIO &%1").arg(i + 1));
  caption->setBuddy(line.cmbDir);

  const int row = static_cast<int>(i) + 1;
  grid.addWidget(caption, row, kPinColumn);
  grid.addWidget(line.cmbDir, row, kDirColumn);
  grid.addWidget(cmbPolarity, row, kPolarityColumn);
  grid.addWidget(line.cmbStatus, row, kStatusColumn);
  grid.addWidget(line.lblStatus, row, kStatusColumn);
  grid.addWidget(line.chkPinEn, row, kPinEnColumn, Qt::AlignHCenter);
}

void frmGPIO::Form_Load() {
  loaded_ = false;
  controls_->Load(kEnableRead);
  UpdateGPIOStatus();
  loaded_ = true;
  Shared.GpioOpen = true;
}

void frmGPIO::Form_Unload() {
  loaded_ = false;
  Shared.GpioOpen = false;
}

void frmGPIO::UpdateGPIOStatus() {
  bool read = true;
  {
    const QScopedValueRollback refreshing(refreshing_, true);
    // While the window opens there is no older state that could stay.
    if (loaded_) {
      read = controls_->Refresh(kPinReads);
    } else {
      controls_->Load(kPinReads);
    }
  }
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    const bool output = line.cmbDir->currentIndex() != 0;
    line.cmbStatus->setVisible(output);
    line.lblStatus->setVisible(!output);
    line.lblStatus->setText(line.cmbStatus->currentText());
    widgets::MakePale(*line.lblStatus, !read);
    line.lblStatus->setToolTip(read ? line.cmbStatus->toolTip() : "Old: the last read failed");
    line.lblStatus->setAccessibleDescription(read ? QString() : "Old: the last read failed");
    line.chkPinEn->setChecked(chip::Model.PinFunctions.*kPinFunctions[i].flag == 0);
  }
}

void frmGPIO::Control_Change(const Binding& row) {
  // A refresh shows what the chip already holds; writing it back now would mix new values with old ones.
  if (!loaded_ || refreshing_) return;
  // The box writes its own bit; every list writes all of the pins' registers, whole.
  controls_->Apply(&row == kRows.data() ? std::span<const WriteStep>(kEnableWrite) : kPinWrites);
}

}  // namespace zth::windows
