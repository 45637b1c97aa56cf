#include <fstream>

#include <QApplication>
#include <QLabel>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>

#include "chip/ChipState.h"
#include "tests/accessibility/AccessGround.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using chip::Model;

std::function<bool(const std::string&)> ReadsOf(int first, int last) {
  return [first, last](const std::string& transfer) {
    const int reg = std::stoi(transfer.substr(9), nullptr, 16);
    return transfer.starts_with("smb R 2C") && reg >= first && reg <= last;
  };
}

int alerts = 0;

/// The program on SMBus, with a library that reports failures.
class LinkHealth : public ::testing::Test {
 protected:
  LinkHealth() {
    desk.board.missingEntries.clear();
    desk.board.AddSmbusChip(0x2D);
    desk.Start();
    Put(desk.board.Chip(), "88..8F=5E 88=00 8A=00 8C=00 8E=00 AA..AD=80 21..24=00 30..35=00 C0=02");
    desk.Advance(1000);
  }
  void TearDown() override { QAccessible::installUpdateHandler(nullptr); }

  void Fail(int first, int last) { desk.board.smbusFails = ReadsOf(first, last); }
  std::string Message() { return Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage().toStdString(); }
  std::string Panel() { return Desk::Text(desk.Main(), "lblLink").toStdString(); }

  Desk desk{Desk::Buses::Smbus};
};

TEST_F(LinkHealth, AGroupWithOneFailedTransferTakesNoneOfItsValuesAndLogsEmptyFields) {
  Model.PollEnabled = false;
  for (const std::size_t row : {3U, 4U, 11U, 12U, 15U, 16U, 38U, 39U}) Model.LogChannelTable[row].Selected = 1;
  const auto held = [] {
    std::string all(reinterpret_cast<const char*>(&Model.Measurements), sizeof Model.Measurements);
    for (const chip::LogChannel& row : Model.LogChannelTable) all += ' ' + std::to_string(row.Value);
    return all;
  };
  const std::tuple<int, int, const char*> groups[]{{1, 0x8F, "0,,"},
                                                   {2, 0xA9, "0,@,,,"},
                                                   {3, 0xAC, "0,@,@,@,,,"},
                                                   {4, 0x93, "0,@,@,@,@,@,,,"},
                                                   {5, 0xAF, "0,@,@,@,@,@,@,@,@,"},
                                                   {6, 0x46, "0,@,@,@,@,@,@,@,,"}};
  for (const auto& [number, reg, log] : groups) {
    SCOPED_TRACE(number);
    const auto group = static_cast<std::int16_t>(number);
    chip::ReadMeasurementGroup(group);
    const std::string before = held();
    for (std::uint8_t& byte : desk.board.Chip()) byte ^= 0x15;
    Fail(reg, reg);
    desk.board.TakeTraffic();
    chip::ReadMeasurementGroup(group);
    const Traffic failed = desk.board.TakeTraffic();
    EXPECT_EQ(held(), before);
    for (int other = 1; other <= 6; ++other) EXPECT_EQ(chip::IsStale(other), other == number) << other;
    QString line = QString::fromStdString(windows::BuildLogLine());
    EXPECT_EQ(line.count(','), 9);
    EXPECT_TRUE(line.replace(QRegularExpression("[-.0-9]+ ,"), "@,").startsWith(log)) << line.toStdString();
    Fail(0, -1);
    chip::ReadMeasurementGroup(group);
    EXPECT_EQ(desk.board.TakeTraffic(), failed) << "the same transfers, and none more";
    EXPECT_FALSE(chip::IsStale(number));
    EXPECT_NE(held(), before);
  }
}

TEST_F(LinkHealth, EveryWindowOfLiveValuesKeepsAndMarksWhatItCannotRead) {
  const auto sees = [](QWidget& window, const char* control, const char* property) {
    return [&window, control, property] {
      Desk::Get<QWidget>(window, control).setProperty("LabelIndex", control == std::string("Strip2(1)") ? 0 : 1);
      return Desk::Property(window, control, property).toString();
    };
  };
  const auto last = [](QWidget& window, const char* chart, int trace) {
    return [&window, chart, trace] {
      QVariantList points;
      QMetaObject::invokeMethod(&Desk::Get<QWidget>(window, chart), "TracePoints", Q_RETURN_ARG(QVariantList, points),
                                Q_ARG(int, trace));
      return points.isEmpty() ? "none" : points.constLast().toList().at(1).toString();
    };
  };
  auto &graph = desk.Open("frmGraph"), &limits = desk.Open("frmLimits"), &manual = desk.Open("frmManualControl"),
       &heaters = desk.Open("frmHeaters"), &tmin = desk.Open("frmDynamicTmin"), &curve = desk.Open("frmAutoGraph"),
       &gpio = desk.Open("frmGPIO"), &map = desk.Open("frmRegMap");
  const std::tuple<std::function<QString()>, std::string, std::string> table[]{
      {sees(graph, "stpGraph(3)", "Caption"), "Local = 30°C", "Local = N s old"},
      {last(graph, "stpGraph(0)", 3), "30", "nan"},
      {last(graph, "stpGraph(4)", 4), "50", "nan"},
      {last(graph, "stpGraph(5)", 0), "0", "nan"},
      {sees(limits, "ggeTemp", "Caption"), " 30°C", " 30°C, N s old"},
      {sees(limits, "ggeTemp", "Stale"), "false", "true"},
      {sees(limits, "tglTempAlert(0)", "Value"), "true", "true"},
      {sees(limits, "tglTempAlert(1)", "Value"), "false", "false"},
      {sees(limits, "tglTempAlert(1)", "Stale"), "false", "true"},
      {sees(manual, "lblStale", "text"), "", "Duties N s old"},
      {sees(manual, "sldManual(0)", "Value"), "50", "50"},
      {sees(manual, "sldManual(0)", "Stale"), "false", "true"},
      {sees(heaters, "lblTemp(0)", "text"), "Remote1 = 30°C", "Remote1 = 30°C, N s old"},
      {sees(tmin, "Strip2(1)", "Caption"), "Remote2",
       "Remote2: temperature N s old, Tmin and limits N s old, duties N s old"},
      {last(tmin, "Strip2(1)", 0), "30", "nan"},
      {last(curve, "stpGraph", 4), "50", "none"},
      {sees(gpio, "lblStatus(0)", "accessibleDescription"), "", "Old: the last read failed"},
      {[&map] { return map.windowTitle(); }, "Register Map", "Register Map (not read in full)"}};
  for (const bool fails : {false, true, false}) {
    Fail(0, fails ? 0xFF : -1);
    desk.Advance(4000);
    Do(map, "txtReadAddr=2C; cmdRead");
    for (std::size_t row = 0; const auto& [shown, sound, stale] : table) {
      const QString text = shown().replace(QRegularExpression("\\d+ s old"), "N s old");
      EXPECT_EQ(text.toStdString(), fails ? stale : sound) << row;
      ++row;
    }
  }
}

TEST_F(LinkHealth, AWindowThatCouldNotBeReadSaysSoAndItsMasksWriteNothing) {
  Fail(0x30, 0x30);
  auto& limits = desk.Open("frmLimits");
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), Traffic{}) << "0xFF would have masked every channel";
  EXPECT_EQ(limits.windowTitle(), "Limits / Interrupts (not read in full)");
  EXPECT_FALSE(Desk::Get<QWidget>(limits, "fraOrigin").isHidden());
  Fail(0, -1);
  limits.ReadAgain();
  EXPECT_EQ(limits.windowTitle(), "Limits / Interrupts");
  EXPECT_TRUE(Desk::Get<QWidget>(limits, "fraOrigin").isHidden());
}

TEST(LinkHealthAtTheStart, WhatTheProgramCouldNotReadIsSaidAndReadAgainWithF5) {
  constexpr const char* kNotice =
      "The chip's pins, PWM modes or revision could not be read: press F5 to read them again";
  for (const auto& [first, last, told] :
       {std::tuple{0x10, 0x13, "What the pins do could not be read: a transfer failed."},
        {0x23, 0x23, "Which PWMs are in manual mode could not be read: a transfer failed."},
        {0x3F, 0x3F, "The chip's revision could not be read: a transfer failed."}}) {
    SCOPED_TRACE(told);
    Desk desk(Desk::Buses::Smbus);
    desk.board.missingEntries.clear();
    Put(desk.board.smbusChips[0x2C], "10=7E 23=00 3F=12");
    desk.board.smbusFails = ReadsOf(first, last);
    desk.Start();
    desk.Advance(1000);
    const auto message = [&] {
      return Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage().toStdString();
    };
    EXPECT_EQ(message(), kNotice);
    EXPECT_FALSE(Model.PwmManual[3]) << "0xFF would be manual mode";
    EXPECT_NE(Model.ChipRevision, 0xFF);
    QApplication::setActiveWindow(&desk.Main());
    auto& window = desk.Open(first == 0x23 ? "frmManualControl" : "frmLogging");
    EXPECT_TRUE(window.windowTitle().endsWith(" (not read in full)"));
    EXPECT_EQ(Desk::Text(window, "lblOrigin"), told);
    EXPECT_TRUE(Desk::Get<QWidget>(window, "fraOrigin").isVisible());
    // With the window active, with one that reads nothing itself, with none; then well again.
    for (const int round : {0, 1, 2, 3}) {
      const bool fails = round < 3;
      if (round == 1) desk.Open("frmEasySetup");
      if (round == 2) desk.Main().FindWindow("frmEasySetup")->Unload(), window.parentWidget()->showMinimized();
      if (!fails) window.parentWidget()->showNormal(), desk.board.smbusFails = {};
      desk.board.TakeTraffic();
      QTest::keyClick(&desk.Main(), Qt::Key_F5);
      EXPECT_EQ(desk.board.TakeTraffic(), T("R21 R22 R23 R24 R3F R10 R11 R12 R13"));
      desk.Advance(100);
      EXPECT_EQ(message(), fails ? kNotice : "");
      EXPECT_EQ(Desk::Get<QWidget>(window, "fraOrigin").isHidden(), !fails);
    }
    EXPECT_EQ(Model.ChipRevision, 0x12);
  }
}

TEST_F(LinkHealth, TheDemoLiftsAStaleValueNoFurther) {
  windows::Shared.DemoRunning = windows::Shared.DemoThermTripped = true;
  windows::Shared.DemoChip = link::ChipInUse();
  desk.Advance(1500);
  const auto before = Model.Measurements;
  Fail(0, 0xFF);
  desk.Advance(5000);
  EXPECT_EQ(Model.Measurements.Temperature, before.Temperature);
  EXPECT_EQ(Model.Measurements.PolledTmin, before.PolledTmin);
}

TEST_F(LinkHealth, ThreeStaleGroupsInARowRaiseANoticeUntilAllAreWell) {
  QGuiApplicationPrivate::platform_integration->accessibility()->setActive(true);
  alerts = 0;
  QAccessible::installUpdateHandler([](QAccessibleEvent* event) { alerts += event->type() == QAccessible::Alert; });
  const std::string notice = "Readings of 2Ch on SMBus fail: what is grey or has an age is old";
  const std::function<bool(const std::string&)> everything = ReadsOf(0, 0xFF);
  // Which reads fail, for how long, on which chip of the list; then the message, and how often it has been spoken.
  const std::tuple<std::function<bool(const std::string&)>, int, int, std::string, int> steps[]{
      {ReadsOf(0x88, 0xA9), 3000, 0, "",
       0},  // temperatures, tachs and voltages fail, but the duties between them do not
      {everything, 500, 0, notice, 1},
      {ReadsOf(0x88, 0x88), 3000, 0, notice, 1},  // five groups are read well, one is not
      {everything, 1000, 0, notice, 1},
      {everything, 50, 1, "", 1},  // another chip, which has not failed
      {everything, 2000, 1, "", 1},
      {everything, 1000, 0, notice, 2},
      {{}, 1500, 0, "", 2}};
  for (std::size_t step = 0; const auto& [fails, milliseconds, chip, said, spoken] : steps) {
    desk.board.smbusFails = fails;
    Desk::Pick(desk.Main(), "cmbDevices", chip);
    desk.Advance(milliseconds);
    EXPECT_EQ(Message(), said) << step;
    EXPECT_EQ(alerts, spoken) << step;
    const QString name = Desk::Get<QWidget>(desk.Main(), "lblLink").accessibleName();
    EXPECT_TRUE(name.startsWith(QString::fromStdString(said.empty() ? "Link: " : said + ". Link: "))) << step;
    EXPECT_EQ(Desk::Text(desk.Main(), "sbStatusBar(1)"), "Status") << "what is prescribed stands behind it";
    ++step;
  }
}

TEST_F(LinkHealth, ThePanelTellsTheRateAndTheFailuresWithoutATransfer) {
  desk.board.TakeTraffic();
  desk.Advance(3000);
  const int perSecond = static_cast<int>(desk.board.TakeTraffic().size()) / 3;
  EXPECT_NEAR(std::stoi(Panel()), perSecond, perSecond / 4.0);
  Model.PollEnabled = false;
  desk.Advance(2500);
  EXPECT_EQ(Panel(), "0 transfers/s, no failures");
  Fail(0x88, 0x88);
  chip::ReadMeasurementGroup(1);
  desk.Advance(100);
  EXPECT_TRUE(Panel().ends_with(", 1 failure, 0 s ago")) << "at once: " << Panel();
  chip::ReadMeasurementGroup(1);
  desk.Advance(50);
  EXPECT_TRUE(Panel().ends_with(", 1 failure, 0 s ago")) << "a second one so soon waits for its turn: " << Panel();
  desk.board.TakeTraffic();
  desk.Advance(4000);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  EXPECT_EQ(Panel(), "0 transfers/s, 2 failures, the last 3 s ago");
  desk.board.knowsFailures = false;
  desk.Advance(1100);
  EXPECT_EQ(Panel(), "0 transfers/s, failures not known");
}

/// The log of a session with that trouble, and its transfers.
std::pair<std::string, Traffic> Session(bool hasEntry, const std::function<void(FakeBoard&)>& trouble) {
  QTemporaryDir folder;
  Desk desk(Desk::Buses::Smbus);
  if (hasEntry) desk.board.missingEntries.clear();
  desk.board.knowsFailures = false;
  desk.Start();
  for (const char* window : {"frmLimits", "frmGraph", "frmDynamicTmin", "frmGPIO"}) desk.Open(window);
  auto& logging = desk.Open("frmLogging");
  desk.fileDialogs.script.push_back(folder.filePath("log.csv"));
  Do(logging, "cmdSelectAll; cmdLogData");
  desk.Advance(2000);
  desk.board.TakeTraffic();
  trouble(desk.board);
  desk.Advance(8000);
  EXPECT_EQ(Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage(), "");
  std::ifstream file(folder.filePath("log.csv").toStdString());
  return {std::string(std::istreambuf_iterator<char>(file), {}), desk.board.TakeTraffic()};
}

TEST(LinkHealthUnknown, WhatALibraryWithoutACountGivesIsTakenAsItIs) {
  const auto real = Session(false, [](FakeBoard& board) { Put(board.Chip(), "80..DF=FF"); });
  ASSERT_GT(real.first.size(), 1000U);
  for (const bool hasEntry : {false, true}) {
    EXPECT_EQ(Session(hasEntry, [](FakeBoard& board) { board.smbusFails = ReadsOf(0x80, 0xDF); }), real);
  }
}

}  // namespace
}  // namespace zth::testing
