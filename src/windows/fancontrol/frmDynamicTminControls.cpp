#include <array>
#include <vector>

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>

#include "base/Twips.h"
#include "link/BoardName.h"
#include "widgets/Named.h"
#include "widgets/Strip.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/DynTminModel.h"
#include "windows/fancontrol/frmDynamicTmin.h"

// Builds frmDynamicTmin; the controls' handlers are in frmDynamicTmin.cpp.
namespace zth::windows {
namespace {

constexpr std::array kCycles{"0.5 Sec", "1 Sec", "2 Sec", "4 Sec", "8 Sec", "16 Sec", "32 Sec", "64 Sec"};

// Rows of Remote1 and Remote2 alternately. The bits of "Tmin_Cal1" are given by number: their order in the register
// table differs from their actual order.
constexpr std::array kSwitches{
    Check("chkEnDynR1", "E&nable Dynamic Tmin for Remote1", "Tmin_Cal1"_reg, 0),
    Check("chkEnDynR2", "E&nable Dynamic Tmin for Remote2", "Tmin_Cal1"_reg, 1),
    Check("chkLoadOp1Th1", "Load Remote1 Op-Point with Remote1 Value on THERM&1 event", "Tmin_Cal1"_reg, 2),
    Check("chkLoadOp2Th1", "Load Remote2 Op-Point with Remote2 Value on THERM&1 event", "Tmin_Cal1"_reg, 3),
    Check("chkLoadOp1Th2", "Load Remote1 Op-Point with Remote1 Value on THERM&2 event", "Tmin_Cal1"_reg, 4),
    Check("chkLoadOp2Th2", "Load Remote2 Op-Point with Remote2 Value on THERM&2 event", "Tmin_Cal1"_reg, 5),
};
constexpr std::array kControlLoop{
    Check("chkConLoop", "&Backwards Compatible Control Loop", At("Tmin_Cal2", "Ver"), Sense::Inverted),
};
constexpr std::array kCycleTimes{
    List({"cmbCycle", 0}, "Remote%1 C&ycle Time", At("Tmin_Cal2", "CYR1"), kCycles),
    List({"cmbCycle", 1}, "Remote%1 C&ycle Time", At("Tmin_Cal2", "CYR2"), kCycles),
};
constexpr std::array kNumbers{
    Text("txtR1OpPoint", "Remote1 O&p-Point", Byte("Remote 1 Operating Point"_reg), kDegrees, "UpDown1"),
    Text("txtR2OpPoint", "Remote2 O&p-Point", Byte("Remote 2 Operating Point"_reg), kDegrees, "UpDown6"),
    Text({"txtTmin", 0}, "Remote%1 T&min", Byte("Remote 1 Tmin"_reg), kDegrees, "UpDown3"),
    Text({"txtTmin", 1}, "Remote%1 T&min", Byte("Remote 2 Tmin"_reg), kDegrees, "UpDown7"),
    Text({"txtLowLim", 0}, "Remote%1 &Low Limit", Byte("Remote 1 Low Limit"_reg), kDegrees, "UpDown4"),
    Text({"txtLowLim", 1}, "Remote%1 &Low Limit", Byte("Remote 2 Low Limit"_reg), kDegrees, "UpDown8"),
    Text({"txtHighLim", 0}, "Remote%1 Hi&gh Limit", Byte("Remote 1 High Limit"_reg), kDegrees, "UpDown5"),
    Text({"txtHighLim", 1}, "Remote%1 Hi&gh Limit", Byte("Remote 2 High Limit"_reg), kDegrees, "UpDown9"),
};
constexpr std::array kHysteresis{
    Alone(Text("txtOpPointHyst", "Operating Point Hysteres&is ", At("Operating Point Hyst", "Hys"), kCutNibble,
               "UpDown2")),
};
constexpr auto kRows = Joined(kSwitches, kControlLoop, kCycleTimes, kNumbers, kHysteresis);
constexpr std::array kReads{Read("Tmin_Cal1"_reg, 2),           Read("Remote 1 Operating Point"_reg, 2),
                            Read("Remote 1 Tmin"_reg, 2),       Read("Remote 1 Low Limit"_reg, 2),
                            Read("Remote 1 High Limit"_reg, 2), Read("Operating Point Hyst"_reg, 1)};
static_assert(IsSound(kRows, kReads));

/// The rows of one channel.
template <std::size_t kCount>
std::vector<Binding> OfChannel(const std::array<Binding, kCount>& rows, int channel) {
  std::vector<Binding> of;
  for (auto i = static_cast<std::size_t>(channel); i < kCount; i += kRemotes) of.push_back(rows[i]);
  return of;
}

}  // namespace

frmDynamicTmin::frmDynamicTmin(const Context& context)
    : LiveWindow("frmDynamicTmin", "Dynamic Tmin Settings", context, kShowsChip | kShowsPins | kShowsDuties, kRows,
                 kReads) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* top = new QHBoxLayout;
  top->setContentsMargins(9, 9, 9, 6);
  SSTab1_ = MakeTabs();
  top->addWidget(SSTab1_);
  column->addLayout(top);
  // Both charts share one place; only one of them is visible.
  auto* charts = new QGridLayout;
  charts->setContentsMargins(9, 0, 0, 0);
  for (int channel = 0; channel < kRemotes; ++channel) {
    Strip2_[static_cast<std::size_t>(channel)] = MakeChart(channel);
    charts->addWidget(Strip2_[static_cast<std::size_t>(channel)], 0, 0);
  }
  widgets::ShareTimeOfDay(Strip2_);
  column->addLayout(charts, 1);
  column->addWidget(MakeCommonRow());
  Finish();
  SSTab1_Click();
  OnTab(*SSTab1_, [this] { SSTab1_Click(); });
}

QTabWidget* frmDynamicTmin::MakeTabs() {
  auto* tabs = widgets::Named<QTabWidget>("SSTab1", this);
  for (int channel = 0; channel < kRemotes; ++channel) {
    tabs->addTab(MakeTab(channel), QString("Remote%1").arg(channel + 1));
  }
  tabs->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  return tabs;
}

QWidget* frmDynamicTmin::MakeTab(int channel) {
  auto* page = widgets::Named<QFrame>(QString("Frame%1").arg(channel + 1));
  auto* switches = new QWidget(page);
  auto* numbers = new QWidget(page);
  auto* row = new QHBoxLayout(page);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(switches);
  row->addWidget(numbers);
  row->addStretch();

  AddRows(*switches, OfChannel(kSwitches, channel));
  AddRows(*switches, OfChannel(kCycleTimes, channel));
  AddRows(*numbers, OfChannel(kNumbers, channel));
  // Rows of the same height on both sides, so that they line up.
  for (const QWidget* side : {switches, numbers}) {
    auto* grid = static_cast<QGridLayout*>(side->layout());
    for (int i = 0; i < grid->rowCount(); ++i) grid->setRowStretch(i, 1);
  }
  return page;
}

QWidget* frmDynamicTmin::MakeCommonRow() {
  auto* area = new QWidget(this);
  auto* hysteresis = new QWidget(area);
  AddRows(*hysteresis, kHysteresis);
  hysteresis->layout()->setContentsMargins(0, 0, 0, 0);
  auto* loop = new QWidget(area);
  AddRows(*loop, kControlLoop);
  loop->layout()->setContentsMargins(0, 0, 0, 0);

  cmdDemo_ = widgets::Named<QPushButton>("cmdDemo", "&Run Demo", area);
  cmdDemo_->setToolTip("Sets the board up for a show of dynamic Tmin on Remote2");
  OnClick(*cmdDemo_, [this] { cmdDemo_Click(); });
  auto* cmdCancel = widgets::Named<QPushButton>("cmdCancel", "Clos&e", area);
  OnClick(*cmdCancel, [this] { cmdCancel_Click(); });
  SetCancelButton(*cmdCancel);

  auto* row = new QHBoxLayout(area);
  row->setContentsMargins(9, 4, 9, 4);
  // The charts end this far above the window's bottom, or farther if the font is large.
  row->addStrut(base::PixelsFromTwips(600) - 8);
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
  auto* chart = widgets::Named<widgets::Strip>(NameOf({"Strip2", channel}), clock, this,
                                               widgets::StripOutlets(Services(), link::BoardName));
  chart->setAccessibleName(QString("Dynamic Tmin of Remote%1").arg(channel + 1));
  connect(chart, &widgets::Strip::Strip2_LayoutChanged, this, [this, chart](int index) {
    if (Strip2_[static_cast<std::size_t>(index)] == chart) Strip2_LayoutChanged(index);
  });
  chart->SetUp(DynTminChart(channel));
  return chart;
}

}  // namespace zth::windows
