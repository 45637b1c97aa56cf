#include <algorithm>
#include <string>

#include "tests/command/CommandGround.h"

namespace zth::testing {
namespace {

TEST_F(CommandTest, TheCurveIsThatOfTheRegisters) {
  auto& chip = desk.board.usbChips[0x58];
  // Remote1; from 50 °C on, with 2 degrees of hysteresis; 64 % over 4 degrees; from 50 % to 100 %.
  Put(chip, "21=31 5D=72 61=32 28=80 2C=FF 0D=00 4D=8A 51=A4");
  EXPECT_EQ(Sent({"curve", "pwm1"}), Usb("R21 R61 R25 R5D R28 R2C R0D R4D R51"));
  EXPECT_EQ(out,
            "Remote1 47 °C: 0 %\n"
            "Remote1 48 °C: 0 %, falling 50.2 %\n"
            "Remote1 49 °C: 0 %, falling 50.2 %\n"
            "Remote1 50 °C: 50.2 %\n"
            "Remote1 51 °C: 66.3 %\n"
            "Remote1 52 °C: 82.4 %\n"
            "Remote1 53 °C: 98 %\n"
            "Remote1 54 °C: 100 %\n"
            "Remote1 74 °C: 100 %\n");
  // A THERM limit below the end of the ramp, and always on.
  Put(chip, "4D=73 25=91");
  EXPECT_EQ(Run({"curve", "PWM1"}), command::kDone);
  EXPECT_TRUE(out.starts_with("Remote1 47 °C: 50.2 %\n")) << out;
  EXPECT_TRUE(out.ends_with("Remote1 50 °C: 50.2 %\nRemote1 51 °C: 100 %\n")) << out;
  Put(chip, "21=F1");
  EXPECT_EQ(Sent({"curve", "PWM1"}), Usb("R21"));
  EXPECT_EQ(out, "No temperature controls it: Manual Mode\n");
  Put(chip, "21=D1");
  EXPECT_EQ(Run({"curve", "PWM1"}), command::kDone);
  for (const char* const source : {"Local ", "Remote1 ", "Remote2 ", "Remote3 "}) {
    EXPECT_NE(out.find(source), std::string::npos) << source;
  }
  EXPECT_EQ(Run({"curve", "PWM5"}), command::kUsage);
}

TEST_F(CommandTest, LimitsTellWhetherReadingsKeepThem) {
  Put(desk.board.usbChips[0x58], "10=7F 89=5A 44=40 48=59 99=10 78=20");
  EXPECT_EQ(Run({"limits"}), command::kDone) << error;
  EXPECT_NE(out.find("Local 26 °C, low 0 °C, high 25 °C: above\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Remote1 -64 °C, low 0 °C, high 85 °C: below\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Fan1 1241 rpm, low 639.28 rpm: within\n"), std::string::npos) << out;
  for (const std::string& transfer : traffic) {
    EXPECT_FALSE(transfer.starts_with("usb R 58:B") || transfer.starts_with("usb R 58:C")) << "no alert is cleared";
  }
}

TEST_F(CommandTest, AlertsReadEachStatusOnceAndSayThatItClears) {
  Put(desk.board.usbChips[0x58], "10=7F C0=04 30=04 C5=01");
  const Traffic sent = Sent({"alerts"});
  EXPECT_NE(out.find("Remote 1 Temp: alert, masked\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Fan1: alert\n"), std::string::npos);
  EXPECT_NE(out.find("Fan2: ok\n"), std::string::npos);
  EXPECT_EQ(error, "Reading the alerts clears those whose cause has ended\n");
  for (const char* const status : {"usb R 58:C0", "usb R 58:C1", "usb R 58:C3", "usb R 58:C5", "usb R 58:C6"}) {
    EXPECT_EQ(std::count(sent.begin(), sent.end(), status), 1) << status;
  }
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "usb R 58:B8"), 0) << "the host's copies keep what they hold";
}

}  // namespace
}  // namespace zth::testing
