#include "windows/config/frmPinConfig.h"

#include <algorithm>

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/config/RegisterTip.h"
#include "windows/config/frmGPIO.h"

namespace zth::windows {
namespace {

constexpr std::int16_t kConfigs = kEasyConfig - kPinConfig1 + 1;

/// The position at which a field's value shows, and back.
unsigned Turned(const PinList& list, unsigned value) {
  return list.order == ListOrder::FirstIsOne ? value ^ 1U : value;
}

/// The positions of all items with the text that shows, or-ed: a text at 2 and at 3 gives 3.
unsigned PositionsOfText(const QComboBox& list) {
  unsigned positions = 0;
  for (int p = 0; p < list.count(); ++p) {
    if (list.itemText(p) == list.currentText()) positions |= static_cast<unsigned>(p);
  }
  return positions;
}

QListWidget* MakeDetails(int option) {
  auto* list = new QListWidget;
  list->setObjectName(QString("List1(%1)").arg(option));
  list->setAccessibleName(QString("Details of Easy Option%1").arg(option + 1));
  for (const char* line : kEasyDetails[static_cast<std::size_t>(option)]) {
    if (line != nullptr) list->addItem(line);
  }
  list->setSelectionMode(QAbstractItemView::NoSelection);
  list->setFocusPolicy(Qt::NoFocus);
  list->hide();
  return list;
}

}  // namespace

frmPinConfig::frmPinConfig(const Context& context)
    : ChildWindow("frmPinConfig", "Pin Configuration", context), tabs_(new QTabWidget(this)) {
  tabs_->setObjectName("SSTab1");
  tabs_->addTab(BuildEasyTab(), "&Easy Configuration");
  tabs_->addTab(BuildIndividualTab(), "&Individual Pin Configuration");
  auto* column = new QVBoxLayout(this);
  column->addWidget(tabs_);
}

QWidget* frmPinConfig::BuildEasyTab() {
  auto* page = new QWidget;
  page->setObjectName("tabEasy");
  auto* options = new QVBoxLayout;
  options->setSpacing(12);
  for (int i = 0; i < kEasyOptions; ++i) {
    auto* option = new QRadioButton(QString("Easy Option&%1").arg(i + 1));
    option->setObjectName(QString("optEasy(%1)").arg(i));
    option->setToolTip(RegisterTip(kEasyConfig, {static_cast<std::uint8_t>(i), 1}));
    OnToggle(*option, [this] { optEasy_Click(); });
    options->addWidget(option);
    optEasy_[static_cast<std::size_t>(i)] = option;
  }
  options->addStretch();

  auto* label1 = new QLabel("Option Details (defaults)");
  label1->setObjectName("Label1");
  noDetails_ = new QLabel("Select an option to see what it sets up.");
  noDetails_->setObjectName("lblNoDetails");
  noDetails_->setWordWrap(true);
  noDetails_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  auto* spot = new QGridLayout;
  int width = 0;
  int height = 0;
  for (int i = 0; i < kEasyOptions; ++i) {
    QListWidget* list = MakeDetails(i);
    details_[static_cast<std::size_t>(i)] = list;
    spot->addWidget(list, 0, 0);
    const int frame = 2 * (list->frameWidth() + 4);
    width = std::max(width, list->sizeHintForColumn(0) + frame);
    height = std::max(height, list->sizeHintForRow(0) * list->count() + frame);
  }
  spot->addWidget(noDetails_, 0, 0);
  spot->setRowMinimumHeight(0, height);
  spot->setColumnMinimumWidth(0, width);
  auto* right = new QVBoxLayout;
  right->addWidget(label1);
  right->addLayout(spot, 1);

  auto* row = new QHBoxLayout;
  row->setSpacing(32);
  row->addLayout(options);
  row->addLayout(right, 1);
  auto* column = new QVBoxLayout(page);
  column->addLayout(row, 1);
  column->addLayout(BuildButtons("cmdEasyApply", 0, &frmPinConfig::cmdEasyApply_Click));
  return page;
}

QWidget* frmPinConfig::BuildIndividualTab() {
  auto* page = new QWidget;
  page->setObjectName("tabIndividual");
  auto* middle = new QVBoxLayout;
  QWidget* vid = BuildBox(PinBox::Vid, "fraVid", "VID inputs and the pins they take");
  QWidget* diodes = BuildBox(PinBox::Diodes, "fraDiodes", "Remote diodes and the pins they take");
  QWidget* alarms = BuildBox(PinBox::Alarms, "fraAlarms", "PWM, fan and THERM");
  QWidget* inputs = BuildBox(PinBox::Inputs, "fraInputs", "Tachs and supplies");
  middle->addWidget(diodes);
  middle->addWidget(alarms, 1);
  auto* boxes = new QHBoxLayout;
  boxes->addWidget(vid);
  boxes->addLayout(middle);
  boxes->addWidget(inputs);
  auto* column = new QVBoxLayout(page);
  column->addLayout(boxes, 1);
  column->addLayout(BuildButtons("cmdApply", 1, &frmPinConfig::cmdApply_Click));

  // The lists are built; their handlers may now reach each other's.
  OnSelect(List(kVidGroup), [this] { cmbPins1234_31_32_Click(); });
  OnSelect(List(kPins1516), [this] { cmbPins1516_Click(); });
  OnSelect(List(kPins1920), [this] { cmbPins1920_Click(); });
  return page;
}

QBoxLayout* frmPinConfig::BuildButtons(const QString& apply, int close, void (frmPinConfig::*handler)()) {
  auto* cmdApply = new QPushButton("&Apply");
  cmdApply->setObjectName(apply);
  OnClick(*cmdApply, [this, handler] { (this->*handler)(); });
  auto* cmdClose = new QPushButton("&Close");
  cmdClose->setObjectName(QString("cmdClose(%1)").arg(close));
  OnClick(*cmdClose, [this] { cmdClose_Click(); });
  // Enter applies nothing by itself: a stray one must not re-route a live board's pins.
  SetCancelButton(*cmdClose);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cmdApply);
  row->addWidget(cmdClose);
  return row;
}

QWidget* frmPinConfig::BuildBox(PinBox box, const QString& name, const QString& title) {
  auto* frame = new QGroupBox(title);
  frame->setObjectName(name);
  auto* grid = new QGridLayout(frame);
  grid->setColumnStretch(1, 1);
  const auto isIn = [box](const PinList& list) { return list.box == box; };
  // A group's list heads the pins that hang on it.
  for (std::size_t row = 0; row < kPinLists.size(); ++row) {
    const PinList& head = kPinLists[row];
    if (!isIn(head) || head.group != nullptr) continue;
    BuildList(row, *grid);
    for (std::size_t pin = 0; pin < kPinLists.size(); ++pin) {
      if (kPinLists[pin].group == head.control) BuildList(pin, *grid);
    }
  }
  grid->setRowStretch(grid->rowCount(), 1);
  return frame;
}

void frmPinConfig::BuildList(std::size_t row, QGridLayout& grid) {
  const PinList& pin = kPinLists[row];
  auto* list = new QComboBox;
  list->setObjectName(pin.control);
  for (const char* item : pin.items) {
    if (item != nullptr) list->addItem(item);
  }
  list->setCurrentIndex(-1);
  list->setToolTip(RegisterTip(pin.reg, pin.bits));
  auto* label = new QLabel(pin.caption);
  label->setObjectName(QString("lblPin(%1)").arg(pin.label));
  label->setBuddy(list);
  label->setToolTip(list->toolTip());
  if (pin.group != nullptr) label->setIndent(2 * label->fontMetrics().horizontalAdvance('n'));
  const int line = grid.rowCount();
  grid.addWidget(label, line, 0);
  grid.addWidget(list, line, 1);
  lists_[row] = list;
  labels_[row] = label;
}

QComboBox& frmPinConfig::List(const char* control) const {
  const auto* row = std::find_if(kPinLists.begin(), kPinLists.end(),
                                 [control](const PinList& list) { return QString(list.control) == control; });
  return *lists_[static_cast<std::size_t>(row - kPinLists.begin())];
}

void frmPinConfig::Form_Load() {
  link::ReadRegisterBlock(link::DeviceAddress, kPinConfig1, kConfigs);
  std::array<std::uint8_t, kConfigs> configs{};
  std::copy_n(link::ReadBuffer.begin(), configs.size(), configs.begin());
  for (std::size_t row = 0; row < kPinLists.size(); ++row) {
    const PinList& pin = kPinLists[row];
    const unsigned field = base::GetField(configs[pin.reg - kPinConfig1], pin.bits);
    lists_[row]->setCurrentIndex(static_cast<int>(Turned(pin, field)));
  }
  // A clear bit unselects nothing; of several set ones the last remains.
  for (int i = 0; i < kEasyOptions; ++i) {
    if (base::GetBit(configs[kEasyConfig - kPinConfig1], i)) optEasy_[static_cast<std::size_t>(i)]->setChecked(true);
  }
}

void frmPinConfig::cmbPins1234_31_32_Click() {
  EnablePinsOf(kVidGroup);
}

void frmPinConfig::cmbPins1516_Click() {
  EnablePinsOf(kPins1516);
}

void frmPinConfig::cmbPins1920_Click() {
  EnablePinsOf(kPins1920);
}

void frmPinConfig::EnablePinsOf(const char* group) {
  const bool taken = List(group).currentIndex() == 0;
  for (std::size_t row = 0; row < kPinLists.size(); ++row) {
    if (kPinLists[row].group != group) continue;
    lists_[row]->setEnabled(!taken);
    labels_[row]->setEnabled(!taken);
  }
}

void frmPinConfig::optEasy_Click() {
  ShowEasyOptionDetails();
}

void frmPinConfig::ShowEasyOptionDetails() {
  bool any = false;
  for (std::size_t i = 0; i < optEasy_.size(); ++i) {
    details_[i]->setVisible(optEasy_[i]->isChecked());
    any = any || optEasy_[i]->isChecked();
  }
  noDetails_->setVisible(!any);
}

void frmPinConfig::cmdApply_Click() {
  for (int reg = kPinConfig1; reg <= kPinConfig4; ++reg) {
    std::uint8_t value = 0;
    for (std::size_t row = 0; row < kPinLists.size(); ++row) {
      const PinList& pin = kPinLists[row];
      if (pin.reg == reg) value = base::PutField(value, pin.bits, Turned(pin, PositionsOfText(*lists_[row])));
    }
    link::WriteRegisterValue(link::DeviceAddress, reg, value);
  }
  ReloadLimits();
  if (!GpioOpen) return;
  if (auto* gpio = qobject_cast<frmGPIO*>(TheDesktop().FindWindow("frmGPIO"))) gpio->UpdateGPIOStatus();
}

void frmPinConfig::cmdEasyApply_Click() {
  std::uint8_t value = 0;
  for (int i = 0; i < kEasyOptions; ++i) {
    value = base::PutBit(value, i, optEasy_[static_cast<std::size_t>(i)]->isChecked());
  }
  link::WriteRegisterValue(link::DeviceAddress, kEasyConfig, value);
  // The chip has set the pins by itself.
  Form_Load();
  ReloadLimits();
}

void frmPinConfig::cmdClose_Click() {
  Unload();
}

void frmPinConfig::ReloadLimits() {
  if (!LimitsOpen) return;
  if (ChildWindow* limits = TheDesktop().FindWindow("frmLimits")) limits->Form_Load();
}

}  // namespace zth::windows
