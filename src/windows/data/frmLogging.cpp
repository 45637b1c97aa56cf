#include "windows/data/frmLogging.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include <QCheckBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/NumberText.h"
#include "base/Product.h"
#include "base/Rounding.h"
#include "chip/ChannelNames.h"
#include "chip/ChipState.h"
#include "widgets/Named.h"
#include "widgets/UpDown.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::windows {
namespace {

constexpr char kStart[] = "&Start Logging";
constexpr char kStop[] = "&Stop logging...";

/// A pace within this tolerance counts as kept.
constexpr double kPaceTolerance = 0.03;
constexpr double kLongestPace = 10.05;

bool IsYes(float flag) {
  return flag == 1.0F;
}

QString PaceText(double seconds) {
  return QString("true pace: %1 ms").arg(qRound64(seconds * 1000));
}

}  // namespace

frmLogging::frmLogging(const Context& context)
    : ChildWindow("frmLogging", "Data Logging", context, kShowsPins | kShowsDuties) {
  auto* temperatures = MakeFrame("Frame3", "Temperature Values");
  AddColumn(*temperatures, 0, 4, 0);
  AddColumn(*temperatures, 39, 6, 0, 4);
  auto* fans = MakeFrame("Frame2", "Fan Values");
  AddColumn(*fans, 4, 8, 0);
  AddColumn(*fans, 12, 4, 1);
  auto* voltages = MakeFrame("Frame1", "Voltage Values");
  AddColumn(*voltages, 16, 8, 0);
  AddColumn(*voltages, 24, 8, 1);
  AddColumn(*voltages, 32, 7, 2);

  auto* frames = new QHBoxLayout;
  for (QGroupBox* frame : {temperatures, fans, voltages}) frames->addWidget(frame);
  lblState_ = widgets::Named<QLabel>("lblState", this);
  lblState_->setTextFormat(Qt::PlainText);
  auto* column = new QVBoxLayout(this);
  column->addLayout(frames);
  column->addLayout(MakeCommandRow());
  column->addWidget(lblState_);
  lblTrouble_ = widgets::Named<QLabel>("lblTrouble", this);
  lblTrouble_->setTextFormat(Qt::PlainText);
  lblTrouble_->setWordWrap(true);
  lblTrouble_->setMinimumHeight(fontMetrics().height());
  column->addWidget(lblTrouble_);
}

QGroupBox* frmLogging::MakeFrame(const char* name, const char* caption) {
  auto* frame = widgets::Named<QGroupBox>(name, caption, this);
  auto* grid = new QGridLayout(frame);
  grid->setHorizontalSpacing(fontMetrics().averageCharWidth() * 3);
  return frame;
}

void frmLogging::AddColumn(QGroupBox& frame, int first, int count, int column, int row) {
  auto* grid = static_cast<QGridLayout*>(frame.layout());
  for (int i = first; i < first + count; ++i, ++row) {
    auto* box = widgets::Named<QCheckBox>(QString("chkLog(%1)").arg(i),
                                          chip::kLogCaptions.at(static_cast<std::size_t>(i)), &frame);
    grid->addWidget(box, row, column);
    chkLog_.at(static_cast<std::size_t>(i)) = box;
  }
  // The columns of all frames start at the top and have the same row height.
  constexpr int kRows = 10;
  grid->setRowStretch(kRows, 1);
}

QPushButton* frmLogging::MakeButton(const char* name, const char* caption, void (frmLogging::*handler)()) {
  auto* button = widgets::Named<QPushButton>(name, caption, this);
  OnClick(*button, [this, handler] { (this->*handler)(); });
  return button;
}

QHBoxLayout* frmLogging::MakeCommandRow() {
  auto* label = widgets::Named<QLabel>("Label1", "&Interval (ms)", this);
  txtLogInt_ = widgets::Named<QLineEdit>("txtLogInt", this);
  txtLogInt_->setToolTip("Milliseconds from line to line. The log keeps to the monitor's ticks of 50 ms.");
  label->setBuddy(txtLogInt_);
  auto* upDown = widgets::Named<widgets::UpDown>("UpDown1", txtLogInt_, widgets::UpDown::Range{10, 10000, 1}, this);

  auto* row = new QHBoxLayout;
  row->addWidget(label);
  row->addLayout(upDown->Row());
  lblPace_ = widgets::Named<QLabel>("lblPace", this);
  // Reserve room for the longest text, so that nothing moves when it appears or disappears.
  lblPace_->setMinimumWidth(fontMetrics().horizontalAdvance(PaceText(kLongestPace)));
  row->addWidget(lblPace_);
  row->addStretch();
  row->addWidget(MakeButton("cmdSelectAll", "S&elect  All", &frmLogging::cmdSelectAll_Click));
  row->addWidget(MakeButton("cmdDeselectAll", "&Deselect All", &frmLogging::cmdDeselectAll_Click));
  row->addSpacing(fontMetrics().averageCharWidth() * 3);
  cmdLogData_ = MakeButton("cmdLogData", kStop, &frmLogging::cmdLogData_Click);
  // Sized for the longer caption, so that the row does not move under the pointer.
  cmdLogData_->setMinimumWidth(cmdLogData_->sizeHint().width());
  cmdLogData_->setText(kStart);
  row->addWidget(cmdLogData_);
  auto* close = MakeButton("cmdClose", "C&lose", &frmLogging::cmdClose_Click);
  row->addWidget(close);
  SelectOnEnter();  // a stray Enter must not start or stop a log
  SetCancelButton(*close);
  return row;
}

void frmLogging::Form_Load() {
  txtLogInt_->setText(QString::number(Shared.LogPeriodMs));
  for (std::size_t i = 0; i < chkLog_.size(); ++i) {
    const chip::LogChannel& channel = chip::Model.LogChannelTable[i];
    chkLog_[i]->setEnabled(IsYes(channel.Available));
    chkLog_[i]->setChecked(IsYes(channel.Available) && IsYes(channel.Selected));
  }
  ShowState();
  adjustSize();
}

void frmLogging::Reread() {
  const QString interval = txtLogInt_->text();
  std::vector<QCheckBox*> ticked;
  std::ranges::copy_if(chkLog_, std::back_inserter(ticked), &QCheckBox::isChecked);
  Load();
  txtLogInt_->setText(interval);
  for (QCheckBox* box : chkLog_) box->setChecked(box->isEnabled() && std::ranges::count(ticked, box) != 0);
}

void frmLogging::ShowState() {
  cmdLogData_->setText(Shared.LogActive ? kStop : kStart);
  const QString file = Shared.LogActive ? Shared.LogFileName : refused_;
  const QString name = QFileInfo(file).fileName();
  lblState_->setText(Shared.LogActive ? "Logging to " + name
                     : file.isEmpty() ? QString("Not logging")
                                      : "Not logging: " + name + " could not be written");
  lblState_->setToolTip(file);
  lblTrouble_->setText(LogTrouble());
  ShowPace();
}

void frmLogging::ShowPace() {
  const double nominal = Shared.LogPeriodMs / 1000.0;
  const auto pace = LogPace();
  const bool differs = pace && std::abs(*pace - nominal) > nominal * kPaceTolerance;
  lblPace_->setText(differs ? PaceText(*pace) : QString());
  lblPace_->setToolTip(differs ? QString("By the clock a line comes every %1 ms, %2 lines a second.")
                                     .arg(qRound64(*pace * 1000))
                                     .arg(1 / *pace, 0, 'g', 3)
                               : QString());
}

std::string frmLogging::BuildLogHeader() const {
  std::string header = "Time ,";
  for (std::size_t i = 0; i < chkLog_.size(); ++i) {
    if (IsYes(chip::Model.LogChannelTable[i].Selected)) header += chkLog_[i]->text().toStdString() + " ,";
  }
  return header;
}

void frmLogging::cmdSelectAll_Click() {
  for (QCheckBox* box : chkLog_) {
    if (box->isEnabled()) box->setChecked(true);
  }
}

void frmLogging::cmdDeselectAll_Click() {
  for (QCheckBox* box : chkLog_) box->setChecked(false);
}

void frmLogging::cmdLogData_Click() {
  if (Shared.LogActive) {
    StopLog({Services(), TheDesktop()});
    ShowState();
  } else {
    Start();
  }
}

void frmLogging::Start() {
  Shared.LogFileName.clear();
  Shared.LogFileName =
      Services().fileDialogs.Ask({platform::FileQuestion::Kind::Save, "CommonDialog1", "Log Data to File",
                                  Services().process.Folder(), "Log Files (*.csv)|*.csv", "", true},
                                 this);
  if (Shared.LogFileName.isEmpty()) return;

  bool any = false;
  for (std::size_t i = 0; i < chkLog_.size(); ++i) {
    any = any || chkLog_[i]->isChecked();
    chip::Model.LogChannelTable[i].Selected = chkLog_[i]->isChecked() ? 1.0F : 0.0F;
  }
  if (!any) {
    Services().prompts.Ask({base::kTitle, "At least one item must be selected for logging", platform::BoxIcon::Warning,
                            platform::BoxButtons::Ok, this});
    return;
  }
  if (!WriteLogHead(Services().files, BuildLogHeader())) {
    // A line in the window instead of a box, so that nobody waits for a log that is not running.
    refused_ = Shared.LogFileName;
    ShowState();
    return;
  }
  refused_.clear();
  StartLog(base::RoundToInt(base::LeadingDecimal(txtLogInt_->text().toStdString())), TheDesktop());
  ShowState();
}

void frmLogging::cmdClose_Click() {
  Unload();
}

}  // namespace zth::windows
