#include <fstream>

#include <QTest>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using chip::Model;
using platform::BoxAnswer;
using windows::Shared;

class LoggingTest : public DataTest {};

TEST_F(LoggingTest, WritesTheFileByteForByte) {
  Model.LogChannelTable[0].Value = 25.25F;
  Model.LogChannelTable[4].Value = 3000;
  Do(Logging(), "chkLog(0)=1; chkLog(4)=1; txtLogInt=100");
  desk.fileDialogs.script.push_back(Path("a.csv"));
  Desk::Press(Logging(), "cmdLogData");
  EXPECT_EQ(Status(), "Logging Enabled");
  const std::string head = LogHead("Local Temp ,Tach1 ,");
  EXPECT_EQ(Content(Path("a.csv")), head);
  Log(1);
  Model.LogChannelTable[4].Value = 3012;
  Log(1);
  Model.LogChannelTable[0].Value = 25.5F;
  Log(1);
  EXPECT_EQ(Content(Path("a.csv")), head + "0,25.25 ,3000 ,\r\n.1,25.25 ,3012 ,\r\n.2,25.5 ,3012 ,\r\n");
  EXPECT_EQ(windows::Shared.LogSampleCount, 3);
  EXPECT_EQ(desk.files.appends, 4) << "the head and each line as it comes and in one piece: a kill tears none";
}

TEST_F(LoggingTest, ContinuesWhileTheWindowIsClosedAndTheWindowReopensInTheSameState) {
  StartLog(Path("a.csv"), {1, 44}, "250");
  Do(Logging(), "cmdClose");
  Desk::Settle();
  EXPECT_EQ(desk.Main().FindWindow("frmLogging"), nullptr);
  Log(2);
  windows::ChildWindow& again = Logging();
  EXPECT_EQ(Held(again, "cmdLogData txtLogInt"), "Stop logging...|250");
  for (int i = 0; i < chip::kLogChannels; ++i) {
    EXPECT_EQ(Desk::Checked(again, QString("chkLog(%1)").arg(i)), i == 1 || i == 44) << i;
  }
  Do(again, "cmdSelectAll; txtLogInt=10");  // neither is read during a log
  Log(1);
  Do(again, "cmdLogData");
  EXPECT_EQ(Held(again, "cmdLogData"), "Start Logging");
  EXPECT_EQ(Status(), "Ready");
  desk.Advance(2000);
  EXPECT_EQ(Content(Path("a.csv")),
            LogHead("Remote1 Temp ,Remote2 Op-Point ,") + "0,0 ,0 ,\r\n.25,0 ,0 ,\r\n.5,0 ,0 ,\r\n");
}

TEST_F(LoggingTest, ExtendsAFileAndRestartsTheTime) {
  std::ofstream(Path("a.csv").toStdString()) << "mine";
  StartLog(Path("a.csv"), {0});
  Log(2);
  Do(Logging(), "cmdLogData");
  StartLog(Path("a.csv"), {2});
  Log(1);
  EXPECT_EQ(Content(Path("a.csv")),
            "mine" + LogHead("Local Temp ,") + "0,0 ,\r\n.1,0 ,\r\n" + LogHead("Remote2 Temp ,") + "0,0 ,\r\n");
}

TEST_F(LoggingTest, TakesThePeriodFromTheLeadingNumber) {
  const std::pair<const char*, int> rows[]{{"", 0},  {"fast", 0},        {"32.5ms", 32},      {"33.5", 34},
                                           {"7", 7}, {"100000", 100000}, {"1e99", 2147483647}};
  for (const auto& [text, period] : rows) {
    StartLog(Path("p.csv"), {0}, text);
    EXPECT_EQ(windows::Shared.LogPeriodMs, period) << text;
    Do(Logging(), "cmdLogData");
  }
}

TEST_F(LoggingTest, KeepsPaceWithTheTicks) {
  // Period 0: a line per tick. 100: the tick at 100 ms is slightly too early for the rule, the next one writes the
  // line.
  for (const auto& [period, lines, pace] :
       {std::tuple{"0", 30, "true pace: 50 ms"}, {"10", 30, "true pace: 50 ms"}, {"100", 10, "true pace: 150 ms"}}) {
    StartLog(Path(period), {0}, period);
    desk.Advance(1500);
    EXPECT_EQ(Held(Logging(), "lblPace"), pace) << period;
    Do(Logging(), "cmdLogData");
    EXPECT_EQ(Held(Logging(), "lblPace"), "") << "no log has no pace";
    EXPECT_NEAR(static_cast<double>(windows::Shared.LogSampleCount), lines, 1) << period;
  }
  // It is shown only if it differs.
  StartLog(Path("a.csv"), {0}, "2000");
  Log(2);
  desk.Advance(5000);
  EXPECT_EQ(Held(Logging(), "lblPace"), "") << "two lines and one make no pace yet";
  Log(20);
  EXPECT_EQ(Held(Logging(), "lblPace"), "") << "a tick of 2050 ms is no difference to speak of";
}

TEST_F(LoggingTest, TheTimeNeverWraps) {
  Model.LogChannelTable[0].Selected = 1;
  const std::tuple<std::int64_t, int, const char*> rows[]{{0LL, 100, "0,0 ,"},
                                                          {1LL, 1, ".001,0 ,"},
                                                          {7LL, 100, ".7,0 ,"},
                                                          {2147483647LL, 100, "214748364.7,0 ,"},
                                                          {2147483648LL, 100, "214748364.8,0 ,"},
                                                          {30000001LL, 2147, "64410002.147,0 ,"},
                                                          {5000000000LL, 1000, "5000000000,0 ,"},
                                                          {3LL, -250, "-.75,0 ,"}};
  for (const auto& [count, period, line] : rows) {
    windows::Shared.LogSampleCount = count;
    windows::Shared.LogPeriodMs = period;
    EXPECT_EQ(windows::BuildLogLine(), line);
  }
}

TEST_F(LoggingTest, TicksOnlyWhatIsAvailable) {
  Model.LogChannelTable[3].Available = 0;
  Model.LogChannelTable[3].Selected = Model.LogChannelTable[5].Selected = 1;
  windows::ChildWindow& window = Logging();
  EXPECT_FALSE(Desk::Get<QWidget>(window, "chkLog(3)").isEnabled());
  Do(window, "cmdSelectAll");
  EXPECT_EQ(Held(window, "chkLog(3) chkLog(5) chkLog(44)"), "0|1|1");
  // A channel that disappears while it is logged stays in the log until the next start.
  EXPECT_EQ(windows::BuildLogLine(), "0,0 ,0 ,");
  StartLog(Path("a.csv"), {6});
  EXPECT_EQ(Model.LogChannelTable[3].Selected + Model.LogChannelTable[5].Selected, 0);
  EXPECT_EQ(Model.LogChannelTable[6].Selected, 1);
}

TEST_F(LoggingTest, StartsOnlyWithANameASelectionAndAFile) {
  Do(Logging(), "chkLog(0)=1");
  const auto expectOff = [&](const QString& path, float selected, const char* why) {
    PressLog(path);
    EXPECT_FALSE(Shared.LogActive) << why;
    EXPECT_EQ(Status(), "Status") << why;
    EXPECT_EQ(Held(Logging(), "cmdLogData"), "Start Logging") << why;
    EXPECT_EQ(Model.LogChannelTable[0].Selected, selected) << why;
  };
  expectOff("", 0, "cancelled");
  const platform::FileQuestion& question = desk.fileDialogs.shown.at(0);
  EXPECT_EQ(question.kind, platform::FileQuestion::Kind::Save);
  EXPECT_EQ(question.filter, "Log Files (*.csv)|*.csv");
  EXPECT_EQ(question.folder, desk.process.folder);
  EXPECT_TRUE(question.appends);

  expectOff(Path("no folder") + "/a.csv", 1, "no folder; the selection is stored before the file is opened");
  desk.files.space = 30;  // less than the header
  expectOff(Path("full.csv"), 1, "full disk");
  EXPECT_EQ(Content(Path("full.csv")), "") << "no piece of a head stays";
  desk.files.space.reset();

  Do(Logging(), "cmdDeselectAll");
  desk.prompts.script.push_back(BoxAnswer::Ok);
  expectOff(Path("none.csv"), 0, "nothing selected, which is stored");
  EXPECT_EQ(desk.prompts.shown.at(0).text, "At least one item must be selected for logging");
  EXPECT_EQ(desk.prompts.shown.at(0).icon, platform::BoxIcon::Warning);
  EXPECT_FALSE(QFile::exists(Path("none.csv")));
}

}  // namespace
}  // namespace zth::testing
