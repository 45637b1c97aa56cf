#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "chip/FieldTexts.h"
#include "widgets/Strip.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/Registers.h"
#include "windows/fancontrol/frmAutoGraph.h"

// How frmAutoGraph is built; what its controls do stands in frmAutoGraph.cpp.
namespace zth::windows {
namespace {

constexpr widgets::UpDown::Range kPercent{0, 100, 1};
constexpr widgets::UpDown::Range kLimit{0, 120, 1};
constexpr widgets::UpDown::Range kHysteresis{0, 15, 1};

template <std::size_t kCount>
QStringList ItemTexts(const std::array<const char*, kCount>& items) {
  QStringList texts;
  for (const char* item : items) texts << QString::fromUtf8(item);
  return texts;
}

/// The names of the up-downs of a temperature's tab, which run through all tabs.
struct UpDownNames {
  int tmin, therm1, therm2, tminHyst, hyst;
};
constexpr std::array kUpDowns{
    UpDownNames{7, 9, 8, 19, 22},
    UpDownNames{6, 10, 11, 20, 23},
    UpDownNames{12, 13, 14, 18, 24},
    UpDownNames{15, 16, 17, 21, 25},
};

/// All tabs in sight: a quarter of them behind an arrow would be found by few.
QTabWidget* MakeTabWidget(const char* name, QWidget* parent) {
  auto* tabs = new QTabWidget(parent);
  tabs->setObjectName(name);
  tabs->setUsesScrollButtons(false);
  tabs->setElideMode(Qt::ElideNone);
  return tabs;
}

QString UpDownName(int number) {
  return QString("UpDown%1").arg(number);
}

}  // namespace

frmAutoGraph::frmAutoGraph(const Context& context)
    : LiveWindow("frmAutoGraph", "Automatic Control", context, kShowsChip | kShowsDuties) {
  auto* controls = new QVBoxLayout;
  controls->addWidget(MakeAllFans());
  controls->addWidget(MakePwmTabs());
  controls->addWidget(MakeTemperatureTabs());
  controls->addStretch();
  stpGraph_ = MakeChart();
  auto* cmdCancel = new QPushButton("Clo&se", this);
  cmdCancel->setObjectName("cmdCancel");
  OnClick(*cmdCancel, [this] { cmdCancel_Click(); });
  SetCancelButton(*cmdCancel);
  controls->addWidget(cmdCancel, 0, Qt::AlignRight);

  auto* row = new QHBoxLayout(this);
  row->addLayout(controls);
  row->addWidget(stpGraph_, 1);
  OnTab(*tbPWM_, [this] { tbPWM_Click(); });
  OnTab(*tbTemp_);
}

QWidget* frmAutoGraph::MakeAllFans() {
  auto* frame = new QGroupBox("All Fans", this);
  frame->setObjectName("Frame1");
  ControlRows rows(*frame);
  chkThermFS1_ = rows.AddCheck("chkThermFS1", "Full Speed on THERM&1",
                               WhenReady([this] { ThermOption(0, chkThermFS1_->isChecked()); }));
  chkThermFS2_ = rows.AddCheck("chkThermFS2", "Full Speed on THERM&2",
                               WhenReady([this] { ThermOption(1, chkThermFS2_->isChecked()); }));
  txtMaxPWM_ = rows.AddText("txtMaxPWM", "Ma&x PWM 1-4", "UpDown1", kPercent, WhenReady([this] {
                              link::WriteRegisterValue(link::DeviceAddress, "PWM 1-4 Max"_reg,
                                                       chip::DutyByte(txtMaxPWM_->text().toStdString()));
                              Redraw();
                            }));
  txtMaxPWM_->setToolTip("Percent");
  return frame;
}

QTabWidget* frmAutoGraph::MakePwmTabs() {
  tbPWM_ = MakeTabWidget("tbPWM", this);
  for (int pwm = 0; pwm < kPwms; ++pwm) tbPWM_->addTab(MakePwmTab(pwm), QString("PWM%1").arg(pwm + 1));
  return tbPWM_;
}

QWidget* frmAutoGraph::MakePwmTab(int pwm) {
  auto* page = new QWidget;
  PwmControls& controls = pwms_[static_cast<std::size_t>(pwm)];
  ControlRows rows(*page);
  controls.cmbControl = rows.AddList(ElementName("cmbControl", pwm), "Contro&l", ItemTexts(kControlItems),
                                     WhenReady([this, pwm] { cmbControl_Click(pwm); }));
  controls.txtMinPWM = rows.AddText(ElementName("txtMinPWM", pwm), "Min &Duty", UpDownName(pwm + 2), kPercent,
                                    WhenReady([this, pwm] { txtMinPWM_Change(pwm); }));
  controls.txtMinPWM->setToolTip("Percent");
  controls.chkMinSpeed =
      rows.AddCheck(ElementName("chkMinSpeed", pwm), "Always O&n", WhenReady([this, pwm] { chkMinSpeed_Click(pwm); }));
  return page;
}

QTabWidget* frmAutoGraph::MakeTemperatureTabs() {
  tbTemp_ = MakeTabWidget("tbTemp", this);
  const std::array names{"Local", "Remote1", "Remote2", "Remote3"};
  for (int channel = 0; channel < kChannels; ++channel) {
    tbTemp_->addTab(MakeTemperatureTab(channel), names[static_cast<std::size_t>(channel)]);
  }
  return tbTemp_;
}

QWidget* frmAutoGraph::MakeTemperatureTab(int channel) {
  auto* page = new QWidget;
  TemperatureControls& controls = temperatures_[static_cast<std::size_t>(channel)];
  const UpDownNames& names = kUpDowns[static_cast<std::size_t>(channel)];
  ControlRows rows(*page);
  // A box of the page whose whole register is its degrees; it stands in the controls before its handler can run.
  const auto degrees = [&](QLineEdit*& box, const char* array, const char* caption, int upDown, std::int32_t first) {
    box = rows.AddText(ElementName(array, channel), caption, UpDownName(upDown), kLimit,
                       WhenReady([this, &box, first, channel] { Degrees(first + channel, *box); }));
    box->setToolTip("Degrees C");
  };
  const auto hysteresis = [&](const char* array, const char* caption, int upDown, void (frmAutoGraph::*change)(int)) {
    QLineEdit* box = rows.AddText(ElementName(array, channel), caption, UpDownName(upDown), kHysteresis,
                                  WhenReady([this, change, channel] { (this->*change)(channel); }));
    box->setToolTip("Degrees C");
    return box;
  };
  QLabel* lblChipTmin = nullptr;
  controls.txtTmin = rows.AddText(
      ElementName("txtTmin", channel), "&Tmin", UpDownName(names.tmin), kLimit,
      WhenReady([this, &controls, channel] { Degrees(reg::kTmin + channel, *controls.txtTmin); }), lblChipTmin);
  controls.txtTmin->setToolTip("Degrees C");
  hints_.emplace_back(*controls.txtTmin, *lblChipTmin, [channel] { return PolledTmin(channel); });
  controls.cmbTrange = rows.AddList(ElementName("cmbTrange", channel), "T&range", ItemTexts(kTrangeItems),
                                    WhenReady([this, channel] { cmbTrange_Click(channel); }));
  controls.txtTminHyst = hysteresis("txtTminHyst", "Tm&in Hyst", names.tminHyst, &frmAutoGraph::txtTminHyst_Change);
  degrees(controls.txtTH1, "txtTH1", "TH&ERM1 Limit", names.therm1, reg::kTherm1Limit);
  degrees(controls.txtTH2, "txtTH2", "THERM2 Li&mit", names.therm2, reg::kTherm2Limit);
  controls.txtHyst = hysteresis("txtHyst", "THERM H&yst", names.hyst, &frmAutoGraph::txtHyst_Change);
  return page;
}

widgets::Strip* frmAutoGraph::MakeChart() {
  const platform::Clock& clock = Services().clock;
  auto* chart = new widgets::Strip([&clock] { return clock.Now(); }, this, widgets::StripOutlets(Services()));
  chart->setObjectName("stpGraph");
  chart->setToolTip("Drag the arrows at the edges of this graph to zoom in and out");
  chart->setAccessibleName("Duty against temperature");
  chart->SetUp(CurveChart());
  return chart;
}

}  // namespace zth::windows
