#include <functional>

#include <gtest/gtest.h>

#include "link/Declarations.h"
#include "tests/windows/config/ConfigModel.h"

namespace zth::testing {
namespace {

/// A read, and the write of what comes of it.
Traffic Modify(int reg, int value) {
  return Concat(R(reg), W(reg, value));
}

/// The write of a PWM's configuration, with the look at its behaviour field behind it.
Traffic PwmConfig(int reg, int value) {
  return Concat(W(reg, value), R(reg));
}

struct Case {
  const char* window;
  std::function<Traffic()> load;
  std::function<Traffic()> apply;  ///< on a chip of default registers
};

const std::vector<Case> kCases{
    {"frmGenConfig", [] { return Concat(B(0x01, 3), R(0x0C)); },
     [] { return Concat(Modify(0x01, 0x01), Modify(0x02, 0x80), Modify(0x03, 0x00), Modify(0x0C, 0x40)); }},
    {"frmFanConfig",
     [] { return Concat(B(0x07, 2), B(0x01, 2), R(0x0D), R(0x2C), B(0x1A, 2), B(0x21, 4), B(0x25, 2), B(0x28, 4)); },
     [] {
       return Concat(W(0x07, 0x00), W(0x08, 0x0F), Modify(0x01, 0x01), Modify(0x02, 0x80), W(0x2C, 0xBF),
                     Modify(0x0D, 0x00), W(0x1A, 0x00), W(0x1B, 0x00), PwmConfig(0x21, 0x11), PwmConfig(0x22, 0x31),
                     PwmConfig(0x23, 0x51), PwmConfig(0x24, 0x71), W(0x25, 0x90), W(0x26, 0x90), W(0x28, 0x80),
                     W(0x29, 0x80), W(0x2A, 0x80), W(0x2B, 0x80));
     }},
    {"frmVoltConfig", [] { return B(0x18, 2); }, [] { return Concat(W(0x18, 0xFE), W(0x19, 0x37)); }},
    {"frmTherm", [] { return Concat(R(0x03), B(0x0D, 3), B(0x54, 2)); },
     [] {
       return Concat(Modify(0x03, 0x00), Modify(0x0D, 0x00), W(0x0E, 0x1F), W(0x0F, 0x1F), W(0x54, 0x44),
                     W(0x55, 0x44));
     }},
    {"frmEDO", [] { return Concat(R(0x16), B(0x37, 2)); },
     [] { return Concat(Modify(0x16, 0x00), W(0x37, 0x00), W(0x38, 0x00)); }},
};

TEST(ConfigTransfers, LoadAndApplyGoOutInOrderOnBothLinks) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const Case& row : kCases) {
      SCOPED_TRACE(row.window);
      Desk desk(buses);
      desk.Start();
      auto& window = desk.Open(row.window);
      EXPECT_EQ(desk.board.TakeTraffic(), row.load());
      desk.Open(row.window);
      EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "an open window is not read again";
      Desk::Press(window, "cmdApply");
      EXPECT_EQ(desk.board.TakeTraffic(), row.apply());
      EXPECT_EQ(desk.Main().FindWindow(row.window), &window) << "Apply leaves the window open";
    }
  }
}

TEST(ConfigTransfers, OkAppliesAndClosesAndCancelJustCloses) {
  for (const WindowModel& model : AllWindows()) {
    for (const bool ok : {true, false}) {
      SCOPED_TRACE(model.name);
      Desk desk;
      desk.Start();
      auto& window = desk.Open(model.name);
      const Control& first = model.controls.front();
      const FakeBoard::Registers before = desk.board.Chip();
      const QString other = Held(window, first.name) == "1" ? "0" : "1";
      Put(window, first.name, other);
      desk.board.TakeTraffic();
      Desk::Press(window, ok ? "cmdOK" : "cmdCancel");
      EXPECT_EQ(desk.Main().FindWindow(model.name), nullptr);
      if (ok) {
        EXPECT_NE(desk.board.Chip(), before);
      } else {
        EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
      }
    }
  }
}

TEST(FanConfig, AllTachButtonsTouchOnlyTheBoxes) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmFanConfig");
  desk.board.TakeTraffic();
  for (const bool on : {true, false}) {
    Desk::Press(window, on ? "cmdEnableAll" : "cmdDisableAll");
    for (int i = 0; i < 8; ++i) EXPECT_EQ(Desk::Checked(window, QString("chkEnTach(%1)").arg(i)), on);
  }
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST(FanConfig, ApplyTellsTheMonitorWhichPwmIsManual) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmFanConfig");
  Desk::Pick(window, "cmbControl(2)", 7);
  Desk::Press(window, "cmdApply");
  EXPECT_EQ(link::PwmManual, (std::array<bool, 5>{false, false, false, true, false}));
}

/// Two registers of texts, and what a text box gives to its own.
TEST(ConfigTexts, GoOutAsTheNumbersTheyBeginWithAndWithinAByte) {
  struct Row {
    const char* window;
    const char* box;
    const char* text;
    int reg;
    int sent;
  };
  const std::vector<Row> rows{
      {"frmFanConfig", "txtMaxPWM", "50", 0x2C, 128},
      {"frmFanConfig", "txtMaxPWM", "10", 0x2C, 26},
      {"frmFanConfig", "txtMaxPWM", "30", 0x2C, 76},
      {"frmFanConfig", "txtMaxPWM", "70", 0x2C, 178},
      {"frmFanConfig", "txtMaxPWM", "90", 0x2C, 230},
      {"frmFanConfig", "txtMaxPWM", "100", 0x2C, 255},
      {"frmFanConfig", "txtMinPWM(3)", "12ab", 0x2B, 31},
      {"frmFanConfig", "txtMinPWM(0)", "", 0x28, 0},
      {"frmFanConfig", "txtMinPWM(1)", "ab", 0x29, 0},
      {"frmFanConfig", "txtMinPWM(2)", "101", 0x2A, 255},
      {"frmFanConfig", "txtMinPWM(2)", "-1", 0x2A, 0},
      {"frmFanConfig", "txtMaxPWM", "1E300", 0x2C, 255},
      // Over 0x44: a number too great for its field spills into its neighbour, a fraction of the upper one below.
      {"frmTherm", "txtHyst(1)", "5", 0x54, 0x54},
      {"frmTherm", "txtHyst(0)", "3", 0x54, 0x43},
      {"frmTherm", "txtHyst(0)", "18", 0x54, 0x52},
      {"frmTherm", "txtHyst(1)", "16", 0x54, 0xFF},
      {"frmTherm", "txtHyst(3)", "2.5", 0x55, 0x2C},
      {"frmTherm", "txtHyst(2)", "2.5", 0x55, 0x42},
      {"frmTherm", "txtHyst(2)", "3.5", 0x55, 0x44},
      {"frmTherm", "txtHyst(0)", "-3", 0x54, 0x40},
      {"frmTherm", "txtHyst(2)", "x", 0x55, 0x40},
      {"frmTherm", "txtHyst(0)", "300", 0x54, 0xFF},
  };
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const Row& row : rows) {
      Desk desk(buses);
      desk.Start();
      auto& window = desk.Open(row.window);
      Desk::Type(window, row.box, row.text);
      Desk::Press(window, "cmdApply");
      EXPECT_EQ(int{desk.board.Chip()[static_cast<std::size_t>(row.reg)]}, row.sent) << row.box << " " << row.text;
    }
  }
}

}  // namespace
}  // namespace zth::testing
