#include "windows/fancontrol/frmAutoGraph.h"

#include <algorithm>
#include <array>

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "widgets/Named.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

constexpr std::array kAllFans{
    Check("chkThermFS1", "Full Speed on THERM&1", At("THERM Configuration", "B1"), Sense::Inverted),
    Check("chkThermFS2", "Full Speed on THERM&2", At("THERM Configuration", "B2"), Sense::Inverted),
    Text("txtMaxPWM", "Ma&x PWM 1-4", Byte("PWM 1-4 Max"_reg), kDuty, "UpDown1"),
};

constexpr auto PwmRows(int i, const char* minDuty) {
  return std::array{
      List({"cmbControl", i}, "Contro&l", {static_cast<std::uint8_t>("PWM1 Config"_reg + i), chip::kBehaviour},
           chip::kBehaviourNames),
      Text({"txtMinPWM", i}, "Min &Duty", Byte("PWM1 Min"_reg + i), kDuty, minDuty),
      Check({"chkMinSpeed", i}, "Always O&n", "PWM 1&2 Freq"_reg + i / 2, i % 2),
  };
}
constexpr std::array kPwmRows{PwmRows(0, "UpDown2"), PwmRows(1, "UpDown3"), PwmRows(2, "UpDown4"),
                              PwmRows(3, "UpDown5")};

/// The differences between channels: the names of the up-downs, and the bits of the THERM hysteresis.
struct Channel {
  const char *tmin, *therm1, *therm2, *tminHyst, *hyst;
  chip::RegisterField hystBits;
};
constexpr std::array kChannelParts{
    Channel{"UpDown7", "UpDown9", "UpDown8", "UpDown19", "UpDown22", At("Local/Remote 1 Hyst", "LH")},
    Channel{"UpDown6", "UpDown10", "UpDown11", "UpDown20", "UpDown23", At("Local/Remote 1 Hyst", "RH1")},
    Channel{"UpDown12", "UpDown13", "UpDown14", "UpDown18", "UpDown24", At("Remote 2 / Remote 3 Hyst", "RH2")},
    Channel{"UpDown15", "UpDown16", "UpDown17", "UpDown21", "UpDown25", At("Remote 2 / Remote 3 Hyst", "RH3")},
};

constexpr auto TemperatureRows(int i) {
  const Channel& channel = kChannelParts[static_cast<std::size_t>(i)];
  const auto ramp = static_cast<std::uint8_t>("Local Trange/Hys"_reg + i);
  return std::array{
      Text({"txtTmin", i}, "T&min", Byte("Local Tmin"_reg + i), kDegrees, channel.tmin),
      List({"cmbTrange", i}, "Tran&ge", {ramp, chip::kTrange}, kTrangeItems),
      Text({"txtTminHyst", i}, "Tm&in Hyst", {ramp, chip::kTminHyst}, kCutNibble, channel.tminHyst),
      Text({"txtTH1", i}, "TH&ERM1 Limit", Byte("Local THERM1 Limit"_reg + i), kDegrees, channel.therm1),
      Text({"txtTH2", i}, "THE&RM2 Limit", Byte("Local THERM2 Limit"_reg + i), kDegrees, channel.therm2),
      // Not limited to four bits: a number too large for them spills into the neighbour's.
      Text({"txtHyst", i}, "THERM H&yst", channel.hystBits, kNibble, channel.hyst),
  };
}
constexpr std::array kTemperatureRows{TemperatureRows(0), TemperatureRows(1), TemperatureRows(2), TemperatureRows(3)};

constexpr auto kRows = Joined(kAllFans, kPwmRows[0], kPwmRows[1], kPwmRows[2], kPwmRows[3], kTemperatureRows[0],
                              kTemperatureRows[1], kTemperatureRows[2], kTemperatureRows[3]);
constexpr std::array kReads{Read("THERM Configuration"_reg),
                            Read("PWM 1-4 Max"_reg),
                            Read("PWM1 Config"_reg, chip::kPwmChannels),
                            Read("PWM 1&2 Freq"_reg, 2),
                            Read("PWM1 Min"_reg, chip::kPwmChannels),
                            Read("Local Tmin"_reg, chip::kTemperatures),
                            Read("Local Trange/Hys"_reg, chip::kTemperatures),
                            Read("Local/Remote 1 Hyst"_reg, 2),
                            Read("Local THERM1 Limit"_reg, 2 * chip::kTemperatures)};
static_assert(IsSound(kRows, kReads));

}  // namespace

frmAutoGraph::frmAutoGraph(const Context& context)
    : LiveWindow("frmAutoGraph", "Automatic Control", context, kShowsChip | kShowsDuties, kRows, kReads) {
  auto* controls = new QVBoxLayout;
  controls->addWidget(MakeAllFans());
  tbPWM_ = MakeTabs("tbPWM");
  for (int pwm = 0; pwm < chip::kPwmChannels; ++pwm) {
    tbPWM_->addTab(MakePage(kPwmRows[static_cast<std::size_t>(pwm)]), QString("PWM%1").arg(pwm + 1));
  }
  controls->addWidget(tbPWM_);
  tbTemp_ = MakeTabs("tbTemp");
  for (std::size_t channel = 0; channel < chip::kTemperatures; ++channel) {
    tbTemp_->addTab(MakePage(kTemperatureRows[channel]), chip::kTemperatureNames[channel]);
  }
  controls->addWidget(tbTemp_);
  controls->addStretch();
  view_ = std::make_unique<CurveView>(this, Services());
  auto* cmdCancel = widgets::Named<QPushButton>("cmdCancel", "Clo&se", this);
  OnClick(*cmdCancel, [this] { cmdCancel_Click(); });
  SetCancelButton(*cmdCancel);
  controls->addWidget(cmdCancel, 0, Qt::AlignRight);

  auto* row = new QHBoxLayout(this);
  row->addLayout(controls);
  row->addWidget(view_->Chart(), 1);
  Finish();
  LineUp();
  OnTab(*tbPWM_, [this] { tbPWM_Click(); });
  OnTab(*tbTemp_);
}

QWidget* frmAutoGraph::MakeAllFans() {
  auto* frame = widgets::Named<QGroupBox>("Frame1", "All Fans", this);
  AddRows(*frame, kAllFans);
  return frame;
}

QTabWidget* frmAutoGraph::MakeTabs(const char* name) {
  auto* tabs = widgets::Named<QTabWidget>(name, this);
  // All tabs stay visible: few users would find those hidden behind an arrow.
  tabs->setUsesScrollButtons(false);
  tabs->setElideMode(Qt::ElideNone);
  return tabs;
}

QWidget* frmAutoGraph::MakePage(std::span<const Binding> rows) {
  auto* page = new QWidget;
  AddRows(*page, rows);
  return page;
}

void frmAutoGraph::LineUp() {
  int box = 0;
  int column = 0;
  const QList<QLineEdit*> boxes = findChildren<QLineEdit*>();
  for (const QLineEdit* each : boxes) box = std::max(box, each->width());
  for (QLineEdit* each : boxes) each->setFixedWidth(box);
  QList<QGridLayout*> grids;
  for (QWidget* holder : findChildren<QWidget*>()) {
    auto* grid = qobject_cast<QGridLayout*>(holder->layout());
    if (grid == nullptr || grid->columnCount() < 2) continue;
    grids << grid;
    for (int line = 0; line < grid->rowCount(); ++line) {
      // A check box spans both columns, so only fields count for the width of the second one.
      const QLayoutItem* label = grid->itemAtPosition(line, 0);
      const QLayoutItem* field = grid->itemAtPosition(line, 1);
      if (field != nullptr && field != label) column = std::max(column, field->minimumSize().width());
    }
  }
  for (QGridLayout* grid : grids) grid->setColumnMinimumWidth(1, column);
}

void frmAutoGraph::Form_Load() {
  LoadControls();
  BuildModel();
  SetReady(true);
  tbPWM_Click();
  Shared.AutoGraphOpen = true;
}

void frmAutoGraph::Reread() {
  const int channel = tbTemp_->currentIndex();
  LiveWindow::Reread();
  tbTemp_->setCurrentIndex(channel);
}

void frmAutoGraph::Form_Unload() {
  SetReady(false);
  Shared.AutoGraphOpen = false;
}

void frmAutoGraph::BuildModel() {
  const auto text = [this](const char* control, int index = -1) { return Controls().TextOf({control, index}); };
  const auto ticked = [&text](const char* check, int index = -1) { return text(check, index) == "1"; };
  CurveTexts texts;
  texts.maxPwm = text("txtMaxPWM");
  texts.maxByte = Controls().FieldOf({"txtMaxPWM"});
  texts.thermFS1 = ticked("chkThermFS1");
  texts.thermFS2 = ticked("chkThermFS2");
  for (int i = 0; i < chip::kPwmChannels; ++i) {
    texts.pwms[static_cast<std::size_t>(i)] = {text("cmbControl", i), text("txtMinPWM", i), ticked("chkMinSpeed", i),
                                               Controls().FieldOf({"txtMinPWM", i})};
  }
  for (int i = 0; i < chip::kTemperatures; ++i) {
    texts.channels[static_cast<std::size_t>(i)] = {text("txtTmin", i), text("cmbTrange", i), text("txtTminHyst", i),
                                                   text("txtTH1", i), text("txtTH2", i)};
  }
  texts.polledTmin = chip::Model.Measurements.PolledTmin;
  const CurveModel model = BuildCurveModel(texts);
  ShowTrangeTips(model);
  view_->SetModel(model);
}

void frmAutoGraph::ShowTrangeTips(const CurveModel& model) {
  const PwmCurve& curve = model.Pwm[static_cast<std::size_t>(tbPWM_->currentIndex())];
  for (int i = 0; i < chip::kTemperatures; ++i) {
    const std::string text = Controls().TextOf({"cmbTrange", i});
    const int apart = DrawnApart(text, curve.MinDuty, model.MaxDuty);
    // The tips hardly ever change, and this is called at every poll.
    TrangeTip& tip = tips_.at(static_cast<std::size_t>(i));
    if (tip.text == text && tip.apart == apart) continue;
    tip = {text, apart};
    auto* list = findChild<QComboBox*>(NameOf({"cmbTrange", i}));
    const QString drawn = QString::number(base::RoundToInt(base::LeadingDecimal(text)));
    list->setToolTip(
        apart == 0 ? QString()
                   : QString("The line is drawn over %1\u00B0C, the chip's duty rises over %2. Both begin at "
                             "Tmin; on the way up they part by up to %3 steps of 1/255 of the duty. The rings are "
                             "the chip's own corners")
                         .arg(drawn, QString::fromStdString(text))
                         .arg(apart));
  }
}

void frmAutoGraph::PlotAFCTemps() {
  RefreshHints();
  BuildModel();
  view_->DrawWithDots(Ready());
}

void frmAutoGraph::AfterWrite(const Binding& row) {
  BuildModel();
  const std::string_view control = row.control.base;
  if (control != "txtMinPWM") DrawCurve();
  if (control == "txtMinPWM" || control == "cmbControl") tbPWM_Click();
}

void frmAutoGraph::tbPWM_Click() {
  const int pwm = tbPWM_->currentIndex();
  view_->ShowPwm(pwm, tbPWM_->tabText(pwm));
  if (view_->Curve().SourceCount > 0) tbTemp_->setCurrentIndex(view_->Curve().Sources[0].Channel - 1);
  DrawCurve();
}

void frmAutoGraph::cmdCancel_Click() {
  Unload();
}

}  // namespace zth::windows
