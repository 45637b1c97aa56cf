#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "chip/ChipState.h"
#include "chip/RegisterNames.h"
#include "command/Commands.h"
#include "command/Failure.h"
#include "link/Declarations.h"
#include "tasks/TasksState.h"
#include "tests/support/SimulatedDesk.h"

namespace zth::testing {
namespace {

/// The command on the simulated board, in virtual time.
struct Measuring {
  explicit Measuring(const std::string& settings = "") : sim(settings) {}
  ~Measuring() { Forget(); }
  Measuring(const Measuring&) = delete;
  Measuring& operator=(const Measuring&) = delete;

  static void Forget() {
    link::Bus = {};
    chip::Model = {};
    tasks::Work = {};
  }
  int Run(const std::vector<std::string>& arguments) {
    Forget();
    return command::Run(
        arguments, sim.desk.services,
        {[this](std::string_view text) { out += text; }, [this](std::string_view text) { error += text; }});
  }

  SimulatedDesk sim;
  std::string out;
  std::string error;
};

TEST(CharacteriseCommand, TellsWhatItHasMeasuredAndPutsEverythingBack) {
  Measuring measuring;
  EXPECT_EQ(measuring.Run({"characterise", "all", "--pwm", "1", "--pulses", "2", "--step", "20", "--duties", "100,50",
                           "--heat", "80", "--watts", "6", "--keep", "55C", "--limit", "100°C"}),
            command::kDone)
      << measuring.error;
  for (const char* const text : {"PWM1 Tach1: Turns from 40 % and stops at ", "PWM1 Tach5: ", "Heat at 100 %: ", "K/W",
                                 "Remote 1 Tmin = ", "Controller: With the proposal", "  Heater 80 %: "}) {
    EXPECT_NE(measuring.out.find(text), std::string::npos) << text << "\n" << measuring.out;
  }
  EXPECT_NE(measuring.error.find("s left: Fans: 80 % on the way down\n"), std::string::npos) << measuring.error;
  EXPECT_TRUE(measuring.error.ends_with("All was measured. The board is as it was found\n")) << measuring.error;
  EXPECT_EQ(measuring.sim.Register("PWM1 Config"_reg), 0x11);
  EXPECT_EQ(measuring.sim.Register("PWM1 Min"_reg), 0x80);
}

TEST(CharacteriseCommand, JsonHasAnObjectForEachResult) {
  Measuring measuring;
  EXPECT_EQ(measuring.Run({"--json", "--quiet", "characterise", "--pwm", "2", "--step", "50"}), command::kDone);
  EXPECT_EQ(measuring.error, "");
  const QStringList lines = QString::fromStdString(measuring.out).split('\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 2);
  const QJsonObject tach = QJsonDocument::fromJson(lines[0].toUtf8()).object();
  EXPECT_EQ(tach["tach"].toInt(), 2);
  EXPECT_NEAR(tach["start %"].toDouble(), 50, 0.2);
  EXPECT_NEAR(tach["time constant s"].toDouble(), 0.8, 0.04);
}

TEST(CharacteriseCommand, WritesItsReportAndNoneOver) {
  Measuring measuring;
  const QTemporaryDir folder;
  const QString out = folder.filePath("a/b");
  const std::vector<std::string> arguments{"characterise", "--pwm", "1", "--step", "50", "--out", out.toStdString()};
  EXPECT_EQ(measuring.Run(arguments), command::kDone) << measuring.error;
  const std::pair<const char*, const char*> files[] = {
      {"characterise.html", "</html>"}, {"characterise.csv", "\r\n"}, {"characterise.json", "\"points\""}};
  for (const auto& [name, holds] : files) {
    const QByteArray text = measuring.sim.desk.files.Read(out + "/" + name, 1 << 22).value_or(QByteArray());
    EXPECT_TRUE(text.contains(holds)) << name << " " << text.left(200).toStdString();
  }
  measuring.sim.requests.clear();
  EXPECT_EQ(measuring.Run(arguments), command::kUsage);
  EXPECT_NE(measuring.error.find("holds a report already"), std::string::npos) << measuring.error;
  EXPECT_TRUE(measuring.sim.requests.empty());
}

TEST(CharacteriseCommand, ASignalStillPutsEverythingBack) {
  Measuring measuring;
  int pumps = 0;
  measuring.sim.desk.events.onPump = [&] {
    if (++pumps == 600) measuring.sim.desk.process.orders.end();
  };
  EXPECT_EQ(measuring.Run({"characterise", "heat", "--quiet"}), command::kEnded);
  EXPECT_NE(measuring.error.find("Cancelled. The board is as it was found"), std::string::npos) << measuring.error;
  EXPECT_EQ(measuring.sim.Register("PWM3 Config"_reg), 0x51);
  EXPECT_EQ(measuring.sim.usb.TheBus().First()->HeaterState(1), 0);
}

TEST(CharacteriseCommand, SaysHowElseItEnded) {
  const struct {
    const char* scenario;
    std::vector<std::string> arguments;
    int status;
    const char* says;
  } kCases[] = {
      {"fault at 40 adapter unplugged", {"characterise"}, command::kLinkFailed, "PWM1 Config (21h) was 11h, set to "},
      {"fault at 40 ambient at 80 degrees",
       {"characterise", "--limit", "60C", "--keep", "50C"},
       command::kDiffers,
       "reached"},
      {"", {"characterise", "--most", "60s"}, command::kDiffers, "time"},
      {"", {"--device", "2c@smbus", "characterise", "heat"}, command::kUsage, "USB only"},
      {"", {"characterise", "--pwm", "1,"}, command::kUsage, "no list of numbers"},
      {"", {"characterise", "--pwm", "7"}, command::kUsage, "1 to 4"},
      {"", {"characterise", "--keep", "warm"}, command::kUsage, "no temperature"},
      {"", {"characterise", "noise"}, command::kUsage, "Give fans, heat"},
      {"", {"characterise", "--step", "60"}, command::kUsage, "from 1 to 50"},
  };
  for (const auto& [scenario, arguments, status, says] : kCases) {
    Measuring measuring(scenario);
    EXPECT_EQ(measuring.Run(arguments), status) << measuring.error;
    EXPECT_NE(measuring.error.find(says), std::string::npos) << measuring.error;
  }
}

}  // namespace
}  // namespace zth::testing
