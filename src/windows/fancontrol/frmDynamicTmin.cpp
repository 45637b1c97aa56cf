#include "windows/fancontrol/frmDynamicTmin.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "base/Twips.h"
#include "chip/DegreesText.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "platform/Guard.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/DynTminModel.h"
#include "windows/fancontrol/Registers.h"

namespace zth::windows {
namespace {

constexpr int kRemotes = 2;
constexpr widgets::UpDown::Range kDegrees{0, 120, 1};
constexpr widgets::UpDown::Range kHysteresis{0, 15, 1};

/// A check box and its bit.
struct CheckRow {
  const char* name;
  const char* caption;
  std::int32_t number;
  int bit;
  bool inverted;
};

constexpr std::array<CheckRow, 7> kCheckRows{{
    {"chkEnDynR1", "E&nable Dynamic Tmin for Remote1", reg::kTminCal1, 0, false},
    {"chkEnDynR2", "E&nable Dynamic Tmin for Remote2", reg::kTminCal1, 1, false},
    {"chkLoadOp1Th1", "Load Remote1 Op-Point with Remote1 Value on THERM&1 event", reg::kTminCal1, 2, false},
    {"chkLoadOp2Th1", "Load Remote2 Op-Point with Remote2 Value on THERM&1 event", reg::kTminCal1, 3, false},
    {"chkLoadOp1Th2", "Load Remote1 Op-Point with Remote1 Value on THERM&2 event", reg::kTminCal1, 4, false},
    {"chkLoadOp2Th2", "Load Remote2 Op-Point with Remote2 Value on THERM&2 event", reg::kTminCal1, 5, false},
    {"chkConLoop", "&Backwards Compatible Control Loop", reg::kTminCal2, 6, true},
}};
constexpr int kControlLoop = 6;

constexpr std::array<base::BitField, kRemotes> kCycles{{{0, 3}, {3, 3}}};

/// The up-downs of a channel's tab.
struct UpDownNames {
  const char* opPoint;
  const char* tmin;
  const char* lowLim;
  const char* highLim;
};
constexpr std::array<UpDownNames, kRemotes> kUpDowns{{
    {"UpDown1", "UpDown3", "UpDown4", "UpDown5"},
    {"UpDown6", "UpDown7", "UpDown8", "UpDown9"},
}};

QString DegreesDigits(std::uint8_t raw) {
  return QString::fromStdString(chip::DegreesText(raw));
}

double NumberIn(const QLineEdit& box) {
  return base::LeadingDecimal(box.text().toStdString());
}

}  // namespace

frmDynamicTmin::frmDynamicTmin(const Context& context)
    : LiveWindow("frmDynamicTmin", "Dynamic Tmin Settings", context) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* top = new QHBoxLayout;
  top->setContentsMargins(9, 9, 9, 6);
  SSTab1_ = MakeTabs();
  top->addWidget(SSTab1_);
  column->addLayout(top);
  // Both charts have one place; only one of them shows.
  auto* charts = new QGridLayout;
  charts->setContentsMargins(9, 0, 0, 0);
  for (int channel = 0; channel < kRemotes; ++channel) {
    Strip2_[static_cast<std::size_t>(channel)] = MakeChart(channel);
    charts->addWidget(Strip2_[static_cast<std::size_t>(channel)], 0, 0);
  }
  column->addLayout(charts, 1);
  column->addWidget(MakeCommonRow());
  SSTab1_Click();
  OnTab(*SSTab1_, [this] { SSTab1_Click(); });
}

QTabWidget* frmDynamicTmin::MakeTabs() {
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName("SSTab1");
  for (int channel = 0; channel < kRemotes; ++channel) {
    tabs->addTab(MakeTab(channel), QString("Remote%1").arg(channel + 1));
  }
  tabs->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  return tabs;
}

QWidget* frmDynamicTmin::MakeTab(int channel) {
  auto* page = new QFrame;
  page->setObjectName(QString("Frame%1").arg(channel + 1));
  auto* switches = new QWidget(page);
  auto* numbers = new QWidget(page);
  auto* row = new QHBoxLayout(page);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(switches, 0, Qt::AlignTop);
  row->addWidget(numbers, 0, Qt::AlignTop);
  row->addStretch();

  const QString remote = QString("Remote%1 ").arg(channel + 1);
  ChannelControls& controls = channels_[static_cast<std::size_t>(channel)];
  ControlRows left(*switches);
  for (int check = channel; check < kControlLoop; check += kRemotes) MakeCheck(left, check);
  controls.cmbCycle = left.AddList(ElementName("cmbCycle", channel), remote + "C&ycle Time",
                                   {"0.5 Sec", "1 Sec", "2 Sec", "4 Sec", "8 Sec", "16 Sec", "32 Sec", "64 Sec"},
                                   WhenReady([this, channel] { cmbCycle_Click(channel); }));

  const UpDownNames& names = kUpDowns[static_cast<std::size_t>(channel)];
  ControlRows right(*numbers);
  const auto add = [&](QLineEdit*& box, const QString& name, const QString& caption, const char* upDown,
                       std::int32_t first) {
    box = right.AddText(name, remote + caption, upDown, kDegrees,
                        WhenReady([this, &box, first, channel] { Degrees_Change(first + channel, *box); }));
    box->setToolTip("Degrees C");
  };
  add(controls.txtOpPoint, QString("txtR%1OpPoint").arg(channel + 1), "O&p-Point", names.opPoint, reg::kRemote1OpPoint);
  add(controls.txtTmin, ElementName("txtTmin", channel), "T&min", names.tmin, reg::kRemote1Tmin);
  add(controls.txtLowLim, ElementName("txtLowLim", channel), "&Low Limit", names.lowLim, reg::kRemote1LowLimit);
  add(controls.txtHighLim, ElementName("txtHighLim", channel), "Hi&gh Limit", names.highLim, reg::kRemote1HighLimit);
  return page;
}

QCheckBox* frmDynamicTmin::MakeCheck(ControlRows& rows, int check) {
  const CheckRow& row = kCheckRows[static_cast<std::size_t>(check)];
  return checks_[static_cast<std::size_t>(check)] =
             rows.AddCheck(row.name, row.caption, WhenReady([this, check] { Check_Click(check); }));
}

QWidget* frmDynamicTmin::MakeCommonRow() {
  auto* area = new QWidget(this);
  // The charts end this far above the window's bottom.
  area->setMinimumHeight(base::PixelsFromTwips(600));
  auto* hysteresis = new QWidget(area);
  ControlRows first(*hysteresis);
  txtOpPointHyst_ = first.AddText("txtOpPointHyst", "Operating Point Hysteres&is ", "UpDown2", kHysteresis,
                                  WhenReady([this] { txtOpPointHyst_Change(); }));
  txtOpPointHyst_->setToolTip("Degrees C");
  hysteresis->layout()->setContentsMargins(0, 0, 0, 0);
  auto* loop = new QWidget(area);
  ControlRows second(*loop);
  MakeCheck(second, kControlLoop);
  loop->layout()->setContentsMargins(0, 0, 0, 0);

  cmdDemo_ = new QPushButton("&Run Demo", area);
  cmdDemo_->setObjectName("cmdDemo");
  cmdDemo_->setToolTip("Sets the board up for a show of dynamic Tmin on Remote2");
  OnClick(*cmdDemo_, [this] { cmdDemo_Click(); });
  auto* cmdCancel = new QPushButton("Clo&se", area);
  cmdCancel->setObjectName("cmdCancel");
  OnClick(*cmdCancel, [this] { cmdCancel_Click(); });
  SetDefaultButton(*cmdCancel);
  SetCancelButton(*cmdCancel);

  auto* row = new QHBoxLayout(area);
  row->setContentsMargins(9, 4, 9, 4);
  row->addWidget(hysteresis);
  row->addSpacing(24);
  row->addWidget(loop);
  row->addStretch();
  row->addWidget(cmdDemo_);
  row->addWidget(cmdCancel);
  return area;
}

widgets::Strip* frmDynamicTmin::MakeChart(int channel) {
  const platform::Clock& clock = Services().clock;
  auto* chart = new widgets::Strip([&clock] { return clock.Now(); }, this, &Services().fileDialogs);
  chart->setObjectName(ElementName("Strip2", channel));
  chart->setAccessibleName(QString("Dynamic Tmin of Remote%1").arg(channel + 1));
  connect(chart, &widgets::Strip::Strip2_LayoutChanged, this, [this, chart](int index) {
    if (Strip2_[static_cast<std::size_t>(index)] == chart) Strip2_LayoutChanged(index);
  });
  chart->SetUp(DynTminChart(channel));
  return chart;
}

void frmDynamicTmin::Form_Load() {
  ShowChecks(ReadBytes<2>(reg::kTminCal1));
  const auto show = [](std::int32_t first, QLineEdit* box0, QLineEdit* box1) {
    const auto bytes = ReadBytes<2>(first);
    box0->setText(DegreesDigits(bytes[0]));
    box1->setText(DegreesDigits(bytes[1]));
  };
  show(reg::kRemote1OpPoint, channels_[0].txtOpPoint, channels_[1].txtOpPoint);
  show(reg::kRemote1Tmin, channels_[0].txtTmin, channels_[1].txtTmin);
  show(reg::kRemote1LowLimit, channels_[0].txtLowLim, channels_[1].txtLowLim);
  show(reg::kRemote1HighLimit, channels_[0].txtHighLim, channels_[1].txtHighLim);
  const auto hysteresis = ReadBytes<1>(reg::kOpPointHyst);
  txtOpPointHyst_->setText(QString::number(base::GetField(hysteresis[0], reg::kHighNibble)));
  ShowRemote1Available(chip::PinFunctions.D1);
  if (DemoRunning) cmdDemo_->setText("S&top...");
  SetReady(true);
  DynTminOpen = true;
}

void frmDynamicTmin::Form_Unload() {
  SetReady(false);
  DynTminOpen = false;
}

void frmDynamicTmin::ShowChecks(const std::array<std::uint8_t, 2>& bytes) {
  for (std::size_t i = 0; i < checks_.size(); ++i) {
    const CheckRow& row = kCheckRows[i];
    const std::uint8_t byte = bytes[static_cast<std::size_t>(row.number - reg::kTminCal1)];
    checks_[i]->setChecked(base::GetBit(byte, row.bit) != row.inverted);
  }
  for (std::size_t i = 0; i < channels_.size(); ++i) {
    channels_[i].cmbCycle->setCurrentIndex(static_cast<int>(base::GetField(bytes[1], kCycles[i])));
  }
}

void frmDynamicTmin::ShowRemote1Available(bool available) {
  // A window that runs this again finds a Remote1 that has come back as usable as at its opening.
  if (!available) SSTab1_->setCurrentIndex(1);
  SSTab1_->setTabEnabled(0, available);
  SSTab1_->setTabText(0, available ? "Remote1" : "R1 not enabled");
  SSTab1_Click();
}

// ---- The charts

void frmDynamicTmin::UpdateDynTminGraph() {
  for (int channel = 0; channel < kRemotes; ++channel) PlotChannel(channel);
  SetDutyLegend();
}

void frmDynamicTmin::PlotChannel(int channel) {
  const chip::MeasurementSet& live = chip::Measurements;
  const auto remote = static_cast<std::size_t>(channel + 1);
  widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(channel)];
  const double opPoint = live.PolledOpPoint[remote];
  const std::array values{
      static_cast<double>(live.Temperature[remote]), opPoint, static_cast<double>(live.PolledTmin[remote]),
      static_cast<double>(live.PolledHighLimit[remote]), static_cast<double>(live.PolledLowLimit[remote])};
  for (int trace = 0; trace < static_cast<int>(values.size()); ++trace) {
    strip.PlotValue(trace, values[static_cast<std::size_t>(trace)]);
    PlaceTraceLabel(strip, trace, values[static_cast<std::size_t>(trace)]);
  }
  strip.PlotValue(kHysteresisFloorTrace, opPoint - NumberIn(*txtOpPointHyst_));
}

void frmDynamicTmin::PlaceTraceLabel(widgets::Strip& strip, int label, double value) {
  strip.SetAxisIndex(0);
  const TraceZone zone{static_cast<float>(strip.AxisAreaBottom()), static_cast<float>(strip.AxisMin()),
                       static_cast<float>(strip.AxisMax())};
  strip.SetLabelIndex(label + 1);
  strip.SetLabelTop(TraceLabelTop(zone, base::RoundToInt(value)));
}

void frmDynamicTmin::SetDutyLegend() {
  const auto lists = ListDutyTraces(ReadBytes<4>(reg::kPwmConfig));
  for (int channel = 0; channel < kRemotes; ++channel) {
    const DutyTraceList& list = lists[static_cast<std::size_t>(channel)];
    widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(channel)];
    for (int k = 0; k < 4; ++k) {
      const auto place = static_cast<std::size_t>(k);
      const bool used = k < list.Count;
      strip.SetLabelIndex(DutySlot(k));
      strip.SetCaption(used ? list.Name[place] : QString());
      strip.SetLabelTrace(kFirstDutyTrace + k);
      strip.SetLabelLine(used);
      const auto pwm = static_cast<std::size_t>(list.Pwm[place]);
      strip.PlotValue(kFirstDutyTrace + k, used ? chip::Measurements.PwmPercent[pwm] : 0);
    }
    if (list.Count > 0) continue;
    strip.SetLabelIndex(DutySlot(0));
    strip.SetCaption(QString("No fans controlled by Remote%1").arg(channel + 1));
  }
}

void frmDynamicTmin::SSTab1_Click() {
  const int shown = SSTab1_->currentIndex();
  for (int channel = 0; channel < kRemotes; ++channel) {
    if (channel != shown) Strip2_[static_cast<std::size_t>(channel)]->hide();
  }
  Strip2_[static_cast<std::size_t>(shown)]->show();
}

void frmDynamicTmin::Strip2_LayoutChanged(int index) {
  widgets::Strip& strip = *Strip2_[static_cast<std::size_t>(index)];
  strip.SetAxisIndex(1);
  constexpr std::array kBelowTop{0.04, 0.06, 0.08, 0.1};
  for (int k = 0; k < 4; ++k) {
    strip.SetLabelIndex(DutySlot(k));
    strip.SetLabelTop(static_cast<float>(strip.AxisAreaTop() + kBelowTop[static_cast<std::size_t>(k)]));
  }
  strip.SetLabelIndex(kDutyUnitSlot);
  strip.SetLabelTop(static_cast<float>(strip.AxisAreaTop() + 0.005));
}

// ---- The handlers

void frmDynamicTmin::cmdCancel_Click() {
  Unload();
}

void frmDynamicTmin::cmdDemo_Click() {
  if (DemoRunning) {
    cmdDemo_->setText("&Run Demo");
    DemoRunning = false;
    return;
  }
  SetUpDemo();
  cmdDemo_->setText("S&top...");
  Form_Load();
  SSTab1_->setCurrentIndex(1);
  Strip2_[1]->ClearData();
  DemoRunning = true;
}

void frmDynamicTmin::Check_Click(int check) {
  const CheckRow& row = kCheckRows[static_cast<std::size_t>(check)];
  const bool ticked = checks_[static_cast<std::size_t>(check)]->isChecked();
  const auto before = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, row.number));
  link::WriteRegisterValue(link::DeviceAddress, row.number, base::PutBit(before, row.bit, ticked != row.inverted));
}

void frmDynamicTmin::cmbCycle_Click(int channel) {
  const base::BitField field = kCycles[static_cast<std::size_t>(channel)];
  const QComboBox& list = *channels_[static_cast<std::size_t>(channel)].cmbCycle;
  ModifyRegister(reg::kTminCal2, reg::Without(field), list.findText(list.currentText()) << field.shift);
}

void frmDynamicTmin::Degrees_Change(std::int32_t number, const QLineEdit& box) {
  link::WriteRegisterValue(link::DeviceAddress, number, chip::DegreesByte(box.text().toStdString()));
}

void frmDynamicTmin::txtOpPointHyst_Change() {
  const auto degrees = static_cast<unsigned>(base::RoundToInt(NumberIn(*txtOpPointHyst_)));
  link::WriteRegisterValue(link::DeviceAddress, reg::kOpPointHyst, base::PutField(0, reg::kHighNibble, degrees));
}

}  // namespace zth::windows
