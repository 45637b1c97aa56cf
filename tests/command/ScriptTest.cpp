#include <string>

#include "tests/command/CommandGround.h"

namespace zth::testing {
namespace {

TEST_F(CommandTest, AScriptRunsOverOneConnection) {
  const std::string script = File("script",
                                  "# sets PWM1\n"
                                  "write \"PWM1 Min=64\" --verify\n"
                                  "note \"ready\"\n"
                                  "wait 2s\n"
                                  "assert 28h = 40h\n"
                                  "assert Remote1 in -70..0\n"
                                  "read 28h\n");
  EXPECT_EQ(Sent({"--quiet", "run", script}), Usb("W28=40 R28 R28 B88+8 R28"));
  EXPECT_EQ(out, "ready\nPWM1 Min (28h) = 40h\n");
  EXPECT_EQ(error, "");
}

TEST_F(CommandTest, AScriptStopsAtItsFirstFailureAndNamesTheLine) {
  EXPECT_EQ(Run({"run", File("script", "\nassert 28h < 5\nwrite 28h=1\n")}), command::kDiffers);
  EXPECT_EQ(error, "zth4718: line 2: PWM1 Min is 128, not < 5.\n");
  EXPECT_EQ(desk.board.usbChips[0x58][0x28], 0x80);
  for (const char* const line : {"wait", "wait-for Tach2 > 5", "assert Tach2", "assert all > 1", "run x", "--json find",
                                 "read \"21h", "write 21h=999", "assert 28h ~ 5", "assert 28h in 5"}) {
    EXPECT_EQ(Run({"run", File("script", std::string("read 28h\n") + line + "\n")}), command::kUsage) << line;
    EXPECT_NE(error.find("line 2: "), std::string::npos) << error;
    EXPECT_EQ(traffic, Traffic{}) << "all of a script is checked before it begins";
  }
}

TEST_F(CommandTest, WaitForEndsWhenTheConditionHolds) {
  int reads = 0;
  desk.board.onTransfer = [&] {
    if (desk.board.traffic.back() == "usb R 58:28" && ++reads == 3) desk.board.usbChips[0x58][0x28] = 7;
  };
  const std::string script = File("script", "wait-for 28h = 7 within 5s\n");
  EXPECT_EQ(Sent({"run", script}).size(), 3U);
  desk.board.onTransfer = nullptr;
  desk.board.usbChips[0x58][0x28] = 1;
  EXPECT_EQ(Run({"run", script}), command::kDiffers);
  EXPECT_EQ(error, "zth4718: line 1: PWM1 Min is 1, not = 7 within 5s.\n");
}

}  // namespace
}  // namespace zth::testing
