#include <cmath>
#include <fstream>
#include <sstream>

#include <QAccessible>
#include <QLabel>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>

#include "chip/ChipState.h"
#include "link/Declarations.h"
#include "tests/accessibility/AccessGround.h"
#include "tests/support/Steps.h"
#include "widgets/GSlider.h"
#include "widgets/LGauge.h"
#include "widgets/Toggle.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using chip::Model;

/// Reads of these registers fail, over SMBus.
std::function<bool(const std::string&)> ReadsOf(int first, int last) {
  return [first, last](const std::string& transfer) {
    const int reg = std::stoi(transfer.substr(9), nullptr, 16);
    return transfer[4] == 'R' && reg >= first && reg <= last;
  };
}

/// The program on SMBus, with a library that tells of failures.
class LinkHealth : public ::testing::Test {
 protected:
  LinkHealth() {
    desk.board.missingEntries.clear();
    desk.Start();
    Put(desk.board.Chip(), "3F=02 88..8F=5E 88=00 8A=00 8C=00 8E=00 98..A9=04 AA..AD=80 07=FF");
    desk.Advance(1000);
  }
  ~LinkHealth() override { QAccessible::installUpdateHandler(nullptr); }

  void Fail(int first, int last) { desk.board.smbusFails = ReadsOf(first, last); }
  void Mend() { desk.board.smbusFails = {}; }
  QString Message() { return Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage(); }
  QString Panel() { return Desk::Text(desk.Main(), "lblLink"); }
  /// Which groups are stale, as digits.
  static std::string Stale() {
    std::string stale;
    for (int group = 1; group <= 6; ++group) stale += chip::IsStale(group) ? std::to_string(group) : "";
    return stale;
  }
  static std::vector<double> Everything() {
    const chip::MeasurementSet& m = Model.Measurements;
    std::vector<double> all;
    const auto add = [&all](const auto& values) {
      for (const auto value : values) all.push_back(static_cast<double>(value));
    };
    add(m.Temperature), add(m.TachRpm), add(m.PwmPercent), add(m.Voltage), add(m.ThermPercent);
    add(m.PolledTmin), add(m.PolledOpPoint), add(m.PolledHighLimit), add(m.PolledLowLimit), add(m.Reads);
    for (const chip::LogChannel& row : Model.LogChannelTable) all.push_back(static_cast<double>(row.Value));
    return all;
  }

  Desk desk{Desk::Buses::Smbus};
};

TEST_F(LinkHealth, AGroupWithOneFailedTransferTakesNoneOfItsValues) {
  Model.PollEnabled = false;
  for (const auto& [group, first, last] : {std::tuple{1, 0x88, 0x8F},
                                           {2, 0x98, 0xA9},
                                           {3, 0xAA, 0xAD},
                                           {4, 0x8B, 0xA9},
                                           {5, 0xAE, 0xAF},
                                           {6, 0x45, 0x5F}}) {
    SCOPED_TRACE(group);
    const auto at = static_cast<std::int16_t>(group);
    chip::ReadMeasurementGroup(at);
    const auto before = Everything();
    for (int reg = first; reg <= last; ++reg) desk.board.Chip()[static_cast<std::size_t>(reg)] ^= 0x15;
    Fail(last == 0xA9 && group == 4 ? 0x93 : last == 0x5F ? 0x46 : last, 0xFF);
    desk.board.TakeTraffic();
    chip::ReadMeasurementGroup(at);
    const Traffic failed = desk.board.TakeTraffic();
    EXPECT_EQ(Stale(), std::to_string(group));
    EXPECT_EQ(Everything(), before) << "the last good values, in the log's table as well, and the count of good reads";
    Mend();
    chip::ReadMeasurementGroup(at);
    EXPECT_EQ(desk.board.TakeTraffic(), failed) << "the same transfers, and none more";
    EXPECT_EQ(Stale(), "");
    EXPECT_NE(Everything(), before);
  }
}

TEST_F(LinkHealth, AgesAreToldInWordsAndByTheChipInUse) {
  Fail(0x88, 0x88);
  desk.Advance(1000);
  ASSERT_EQ(Stale(), "1");
  const double then = *Model.Freshness.groups[1].readAt;
  for (const auto& [seconds, text] :
       {std::pair{0.4, "0 s old"}, {59.9, "59 s old"}, {61.0, "1 min old"}, {7300.0, "2 h old"}}) {
    Model.Freshness.now = then + seconds;
    EXPECT_EQ(chip::AgeText(1), text);
  }
  EXPECT_EQ(chip::AgeText(2), "");
  link::Bus.DeviceAddress = 0x2D;
  EXPECT_EQ(chip::AgeText(1), "never read");
}

TEST_F(LinkHealth, ALogLeavesTheFieldsOfAStaleGroupEmptyAndKeepsTheirCount) {
  for (const std::size_t row : {0U, 3U, 4U, 11U, 12U, 15U, 16U, 38U, 39U, 44U}) {
    Model.LogChannelTable[row].Selected = 1;
    Model.LogChannelTable[row].Value = static_cast<float>(row);
  }
  const std::array<std::string, 7> lines{
      "0,0 ,3 ,4 ,11 ,12 ,15 ,16 ,38 ,39 ,44 ,", "0,,,4 ,11 ,12 ,15 ,16 ,38 ,39 ,44 ,",
      "0,0 ,3 ,,,12 ,15 ,16 ,38 ,39 ,44 ,",      "0,0 ,3 ,4 ,11 ,,,16 ,38 ,39 ,44 ,",
      "0,0 ,3 ,4 ,11 ,12 ,15 ,,,39 ,44 ,",       "0,0 ,3 ,4 ,11 ,12 ,15 ,16 ,38 ,39 ,44 ,",
      "0,0 ,3 ,4 ,11 ,12 ,15 ,16 ,38 ,,,"};
  for (int group = 0; group <= 6; ++group) {
    chip::NoteReading(std::max(group, 1), group > 0);
    EXPECT_EQ(windows::BuildLogLine(), lines[static_cast<std::size_t>(group)]);
    chip::NoteReading(std::max(group, 1), false);
  }
}

TEST_F(LinkHealth, AChartHasAGapAndItsLegendTheAge) {
  auto& graph = desk.Open("frmGraph");
  const auto legend = [&](const char* chart, int slot) {
    Desk::Get<QWidget>(graph, chart).setProperty("LabelIndex", slot);
    return Desk::Property(graph, chart, "Caption").toString().toStdString();
  };
  const auto newest = [&](const char* chart, int trace) {
    QVariantList points;
    QMetaObject::invokeMethod(&Desk::Get<QWidget>(graph, chart), "TracePoints", Q_RETURN_ARG(QVariantList, points),
                              Q_ARG(int, trace));
    return points.constLast().toList().at(1).toDouble();
  };
  desk.Advance(100);
  EXPECT_EQ(legend("stpGraph(3)", 1), "Local = 30\u00B0C");
  EXPECT_EQ(newest("stpGraph(4)", 4), 50);
  Fail(0x00, 0xFF);
  desk.Advance(3050);
  EXPECT_EQ(legend("stpGraph(3)", 1), "Local = 3 s old");
  EXPECT_EQ(legend("stpGraph(1)", 8), "Tach8=3 s old");
  for (const auto& [chart, trace] : {std::pair{"stpGraph(0)", 0},
                                     {"stpGraph(1)", 0},
                                     {"stpGraph(2)", 3},
                                     {"stpGraph(3)", 4},
                                     {"stpGraph(5)", 0},
                                     {"stpGraph(6)", 1}}) {
    EXPECT_TRUE(std::isnan(newest(chart, trace))) << chart;
  }
  Mend();
  desk.Advance(1500);
  EXPECT_EQ(legend("stpGraph(3)", 1), "Local = 30\u00B0C");
  EXPECT_EQ(newest("stpGraph(0)", 0), 30);
}

TEST_F(LinkHealth, NoLampAndNoGaugeOfTheLimitsTakesAFailedRead) {
  Put(desk.board.Chip(), "C0=02 C1=00 BA=00 30..35=00");
  auto& limits = desk.Open("frmLimits");
  desk.Advance(1500);
  const auto lamp = [&](int row) {
    return Desk::Get<widgets::Toggle>(limits, QString("tglTempAlert(%1)").arg(row)).StateText().toStdString();
  };
  auto& gauge = Desk::Get<widgets::LGauge>(limits, "ggeTemp");
  ASSERT_EQ(lamp(0) + lamp(1), "BadOK");
  Fail(0x80, 0xFF);
  desk.Advance(3000);
  EXPECT_EQ(lamp(0) + "|" + lamp(1), "Bad, not read|OK, not read");
  EXPECT_TRUE(gauge.Stale());
  EXPECT_TRUE(QRegularExpression("^ 30\u00B0C, [23] s old$").match(gauge.Caption()).hasMatch());
  EXPECT_EQ(gauge.Reading(), 30);
  Mend();
  Put(desk.board.Chip(), "C0=04");
  desk.Advance(2000);
  EXPECT_EQ(lamp(0) + lamp(1), "OKBad");
  EXPECT_FALSE(gauge.Stale());
  EXPECT_EQ(gauge.Caption(), " 30\u00B0C");
}

TEST_F(LinkHealth, AWindowThatCouldNotBeReadSaysSoAndItsMasksWriteNothing) {
  Put(desk.board.Chip(), "30..35=00");
  Fail(0x30, 0x30);
  desk.board.TakeTraffic();
  auto& limits = desk.Open("frmLimits");
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{}) << "0xFF would have masked every channel";
  EXPECT_EQ(limits.windowTitle(), "Limits / Interrupts (not read in full)");
  const auto& bar = Desk::Get<QWidget>(limits, "fraOrigin");
  EXPECT_FALSE(bar.isHidden());
  Mend();
  limits.ReadAgain();
  EXPECT_EQ(limits.windowTitle(), "Limits / Interrupts");
  EXPECT_TRUE(bar.isHidden());
}

TEST_F(LinkHealth, WindowsOfLiveValuesKeepAndMarkWhatTheyCannotRead) {
  auto& manual = desk.Open("frmManualControl");
  auto& heaters = desk.Open("frmHeaters");
  auto& tmin = desk.Open("frmDynamicTmin");
  Put(desk.board.Chip(), "03=01 BF=FF 1F..20=00");
  auto& gpio = desk.Open("frmGPIO");
  auto& map = desk.Open("frmRegMap");
  desk.Advance(2000);
  Do(map, "txtReadAddr=2C; cmdRead");
  ASSERT_EQ(Desk::Text(map, "lblDecVal"), QString::number(desk.board.Chip()[0x2C]));
  const QRegularExpression age("\\d+ s");  // each window looks at times of its own
  const auto shown = [&] {
    Desk::Get<QWidget>(tmin, "Strip2(1)").setProperty("LabelIndex", 0);
    return QStringList{Desk::Text(manual, "lblStale"), Desk::Text(heaters, "lblTemp(0)"),
                       Desk::Property(tmin, "Strip2(1)", "Caption").toString(), Desk::Text(gpio, "lblStatus(0)"),
                       map.windowTitle()}
        .join('|')
        .replace(age, "N s")
        .toStdString();
  };
  const auto& slider = Desk::Get<widgets::GSlider>(manual, "sldManual(0)");
  const std::string sound = shown();
  EXPECT_EQ(slider.Value(), 50);
  EXPECT_NE(sound.find("|Remote1 = 30\u00B0C|"), std::string::npos) << sound;
  Fail(0x00, 0xFF);
  Do(map, "cmdRead");
  desk.Advance(4000);
  EXPECT_TRUE(slider.Stale());
  EXPECT_EQ(slider.Value(), 50);
  EXPECT_EQ(shown(),
            "Duties N s old|Remote1 = 30\u00B0C, N s old|Remote2: temperature N s old, Tmin and limits N s old, "
            "duties N s old|Inactive|Register Map (not read in full)");
  EXPECT_FALSE(Desk::Get<QLabel>(gpio, "lblStatus(0)").isEnabled());
  Mend();
  Do(map, "cmdRead");
  desk.Advance(2000);
  EXPECT_EQ(shown(), sound);
  EXPECT_FALSE(slider.Stale());
  EXPECT_TRUE(Desk::Get<QLabel>(gpio, "lblStatus(0)").isEnabled());
}

TEST_F(LinkHealth, TheCurvesDotWaitsForBothOfItsValues) {
  Put(desk.board.Chip(), "21..24=00");  // under the control of Local
  auto& window = desk.Open("frmAutoGraph");
  const auto dots = [&] {
    desk.Advance(1500);
    QVariantList points;
    QMetaObject::invokeMethod(&Desk::Get<QWidget>(window, "stpGraph"), "TracePoints",
                              Q_RETURN_ARG(QVariantList, points), Q_ARG(int, 4));
    return points.size();
  };
  EXPECT_EQ(dots(), 2);
  for (const int reg : {0x89, 0xAC}) {
    Fail(reg, reg);
    EXPECT_EQ(dots(), 0) << reg;
    Mend();
    EXPECT_EQ(dots(), 2);
  }
}

TEST_F(LinkHealth, TheDemoLiftsAStaleValueNoFurther) {
  windows::Shared.DemoRunning = true;
  windows::Shared.DemoThermTripped = true;
  windows::Shared.DemoChip = link::ChipInUse();
  desk.Advance(1500);
  EXPECT_EQ(Model.Measurements.Temperature[2], 45);
  const auto tmin = Model.Measurements.PolledTmin[2];
  Fail(0x00, 0xFF);
  desk.Advance(5000);
  EXPECT_EQ(Model.Measurements.Temperature[2], 45);
  EXPECT_EQ(Model.Measurements.PolledTmin[2], tmin);
}

int alerts = 0;

TEST_F(LinkHealth, ThreeStaleGroupsInARowRaiseANoticeUntilAllAreWell) {
  QGuiApplicationPrivate::platform_integration->accessibility()->setActive(true);
  alerts = 0;
  QAccessible::installUpdateHandler(
      [](QAccessibleEvent* event) { alerts += event->type() == QAccessible::Alert ? 1 : 0; });
  const QString notice = "Readings of 2Ch on SMBus fail: what is grey or has an age is old";
  const auto& label = Desk::Get<QWidget>(desk.Main(), "lblLink");
  for (const int first : {0x8F, 0x98, 0xAA}) {  // one, two and three groups of six fail, each time around
    Fail(first, first);
    desk.Advance(3000);
    EXPECT_EQ(Message(), "");
  }
  int left = 2 * 4 + 2;  // of temperatures and of tachs a failing register, of duties half
  desk.board.smbusFails = [&left](const std::string& transfer) { return transfer[4] == 'R' && left-- > 0; };
  desk.Advance(3000);
  EXPECT_EQ(Message(), "") << "two in a row";
  EXPECT_EQ(alerts, 0);
  Fail(0x00, 0xFF);
  desk.Advance(450);
  EXPECT_EQ(Message(), notice);
  EXPECT_EQ(alerts, 1);
  EXPECT_TRUE(label.accessibleName().startsWith(notice + ". Link: ")) << label.accessibleName().toStdString();
  EXPECT_EQ(Desk::Text(desk.Main(), "sbStatusBar(1)"), "Status") << "what is prescribed stands behind it";
  Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").showMessage("passes", 10'000);
  desk.Advance(100);
  EXPECT_EQ(Message(), "passes");
  Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").clearMessage();
  desk.Advance(100);
  EXPECT_EQ(Message(), notice);
  Fail(0x88, 0x88);
  desk.Advance(3000);
  EXPECT_EQ(Message(), notice) << "five groups are well, one is not";
  Mend();
  desk.Advance(1500);
  EXPECT_EQ(Message(), "");
  EXPECT_EQ(alerts, 1);
  EXPECT_TRUE(label.accessibleName().startsWith("Link: "));
}

TEST_F(LinkHealth, ThePanelTellsTheRateAndTheFailuresWithoutATransfer) {
  Model.PollEnabled = false;
  desk.Advance(2500);
  desk.board.TakeTraffic();
  EXPECT_EQ(Panel(), "0 transfers/s, no failures");
  desk.Advance(2500);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  Model.PollEnabled = true;
  desk.Advance(3000);
  const int perSecond = static_cast<int>(desk.board.TakeTraffic().size()) / 3;
  EXPECT_NEAR(Panel().section(' ', 0, 0).toInt(), perSecond, perSecond / 4.0);
  EXPECT_TRUE(Panel().endsWith(" transfers/s, no failures"));
  Model.PollEnabled = false;
  Fail(0x88, 0x88);
  chip::ReadMeasurementGroup(1);
  desk.Advance(100);
  EXPECT_TRUE(Panel().endsWith(", 1 failure, 0 s ago")) << "at once: " << Panel().toStdString();
  chip::ReadMeasurementGroup(1);
  desk.Advance(4000);
  EXPECT_EQ(Panel(), "0 transfers/s, 2 failures, the last 3 s ago");
  desk.board.knowsFailures = false;
  desk.Advance(1100);
  EXPECT_EQ(Panel(), "0 transfers/s, failures not known");
  EXPECT_TRUE(Desk::Get<QWidget>(desk.Main(), "lblLink").toolTip().contains("does not tell"));
}

/// What a program logs in ten seconds, and its transfers.
std::pair<std::string, Traffic> Session(const std::function<void(FakeBoard&)>& library,
                                        const std::function<void(FakeBoard&)>& trouble) {
  QTemporaryDir folder;
  Desk desk(Desk::Buses::Smbus);
  library(desk.board);
  desk.Start();
  for (const char* window : {"frmLimits", "frmGraph", "frmDynamicTmin", "frmGPIO"}) desk.Open(window);
  auto& logging = desk.Open("frmLogging");
  Do(logging, "cmdSelectAll");
  const QString path = folder.filePath("log.csv");
  desk.fileDialogs.script.push_back(path);
  Desk::Press(logging, "cmdLogData");
  desk.Advance(2000);
  desk.board.TakeTraffic();
  trouble(desk.board);
  desk.Advance(8000);
  EXPECT_EQ(Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage(), "");
  std::ifstream file(path.toStdString());
  return {std::string(std::istreambuf_iterator<char>(file), {}), desk.board.TakeTraffic()};
}

TEST(LinkHealthWithoutCount, WhatALibraryGivesIsTakenAsItIs) {
  const auto fail = [](FakeBoard& board) { board.smbusFails = ReadsOf(0x80, 0xDF); };
  const auto real = Session([](FakeBoard&) {}, [](FakeBoard& board) { Put(board.Chip(), "80..DF=FF"); });
  ASSERT_GT(real.first.size(), 1000U);
  EXPECT_EQ(Session([](FakeBoard&) {}, fail), real) << "a maker's library, without the entry";
  const auto silent = [](FakeBoard& board) { board.missingEntries.clear(), board.knowsFailures = false; };
  EXPECT_EQ(Session(silent, fail), real) << "an entry that does not know";
}

}  // namespace
}  // namespace zth::testing
