#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <random>

#include <QCheckBox>
#include <QTest>

#include "chip/Measurements.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using chip::LogChannelTable;
using platform::BoxAnswer;
using windows::LogActive;

class LoggingTest : public DataTest {};

TEST_F(LoggingTest, WritesTheFileByteForByte) {
  LogChannelTable[0].Value = 25.25F;
  LogChannelTable[4].Value = 3000;
  StartLog(Path("a.csv"), {4, 0});
  EXPECT_EQ(Status(), "Logging Enabled");
  EXPECT_EQ(Content(Path("a.csv")), "\r\nZTH4718 Log File\r\n\r\nTime ,Local Temp ,Tach1 ,\r\n");
  Log(1);
  LogChannelTable[4].Value = 3012;
  Log(1);
  LogChannelTable[0].Value = 25.5F;
  Log(1);
  EXPECT_EQ(Content(Path("a.csv")),
            "\r\nZTH4718 Log File\r\n\r\nTime ,Local Temp ,Tach1 ,\r\n"
            "0,25.25 ,3000 ,\r\n.1,25.25 ,3012 ,\r\n.2,25.5 ,3012 ,\r\n");
  EXPECT_EQ(windows::LogSampleCount, 3);
}

TEST_F(LoggingTest, EnterStartsIt) {
  windows::ChildWindow& window = Logging();
  Desk::Check(window, "chkLog(0)", true);
  desk.fileDialogs.script.push_back(Path("a.csv"));
  QTest::keyClick(&window, Qt::Key_Return);
  EXPECT_EQ(Status(), "Logging Enabled");
}

TEST_F(LoggingTest, HeadsTheColumnsInTheOrderOfTheChannels) {
  Desk::Press(Logging(), "cmdSelectAll");
  desk.fileDialogs.script.push_back(Path("all.csv"));
  Desk::Press(Logging(), "cmdLogData");
  for (int i = 0; i < chip::kLogChannels; ++i)
    LogChannelTable[static_cast<std::size_t>(i)].Value = static_cast<float>(i);
  Log(1);
  std::string expected =
      "\r\nZTH4718 Log File\r\n\r\n"
      "Time ,Local Temp ,Remote1 Temp ,Remote2 Temp ,Remote3 Temp ,Tach1 ,Tach2 ,Tach3 ,Tach4 ,Tach5 ,Tach6 ,Tach7 ,"
      "Tach8 ,PWM1% ,PWM2% ,PWM3% ,PWM4% ,12V1 ,12V2 ,3.3V-Pin13 ,2.5V-Pin15 ,1.8V-Pin15 ,1.25V-Pin20 ,0.9V-Pin20 ,5V ,"
      "12V3 ,Vccp1 ,1.5V-Pin23 ,1.8-Pin23 ,2.5V-Pin23 ,Vccp2 ,1.5V-Pin24 ,1.8V-Pin24 ,2.5V-Pin24 ,1.2V-Pin25 ,"
      "3.3V-Pin25 ,1.2V-Pin26 ,VBatt ,1.5V2 ,1.5V1 ,Local Tmin ,Remote1 Tmin ,Remote2 Tmin ,Remote3 Tmin ,"
      "Remote1 Op-Point ,Remote2 Op-Point ,\r\n0,";
  for (int i = 0; i < 45; ++i) expected += std::to_string(i) + " ,";
  EXPECT_EQ(Content(Path("all.csv")), expected + "\r\n");
}

TEST_F(LoggingTest, GoesOnWhileTheWindowIsClosedAndOpensAsItStands) {
  StartLog(Path("a.csv"), {1, 44}, "250");
  const QPointer<QWidget> first(&Logging());
  Desk::Press(Logging(), "cmdClose");
  Desk::Settle();
  EXPECT_TRUE(first.isNull());
  Log(2);
  windows::ChildWindow& again = Logging();
  EXPECT_EQ(Desk::Text(again, "cmdLogData").remove('&'), "Stop logging...");
  EXPECT_EQ(Desk::Text(again, "txtLogInt"), "250");
  for (int i = 0; i < chip::kLogChannels; ++i) {
    EXPECT_EQ(Desk::Checked(again, QString("chkLog(%1)").arg(i)), i == 1 || i == 44) << i;
  }
  // Neither is read during a log.
  Desk::Press(again, "cmdSelectAll");
  Desk::Type(again, "txtLogInt", "10");
  Log(1);
  Desk::Press(again, "cmdLogData");
  EXPECT_EQ(Desk::Text(again, "cmdLogData").remove('&'), "Start Logging");
  EXPECT_EQ(Status(), "Ready");
  desk.Advance(2000);
  EXPECT_EQ(
      Content(Path("a.csv")),
      "\r\nZTH4718 Log File\r\n\r\nTime ,Remote1 Temp ,Remote2 Op-Point ,\r\n0,0 ,0 ,\r\n.25,0 ,0 ,\r\n.5,0 ,0 ,\r\n");
}

TEST_F(LoggingTest, ExtendsAFileAndStartsTheTimeAnew) {
  std::ofstream(Path("a.csv").toStdString()) << "mine";
  StartLog(Path("a.csv"), {0});
  Log(2);
  Desk::Press(Logging(), "cmdLogData");
  StartLog(Path("a.csv"), {2});
  Log(1);
  EXPECT_EQ(Content(Path("a.csv")),
            "mine\r\nZTH4718 Log File\r\n\r\nTime ,Local Temp ,\r\n0,0 ,\r\n.1,0 ,\r\n"
            "\r\nZTH4718 Log File\r\n\r\nTime ,Remote2 Temp ,\r\n0,0 ,\r\n");
}

TEST_F(LoggingTest, TakesThePeriodFromTheLeadingNumber) {
  struct Row {
    const char* text;
    int period;
    const char* second;  ///< the time of the second line
  };
  for (const Row row : {Row{"", 0, "0"}, Row{"fast", 0, "0"}, Row{"32.5ms", 32, ".032"}, Row{"33.5", 34, ".034"},
                        Row{"7", 7, ".007"}, Row{"100000", 100000, "100"}, Row{"1e99", 2147483647, "2147483.647"}}) {
    StartLog(Path("p.csv"), {0}, row.text);
    EXPECT_EQ(windows::LogPeriodMs, row.period) << row.text;
    windows::LogSampleCount = 1;
    EXPECT_EQ(windows::BuildLogLine(), std::string(row.second) + ",0 ,") << row.text;
    Desk::Press(Logging(), "cmdLogData");
  }
}

TEST_F(LoggingTest, KeepsPaceWithTheTicks) {
  // Period 0: a line a tick. 100: the tick at 100 ms comes a moment too early for the rule, the next one takes it.
  for (const auto& [period, lines] : {std::pair{"0", 30}, std::pair{"10", 30}, std::pair{"100", 10}}) {
    StartLog(Path(QString("%1.csv").arg(period)), {0}, period);
    desk.Advance(1500);
    Desk::Press(Logging(), "cmdLogData");
    EXPECT_NEAR(static_cast<double>(windows::LogSampleCount), lines, 1) << period;
    const std::string content = Content(Path(QString("%1.csv").arg(period)));
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 4 + windows::LogSampleCount);
  }
}

TEST_F(LoggingTest, TheTimeNeverWraps) {
  LogChannelTable[0].Selected = 1;
  struct Row {
    std::int64_t count;
    std::int32_t period;
    const char* time;
  };
  for (const Row row : {Row{0, 100, "0"}, Row{1, 1, ".001"}, Row{7, 100, ".7"}, Row{2147483647, 100, "214748364.7"},
                        Row{2147483648, 100, "214748364.8"}, Row{30000001, 2147, "64410002.147"},
                        Row{5000000000, 1000, "5000000000"}, Row{3, -250, "-.75"}}) {
    windows::LogSampleCount = row.count;
    windows::LogPeriodMs = row.period;
    EXPECT_EQ(windows::BuildLogLine(), std::string(row.time) + ",0 ,");
  }
}

TEST_F(LoggingTest, TicksOnlyWhatIsAvailable) {
  Logging().Unload();
  Desk::Settle();
  LogChannelTable[3].Available = 0;
  LogChannelTable[3].Selected = 1;
  LogChannelTable[5].Selected = 1;
  windows::ChildWindow& window = Logging();
  auto& gone = Desk::Get<QCheckBox>(window, "chkLog(3)");
  EXPECT_FALSE(gone.isEnabled());
  EXPECT_FALSE(gone.isChecked());
  EXPECT_TRUE(Desk::Checked(window, "chkLog(5)"));
  Desk::Press(window, "cmdSelectAll");
  EXPECT_FALSE(gone.isChecked());
  EXPECT_TRUE(Desk::Checked(window, "chkLog(44)"));
  // A channel that goes while it is logged stays in the log until the next start.
  EXPECT_EQ(windows::BuildLogLine(), "0,0 ,0 ,");
  Desk::Press(window, "cmdDeselectAll");
  Desk::Check(window, "chkLog(6)", true);
  desk.fileDialogs.script.push_back(Path("a.csv"));
  Desk::Press(window, "cmdLogData");
  EXPECT_EQ(LogChannelTable[3].Selected, 0);
  EXPECT_EQ(LogChannelTable[5].Selected, 0);
  EXPECT_EQ(LogChannelTable[6].Selected, 1);
}

TEST_F(LoggingTest, StartsOnlyWithANameASelectionAndAFile) {
  windows::ChildWindow& window = Logging();
  Desk::Check(window, "chkLog(0)", true);
  const auto expectOff = [&](const char* why) {
    EXPECT_FALSE(LogActive) << why;
    EXPECT_EQ(Status(), "Status") << why;
    EXPECT_EQ(Desk::Text(window, "cmdLogData").remove('&'), "Start Logging") << why;
  };
  desk.fileDialogs.script.push_back("");
  Desk::Press(window, "cmdLogData");
  expectOff("cancelled");
  EXPECT_EQ(LogChannelTable[0].Selected, 0);
  const platform::FileQuestion& question = desk.fileDialogs.shown.at(0);
  EXPECT_EQ(question.kind, platform::FileQuestion::Kind::Save);
  EXPECT_EQ(question.filter, "Log Files (*.csv)|*.csv");
  EXPECT_EQ(question.folder, desk.process.folder);
  EXPECT_TRUE(question.appends);

  desk.fileDialogs.script.push_back(Path("no folder") + "/a.csv");
  Desk::Press(window, "cmdLogData");
  expectOff("no folder");
  EXPECT_EQ(LogChannelTable[0].Selected, 1) << "the selection is stored before the file is opened";

  desk.files.space = 30;  // less than the head
  desk.fileDialogs.script.push_back(Path("full.csv"));
  Desk::Press(window, "cmdLogData");
  expectOff("full disk");
  EXPECT_EQ(Content(Path("full.csv")), "") << "no piece of a head stays";
  desk.files.space.reset();

  Desk::Press(window, "cmdDeselectAll");
  desk.fileDialogs.script.push_back(Path("none.csv"));
  desk.prompts.script.push_back(BoxAnswer::Ok);
  Desk::Press(window, "cmdLogData");
  expectOff("nothing selected");
  EXPECT_EQ(desk.prompts.shown.at(0).text, "At least one item must be selected for logging");
  EXPECT_EQ(desk.prompts.shown.at(0).icon, platform::BoxIcon::Warning);
  EXPECT_FALSE(QFile::exists(Path("none.csv")));
  EXPECT_EQ(LogChannelTable[0].Selected, 0) << "the empty selection is stored";
}

/// General format, worked out the long way: the seven digits by the C library, plain when they take at most seven
/// places on their side of the point.
std::string LongWay(float value) {
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.6E", static_cast<double>(value));
  const double seven = std::strtod(digits, nullptr);
  if (seven == 0) return "0";
  for (int places = 0; places <= 7 && std::fabs(seven) < 1e7; ++places) {
    char plain[64];
    std::snprintf(plain, sizeof plain, "%.*f", places, seven);
    if (std::strtod(plain, nullptr) != seven) continue;
    std::string text = plain;
    const std::size_t zero = text.find("0.");
    if (zero == 0 || (zero == 1 && text[0] == '-')) text.erase(zero, 1);
    return text;
  }
  std::string text = digits;
  const std::size_t exponent = text.find('E');
  std::size_t end = exponent;
  while (text[end - 1] == '0') --end;
  if (text[end - 1] == '.') --end;
  return text.erase(end, exponent - end);
}

TEST_F(LoggingTest, WritesAHundredThousandRandomNumbersInGeneralFormat) {
  LogChannelTable[0].Selected = 1;
  std::mt19937 random(4718);
  const auto expectLine = [](float value) {
    LogChannelTable[0].Value = value;
    ASSERT_EQ(windows::BuildLogLine(), "0," + LongWay(value) + " ,") << std::hexfloat << value;
  };
  for (int i = 0; i < 50'000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (std::isfinite(value)) expectLine(value);
    // Values as the chip gives them: quarters of a degree, hundredths of a volt, whole revolutions.
    const auto raw = static_cast<int>(random() % 200'001);
    const float step = i % 3 == 0 ? 0.25F : (i % 3 == 1 ? 0.01F : 1.0F);
    expectLine(std::round(static_cast<float>(raw - 1000)) * step);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace zth::testing
