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

#include "widgets/Named.h"
#include "windows/BoundControls.h"
#include "windows/BoundMarks.h"
#include "windows/Handlers.h"
#include "windows/Rows.h"
#include "windows/SharedState.h"
#include "windows/config/frmGPIO.h"

namespace zth::windows {
namespace {

QListWidget* MakeDetails(std::size_t option) {
  auto* list = widgets::Named<QListWidget>(QString("List1(%1)").arg(option));
  list->setAccessibleName(QString("Details of Easy Option%1").arg(option + 1));
  for (const char* line : kEasyDetails[option]) {
    if (line != nullptr) list->addItem(line);
  }
  list->setSelectionMode(QAbstractItemView::NoSelection);
  list->setFocusPolicy(Qt::NoFocus);
  list->hide();
  return list;
}

/// Boxes one above the other: their lists begin at the same place.
void AlignLists(std::initializer_list<QGroupBox*> boxes) {
  int width = 0;
  for (const QGroupBox* box : boxes) {
    for (const auto* label : box->findChildren<QLabel*>()) width = std::max(width, label->sizeHint().width());
  }
  for (QGroupBox* box : boxes) GridOf(*box).setColumnMinimumWidth(0, width);
}

}  // namespace

frmPinConfig::frmPinConfig(const Context& context)
    : ChildWindow("frmPinConfig", "Pin Configuration", context, kShowsChip) {
  auto* tabs = widgets::Named<QTabWidget>("SSTab1", this);
  OnTab(*tabs);
  tabs->addTab(BuildEasyTab(), "&Easy Configuration");
  tabs->addTab(BuildIndividualTab(), "&Individual Pin Configuration");
  auto* column = new QVBoxLayout(this);
  column->addWidget(tabs);

  controls_ = new BoundControls(*this, kPinConfigRows);
  new BoundMarks(*this, *controls_);
  for (QRadioButton* option : optEasy_) OnToggle(*option, [this] { optEasy_Click(); });
  OnSelect(
      List(kVidGroup), [this] { cmbPins1234_31_32_Click(); }, Wheel::WithFocus);
  OnSelect(
      List(kDiode1Group), [this] { cmbPins1516_Click(); }, Wheel::WithFocus);
  OnSelect(
      List(kDiode3Group), [this] { cmbPins1920_Click(); }, Wheel::WithFocus);
}

QWidget* frmPinConfig::BuildEasyTab() {
  auto* page = widgets::Named<QWidget>("tabEasy");
  auto* options = new QVBoxLayout;
  options->setSpacing(12);
  for (std::size_t i = 0; i < optEasy_.size(); ++i) {
    optEasy_[i] = widgets::Named<QRadioButton>(NameOf(kEasyRows[i].control), CaptionOf(kEasyRows[i]));
    options->addWidget(optEasy_[i]);
  }
  options->addStretch();
  auto* row = new QHBoxLayout;
  row->setSpacing(32);
  row->addLayout(options);
  row->addWidget(BuildDetails(), 1);
  auto* column = new QVBoxLayout(page);
  column->addLayout(row, 1);
  column->addLayout(BuildButtons("cmdEasyApply", 0, &frmPinConfig::cmdEasyApply_Click));
  return page;
}

QWidget* frmPinConfig::BuildDetails() {
  auto* details = widgets::Named<QWidget>("fraDetails");
  auto* label1 = widgets::Named<QLabel>("Label1", "Option Details (defaults)");
  label1->setContentsMargins(0, 0, 0, 6);
  noDetails_ = widgets::Named<QLabel>("lblNoDetails", "Select an option to see what it sets up.");
  noDetails_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  noDetails_->setAlignment(Qt::AlignCenter);
  auto* grid = new QGridLayout(details);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->addWidget(label1, 0, 0);
  // All on the same spot, which is as large as the largest of them needs.
  grid->addWidget(noDetails_, 1, 0);
  QSize spot;
  for (std::size_t i = 0; i < list1_.size(); ++i) {
    QListWidget* list = MakeDetails(i);
    list1_[i] = list;
    grid->addWidget(list, 1, 0);
    const int frame = 2 * (list->frameWidth() + 4);
    spot = spot.expandedTo({list->sizeHintForColumn(0) + frame, list->sizeHintForRow(0) * list->count() + frame});
  }
  grid->setRowMinimumHeight(1, spot.height());
  grid->setColumnMinimumWidth(0, spot.width());
  grid->setRowStretch(1, 1);
  return details;
}

QWidget* frmPinConfig::BuildIndividualTab() {
  auto* page = widgets::Named<QWidget>("tabIndividual");
  QGroupBox* vid = BuildBox(PinBox::Vid, "fraVid", "VID inputs and the pins they take");
  QGroupBox* diodes = BuildBox(PinBox::Diodes, "fraDiodes", "Remote diodes and the pins they take");
  QGroupBox* alarms = BuildBox(PinBox::Alarms, "fraAlarms", "PWM, fan and THERM");
  QGroupBox* inputs = BuildBox(PinBox::Inputs, "fraInputs", "Tachs and supplies");
  AlignLists({diodes, alarms});
  auto* middle = new QVBoxLayout;
  middle->addWidget(diodes);
  middle->addWidget(alarms, 1);
  auto* boxes = new QHBoxLayout;
  boxes->addWidget(vid);
  boxes->addLayout(middle);
  boxes->addWidget(inputs);
  auto* note = widgets::Named<QLabel>("lblNote", "A pin that is taken is grey. Apply sends its setting all the same.");
  auto* bottom = BuildButtons("cmdApply", 1, &frmPinConfig::cmdApply_Click);
  bottom->insertWidget(0, note);
  auto* column = new QVBoxLayout(page);
  column->addLayout(boxes, 1);
  column->addLayout(bottom);
  return page;
}

QBoxLayout* frmPinConfig::BuildButtons(const QString& apply, int close, void (frmPinConfig::*handler)()) {
  auto* cmdApply = widgets::Named<QPushButton>(apply, "A&pply");
  cmdApply->setToolTip("Write the settings of this tab to the chip");
  OnClick(*cmdApply, [this, handler] { (this->*handler)(); });
  auto* cmdClose = widgets::Named<QPushButton>(QString("cmdClose(%1)").arg(close), "C&lose");
  cmdClose->setToolTip("Close this window and write nothing");
  OnClick(*cmdClose, [this] { cmdClose_Click(); });
  // Escape closes from either tab. Enter applies nothing: a stray one must not re-route the pins of a live board.
  SetCancelButton(*cmdClose);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cmdApply);
  row->addWidget(cmdClose);
  return row;
}

QGroupBox* frmPinConfig::BuildBox(PinBox box, const QString& name, const QString& title) {
  auto* frame = widgets::Named<QGroupBox>(name, title);
  auto& grid = *new QGridLayout(frame);
  grid.setColumnStretch(1, 1);
  // A group's list heads the pins that hang on it.
  for (std::size_t i = 0; i < kPins.size(); ++i) {
    if (kPins[i].box != box || !kPins[i].group.empty()) continue;
    BuildPin(i, grid);
    for (std::size_t pin = 0; pin < kPins.size(); ++pin) {
      if (kPins[pin].group == kPins[i].row.control.base) BuildPin(pin, grid);
    }
  }
  grid.setRowStretch(grid.rowCount(), 1);
  return frame;
}

void frmPinConfig::BuildPin(std::size_t i, QGridLayout& grid) {
  const Pin& pin = kPins[i];
  auto* list = widgets::Named<QComboBox>(NameOf(pin.row.control));
  for (const char* item : pin.row.items) list->addItem(item);
  // Nothing is selected before the first reading, so that it is a change for each list and runs its handler.
  list->setCurrentIndex(-1);
  auto* label = widgets::Named<QLabel>(QString("lblPin(%1)").arg(pin.label), CaptionOf(pin.row));
  label->setBuddy(list);
  label->setToolTip(PlaceOf(pin.row));
  if (!pin.group.empty()) label->setIndent(2 * label->fontMetrics().horizontalAdvance('n'));
  const int line = grid.rowCount();
  grid.addWidget(label, line, 0);
  grid.addWidget(list, line, 1);
  lists_[i] = list;
  lblPin_[i] = label;
}

QComboBox& frmPinConfig::List(std::string_view control) const {
  const auto pin =
      std::ranges::find(kPins, control, [](const Pin& row) { return std::string_view(row.row.control.base); });
  return *lists_[static_cast<std::size_t>(pin - kPins.begin())];
}

void frmPinConfig::Form_Load() {
  // A clear bit cannot unselect an option, and of several set ones the last remains: option buttons are so by nature.
  controls_->Load(kPinReads);
}

bool frmPinConfig::HoldsChanges() const {
  return controls_->HoldsChanges();
}

void frmPinConfig::cmbPins1234_31_32_Click() {
  EnablePinsOf(kVidGroup);
}

void frmPinConfig::cmbPins1516_Click() {
  EnablePinsOf(kDiode1Group);
}

void frmPinConfig::cmbPins1920_Click() {
  EnablePinsOf(kDiode3Group);
}

void frmPinConfig::EnablePinsOf(std::string_view group) {
  const bool taken = List(group).currentIndex() == 0;
  for (std::size_t i = 0; i < kPins.size(); ++i) {
    if (kPins[i].group != group) continue;
    lists_[i]->setEnabled(!taken);
    lblPin_[i]->setEnabled(!taken);
  }
}

void frmPinConfig::optEasy_Click() {
  ShowEasyOptionDetails();
}

void frmPinConfig::ShowEasyOptionDetails() {
  noDetails_->setVisible(std::ranges::none_of(optEasy_, &QRadioButton::isChecked));
  for (std::size_t i = 0; i < optEasy_.size(); ++i) list1_[i]->setVisible(optEasy_[i]->isChecked());
}

void frmPinConfig::cmdApply_Click() {
  controls_->Apply(kPinWrites);
  ReloadLimits();
  if (!Shared.GpioOpen) return;
  if (auto* gpio = qobject_cast<frmGPIO*>(TheDesktop().FindWindow("frmGPIO"))) gpio->UpdateGPIOStatus();
}

void frmPinConfig::cmdEasyApply_Click() {
  controls_->Apply(kEasyWrites);
  // The chip has set the pins by itself.
  Load();
  ReloadLimits();
}

void frmPinConfig::cmdClose_Click() {
  Unload();
}

void frmPinConfig::ReloadLimits() {
  if (!Shared.LimitsOpen) return;
  if (ChildWindow* limits = TheDesktop().FindWindow("frmLimits")) limits->Load();
}

}  // namespace zth::windows
