#include <string>
#include <vector>

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include "chip/ChannelNames.h"
#include "link/USBStuff.h"
#include "tests/command/CommandGround.h"

namespace zth::testing {
namespace {

TEST_F(CommandTest, StartsWithTheTransfersAndTheWaitsOfTheProgram) {
  EXPECT_EQ(Run({"find"}), command::kDone);
  EXPECT_EQ(out, "58h on USB\n2Ch on SMBus\n");
  EXPECT_EQ(desk.clock.waitedMs, 5000 + 200 + 1000 + 1000);
  const Traffic found = traffic;
  Forget();
  ASSERT_FALSE(desk.RunMain());
  Traffic program = desk.board.TakeTraffic();
  ASSERT_GT(program.size(), found.size());
  program.resize(found.size());
  EXPECT_EQ(found, program);
}

TEST_F(CommandTest, ReadsWhatIsAskedAndNothingElse) {
  auto& chip = desk.board.usbChips[0x58];
  Put(chip, "21=51 8A=80 8B=5A 9A=10 9B=04 AB=80 8F=60");
  const struct {
    std::vector<std::string> what;
    std::string sent;
    std::string shown;
  } kCases[] = {
      {{"21h"}, "R21", "PWM1 Config (21h) = 51h: Bhvr = 2, Inv = 1, Slow = 0, Spin = 1\n"},
      {{"0x21", "pwm1_config"},
       "R21 R21",
       "PWM1 Config (21h) = 51h: Bhvr = 2, Inv = 1, Slow = 0, Spin = 1\n"
       "PWM1 Config (21h) = 51h: Bhvr = 2, Inv = 1, Slow = 0, Spin = 1\n"},
      {{"PWM1_Config.Bhvr", "21h.7:5", "21h.0"},
       "R21 R21 R21",
       "PWM1 Config.Bhvr = 2 (21h = 51h)\nPWM1 Config.7:5 = 2 (21h = 51h)\nPWM1 Config.0 = 1 (21h = 51h)\n"},
      {{"Remote1"}, "B88+8", "Remote1 Temp = 26.5 °C (raw 5A80h)\n"},
      {{"Tach2"}, "B98+8 BA2+8", "Tach2 = 5192 rpm (raw 0410h)\n"},
      {{"PWM2%", "Remote1", "local"},
       "R3F BAA+4 B88+8",
       "PWM2% = 50 % (raw 80h)\nRemote1 Temp = 26.5 °C (raw 5A80h)\nLocal Temp = -64 °C (raw 00h)\n"},
      {{"1.25V-Pin20"}, "B8B+1 B8F+8 BA3+7", "1.25V-Pin20 = 0.62 V (raw 60h)\n"},
      {{"tmin"},
       "B10+4 B5A+2 B5C+4 B49+2 B45+2",
       "Local Tmin = 90 °C (raw 9Ah)\nRemote1 Tmin = 90 °C (raw 9Ah)\nRemote2 Tmin = 90 °C (raw 9Ah)\n"
       "Remote3 Tmin = 90 °C (raw 9Ah)\nRemote1 Op-Point = 100 °C (raw A4h)\nRemote2 Op-Point = 100 °C (raw A4h)\n"},
  };
  for (const auto& [what, sent, shown] : kCases) {
    std::vector<std::string> arguments{"read"};
    arguments.insert(arguments.end(), what.begin(), what.end());
    const Traffic read = Sent(arguments);
    EXPECT_EQ(read, Usb(sent)) << what.front();
    EXPECT_EQ(out, shown);
    EXPECT_EQ(error, "");
  }
}

TEST_F(CommandTest, EachReadingIsFoundByItsName) {
  for (const char* const name : chip::kLogCaptions) {
    EXPECT_EQ(Run({"read", name}), command::kDone) << name << ": " << error;
  }
  // A pin without a fan or a voltage is left out of its group.
  Put(desk.board.usbChips[0x58], "10=00");
  EXPECT_EQ(Run({"read", "fans"}), command::kDone);
  EXPECT_EQ(out.find("Tach1 "), std::string::npos);
}

TEST_F(CommandTest, JsonHasAnObjectALineWithUnits) {
  EXPECT_EQ(Run({"--json", "read", "Remote1", "21h", "21h.Bhvr"}), command::kDone);
  const QStringList lines = QString::fromStdString(out).split('\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 3);
  std::vector<QJsonObject> objects;
  for (const QString& line : lines) objects.push_back(QJsonDocument::fromJson(line.toUtf8()).object());
  EXPECT_EQ(objects[0]["unit"].toString(), "°C");
  EXPECT_EQ(objects[0]["value"].toDouble(), -64);
  EXPECT_EQ(objects[1]["raw"].toInt(), 0x11);
  EXPECT_EQ(objects[2]["bits"].toString(), "7:5");
}

TEST_F(CommandTest, TakesTheChipThatIsNamed) {
  EXPECT_EQ(Sent({"--device", "2c@smbus", "read", "21h"}), Traffic{"smb R 2C:21"});
  EXPECT_EQ(Run({"--device", "5a@usb", "read", "21h"}), command::kNoHardware);
  EXPECT_EQ(error, "zth4718: There is no chip at 5Ah on USB. Found: 58h on USB, 2Ch on SMBus.\n");
}

TEST_F(CommandTest, WritesAsTheWindowsDoAndSaysItBefore) {
  auto& chip = desk.board.usbChips[0x58];
  EXPECT_EQ(Sent({"write", "28h=200", "21h.Bhvr=2"}), Usb("W28=C8 R21 W21=51 R21"));
  EXPECT_EQ(chip[0x21], 0x51);
  EXPECT_EQ(Sent({"write", "28h=0x40", "--verify"}), Usb("W28=40 R28"));
  // What a pin's register brings with it is the program's own.
  const Traffic pins = Sent({"write", "10h=7Fh"});
  Forget();
  desk.Start();
  link::WriteRegisterValue(0x58, 0x10, 0x7F);
  EXPECT_EQ(pins, desk.board.TakeTraffic());

  EXPECT_EQ(Run({"write", "28h=200", "21h.Bhvr=2", "--dry-run"}), command::kDone);
  EXPECT_EQ(out,
            "write 28h = C8h (PWM1 Min)\nread 21h (PWM1 Config)\nwrite 21h as read, with bits 7:5 = 2\nread 21h\n");
  EXPECT_EQ(traffic, Traffic{});
}

TEST_F(CommandTest, TellsWhatTheChipHasNotTaken) {
  desk.board.onTransfer = [this] { desk.board.usbChips[0x58][0x28] = 0x80; };
  EXPECT_EQ(Run({"write", "28h=0x40", "--verify"}), command::kNotVerified);
  EXPECT_NE(error.find("PWM1 Min (28h) holds 80h"), std::string::npos) << error;
}

TEST_F(CommandTest, SavesAndRecallsWithTheTransfersAndTheFileOfTheWindow) {
  Put(desk.board.usbChips[0x58], "21=51 5C=A0");
  const Traffic dumped = Sent({"dump", "--comment", "as found"});
  const std::string dump = out;
  const std::string file = File("a.sav", dump);
  const Traffic applied = Sent({"apply", file});
  Forget();
  desk.Start();
  auto& window = desk.Open("frmSave");
  desk.board.TakeTraffic();
  Desk::Type(window, "txtComment", "as found");
  desk.fileDialogs.script.push_back(QString::fromStdString(Path("b.sav")));
  Desk::Press(window, "cmdsave");
  EXPECT_EQ(dumped, desk.board.TakeTraffic());
  const std::string saved = Text(Path("b.sav"));
  EXPECT_EQ(dump.substr(dump.find("Comment")), saved.substr(saved.find("Comment")));
  auto& again = desk.Open("frmSave");
  desk.board.TakeTraffic();
  desk.fileDialogs.script.push_back(QString::fromStdString(file));
  Desk::Press(again, "cmdRecall");
  EXPECT_EQ(Writes(applied), Writes(desk.board.TakeTraffic()));
}

TEST_F(CommandTest, TellsHowConfigurationsDiffer) {
  EXPECT_EQ(Run({"diff", "default"}), command::kDone) << out;
  EXPECT_EQ(Run({"dump"}), command::kDone);
  const std::string file = File("a.sav", out);
  Put(desk.board.usbChips[0x58], "21=51 28=40");
  EXPECT_EQ(Run({"diff", file, "chip"}), command::kDiffers);
  EXPECT_EQ(out, "PWM1 Config (21h): Bhvr 0 -> 2\nPWM1 Min (28h): 80h -> 40h\n");
  EXPECT_EQ(error, "zth4718: 2 registers differ.\n");
  EXPECT_EQ(Run({"diff", file, "default"}), command::kDone);
}

TEST_F(CommandTest, ExportsWhatADiffReadsAgain) {
  Put(desk.board.usbChips[0x58], "21=51 28=40");
  for (const char* const form : {"saved", "c", "i2cset", "csv"}) {
    const Traffic sent = Sent({"export", "--as", form, "--comment", "as found"});
    EXPECT_EQ(Writes(sent), Traffic{});
    EXPECT_EQ(out.find("as found") == std::string::npos, std::string(form) == "csv") << form;
    const std::string file = File("exported", out);
    EXPECT_EQ(Run({"diff", file}), command::kDone) << form << out << error;
  }
}

TEST_F(CommandTest, WatchesAndLogsAtItsPace) {
  EXPECT_EQ(Sent({"watch", "Remote1", "--interval", "2s", "--for", "4s"}), Usb("B88+8 B88+8 B88+8"));
  EXPECT_NE(out.find("  Remote1 Temp -64 °C\n"), std::string::npos) << out;
  const std::string file = Path("log.csv");
  EXPECT_EQ(Run({"log", file, "Remote1", "28h", "--interval", "500ms", "--for", "1s"}), command::kDone) << error;
  const QStringList lines = QString::fromStdString(Text(file)).split("\r\n");
  ASSERT_EQ(lines.size(), 5);
  EXPECT_EQ(lines[0], "UTC,Seconds,Remote1 Temp,PWM1 Min");
  EXPECT_TRUE(lines[3].contains("Z,1.00")) << lines[3].toStdString();
  EXPECT_TRUE(lines[3].endsWith(",-64,128"));
}

TEST_F(CommandTest, ALogThatIsThereIsKeptUnlessTheUserSaysOtherwise) {
  const std::vector<std::string> pace{"Remote1", "--interval", "1s", "--for", "1s"};
  const auto log = [&](const std::string& file, const std::vector<std::string>& options) {
    std::vector<std::string> line{"log", file};
    line.insert(line.end(), pace.begin(), pace.end());
    line.insert(line.end(), options.begin(), options.end());
    return Run(line);
  };
  const auto lines = [this](const std::string& file) { return QString::fromStdString(Text(file)).count("\r\n"); };
  const std::string file = Path("log.csv");
  EXPECT_EQ(log(file, {"--append"}), command::kDone) << "one that is not there yet";
  EXPECT_EQ(log(file, {}), command::kUsage);
  EXPECT_EQ(error, "zth4718: '" + file +
                       "' is there already. Name a new file, go on with this one by --append, or write over it by "
                       "--force.\n");
  EXPECT_EQ(traffic, Traffic{});
  EXPECT_EQ(lines(file), 3);
  EXPECT_EQ(log(file, {"--append"}), command::kDone);
  EXPECT_EQ(lines(file), 5) << "one head";
  EXPECT_EQ(log(file, {"Remote2", "--append"}), command::kUsage) << "other columns";
  EXPECT_EQ(lines(file), 5);
  EXPECT_EQ(log(file, {"Remote2", "--force"}), command::kDone);
  EXPECT_EQ(lines(file), 3);
  EXPECT_TRUE(Text(file).starts_with("UTC,Seconds,Remote1 Temp,Remote2 Temp\r\n"));
  const std::string killed = File("killed.csv", "UTC,Seconds,Remote1 Temp\r\n2026-01-01T00:00:00.000Z,0.0");
  EXPECT_EQ(log(killed, {"--append"}), command::kDone);
  EXPECT_EQ(lines(killed), 4) << Text(killed);
  EXPECT_EQ(log(file, {"--append", "--force"}), command::kUsage);
}

TEST_F(CommandTest, RecordsItsTransfers) {
  EXPECT_EQ(Run({"--record", Path("r.txt"), "read", "21h"}), command::kDone);
  EXPECT_TRUE(Text(Path("r.txt")).starts_with("# ZTH4718 bus traffic 1"));
  EXPECT_NE(Text(Path("r.txt")).find("zth4718 read"), std::string::npos);
}

}  // namespace
}  // namespace zth::testing
