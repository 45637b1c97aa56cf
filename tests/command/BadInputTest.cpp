#include <algorithm>
#include <string>
#include <vector>

#include "tests/command/CommandGround.h"

namespace zth::testing {
namespace {

TEST_F(CommandTest, BadInputGivesOneLineAndNoTransfer) {
  const std::string broken = File("broken.sav", "{\n0x21\t0x31\t// PWM1 Config\n");
  const std::string empty = File("empty.sav", "{\n}\n");
  const std::string wide = File("wide.sav", std::string("\xFF\xFE{\0\n\0", 6));
  const std::string script = File("script", "read 21h\nread nonsense\n");
  const std::vector<std::vector<std::string>> kCases{
      {},
      {"reed", "21h"},
      {"read"},
      {"read", "21"},
      {"read", "04h"},
      {"read", "0x121"},
      {"read", "nonsense"},
      {"read", "PWM1_Config.Nothing"},
      {"read", "21h.8"},
      {"read", "21h.2:5"},
      {"read", "21h", "--verify"},
      {"write", "21h"},
      {"write", "21h="},
      {"write", "21h=256"},
      {"write", "21h=-1"},
      {"write", "21h=1x"},
      {"write", "21h.Bhvr=8"},
      {"write", "3Eh=1"},
      {"write", "Remote1=1"},
      {"write", "28h=1", "21h=999"},
      {"write", "28h=1", "--verify", "--dry-run"},
      {"apply", "/nowhere.sav"},
      {"apply", broken},
      {"apply", empty},
      {"apply", wide},
      {"diff"},
      {"export", "--as", "pdf"},
      {"diff", "default", broken},
      {"watch", "--interval", "0s"},
      {"watch", "--interval", "soon"},
      {"watch", "--for", "10"},
      {"run", "/nowhere"},
      {"run", script},
      {"--device", "58", "find"},
      {"--device", "158@usb", "find"},
      {"--board", "none", "find"},
      {"--board", "replay:/nowhere", "find"},
      {"--board", "replay:" + script, "find"},
  };
  for (const auto& arguments : kCases) {
    std::string line;
    for (const std::string& argument : arguments) line += argument + " ";
    EXPECT_EQ(Run(arguments), command::kUsage) << line;
    EXPECT_EQ(traffic, Traffic{}) << line;
    EXPECT_EQ(out, "") << line;
    EXPECT_TRUE(error.starts_with("zth4718: ")) << line << error;
    EXPECT_EQ(std::ranges::count(error, '\n'), 1) << line << error;
  }
}

TEST_F(CommandTest, WithoutHardwareOrChipItSaysSo) {
  desk.board.usbChips.clear();
  desk.board.smbusChips.clear();
  EXPECT_EQ(Run({"find"}), command::kNoHardware);
  EXPECT_EQ(error, "zth4718: Failed to find the ZTH4718. Ask zth4718 doctor.\n");
  EXPECT_EQ(Run({"doctor"}), command::kNoHardware);
  EXPECT_NE(out.find("Looked for a chip at 58h, 5Ah and 5Ch"), std::string::npos) << out;
  desk.board.loadErrors = {{"USBFunctions", "File not found: a"}, {"smbus", "File not found: b"}};
  EXPECT_EQ(Run({"find"}), command::kNoHardware);
  EXPECT_EQ(traffic, Traffic{});
  EXPECT_EQ(Run({"doctor", "--no-transfers"}), command::kNoHardware);
  EXPECT_NE(out.find("File not found: b"), std::string::npos) << out;
  desk.board.loadErrors.clear();
  desk.board.AddUsbChip(0x58);
  EXPECT_EQ(Run({"doctor"}), command::kDone);
  EXPECT_TRUE(out.starts_with("Found: 58h on USB\n")) << out;
  EXPECT_NE(out.find("A chip was found."), std::string::npos) << out;
  EXPECT_EQ(out.find("failed"), std::string::npos) << out;
  EXPECT_EQ(Run({"doctor", "--no-transfers"}), command::kDone);
  EXPECT_EQ(traffic, Traffic{});
}

TEST_F(CommandTest, AFailedTransferEndsItWithWhatWasWritten) {
  desk.board.failMatching = "usb W 58:29";
  EXPECT_EQ(Run({"write", "28h=1", "29h=2", "2Ah=3"}), command::kLinkFailed);
  EXPECT_EQ(error, "zth4718: Communications Interrupted; written before: 28h = 01h. Check USB connections.\n");
  EXPECT_EQ(desk.board.usbChips[0x58][0x2A], 0x80);

  desk.board.missingEntries.clear();
  desk.board.smbusFails = [](const std::string& transfer) { return transfer == "smb R 2C:21"; };
  EXPECT_EQ(Run({"--device", "2C@smbus", "write", "21h.Bhvr=3"}), command::kLinkFailed);
  EXPECT_EQ(desk.board.smbusChips[0x2C][0x21], 0x11) << "nothing made up is written";
}

TEST_F(CommandTest, ASignalEndsItBetweenTwoTransfers) {
  const auto endAt = [this](const std::string& last) {
    desk.board.onTransfer = [this, last] {
      if (desk.board.traffic.back() == last) desk.process.orders.end();
    };
  };
  endAt("usb W 58:28=01");
  EXPECT_EQ(Run({"write", "28h=1", "29h=2"}), command::kEnded);
  EXPECT_EQ(error, "zth4718: Ended between two transfers; written before: 28h = 01h.\n");
  endAt("usb B 58:88+8");
  EXPECT_EQ(Run({"watch", "Remote1"}), command::kDone) << "its usual end";
}

}  // namespace
}  // namespace zth::testing
