#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "base/Twips.h"
#include "widgets/Strip.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/DynTminChecks.h"
#include "windows/fancontrol/frmDynamicTmin.h"

// How frmDynamicTmin is built; what its controls do stands in frmDynamicTmin.cpp.
namespace zth::windows {
namespace {

constexpr widgets::UpDown::Range kDegrees{0, 120, 1};
constexpr widgets::UpDown::Range kHysteresis{0, 15, 1};

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

}  // namespace

frmDynamicTmin::frmDynamicTmin(const Context& context)
    : LiveWindow("frmDynamicTmin", "Dynamic Tmin Settings", context, kShowsChip | kShowsPins | kShowsDuties) {
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
  row->addWidget(switches);
  row->addWidget(numbers);
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
                       std::int32_t first, int (*polled)(int remote)) {
    QLabel* beside = nullptr;
    box = right.AddText(name, remote + caption, upDown, kDegrees,
                        WhenReady([this, &box, first, channel] { Degrees_Change(first + channel, *box); }), beside);
    box->setToolTip("Degrees C");
    hints_.emplace_back(*box, *beside, [polled, channel] { return polled(channel + 1); });
  };
  add(controls.txtOpPoint, QString("txtR%1OpPoint").arg(channel + 1), "O&p-Point", names.opPoint, reg::kRemote1OpPoint,
      PolledOpPoint);
  add(controls.txtTmin, ElementName("txtTmin", channel), "T&min", names.tmin, reg::kRemote1Tmin, PolledTmin);
  add(controls.txtLowLim, ElementName("txtLowLim", channel), "&Low Limit", names.lowLim, reg::kRemote1LowLimit,
      PolledLowLimit);
  add(controls.txtHighLim, ElementName("txtHighLim", channel), "Hi&gh Limit", names.highLim, reg::kRemote1HighLimit,
      PolledHighLimit);
  // Rows of one height on both sides, so that they stand in line.
  for (const QWidget* side : {switches, numbers}) {
    auto* grid = static_cast<QGridLayout*>(side->layout());
    for (int i = 0; i < grid->rowCount(); ++i) grid->setRowStretch(i, 1);
  }
  return page;
}

QCheckBox* frmDynamicTmin::MakeCheck(ControlRows& rows, int check) {
  const DynTminCheck& row = kDynTminChecks[static_cast<std::size_t>(check)];
  return checks_[static_cast<std::size_t>(check)] =
             rows.AddCheck(row.name, row.caption, WhenReady([this, check] { Check_Click(check); }));
}

QWidget* frmDynamicTmin::MakeCommonRow() {
  auto* area = new QWidget(this);
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
  SetCancelButton(*cmdCancel);

  auto* row = new QHBoxLayout(area);
  row->setContentsMargins(9, 4, 9, 4);
  // The charts end this far above the window's bottom, or farther where the font is large.
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
  auto* chart = new widgets::Strip([&clock] { return clock.Now(); }, this, widgets::StripOutlets(Services()));
  chart->setObjectName(ElementName("Strip2", channel));
  chart->setAccessibleName(QString("Dynamic Tmin of Remote%1").arg(channel + 1));
  connect(chart, &widgets::Strip::Strip2_LayoutChanged, this, [this, chart](int index) {
    if (Strip2_[static_cast<std::size_t>(index)] == chart) Strip2_LayoutChanged(index);
  });
  chart->SetUp(DynTminChart(channel));
  return chart;
}

}  // namespace zth::windows
