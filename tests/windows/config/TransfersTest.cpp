#include <gtest/gtest.h>

#include "link/Declarations.h"
#include "tests/windows/config/ConfigModel.h"

namespace zth::testing {
namespace {

struct Case {
  const char* window;
  const char* loads;
  const char* applies;  ///< on a chip of default registers

  Traffic load() const { return T(loads); }
  Traffic apply() const { return T(applies); }
};

// A write of a PWM's configuration has a look at its behaviour field behind it.
const std::vector<Case> kCases{
    {"frmGenConfig", "B01+3 R0C", "R01 W01=01 R02 W02=80 R03 W03=00 R0C W0C=40"},
    {"frmFanConfig", "B07+2 B01+2 R0D R2C B1A+2 B21+4 B25+2 B28+4",
     "W07=00 W08=0F R01 W01=01 R02 W02=80 W2C=BF R0D W0D=00 W1A=00 W1B=00 W21=11 R21 W22=31 R22 W23=51 R23 W24=71 R24 "
     "W25=90 W26=90 W28=80 W29=80 W2A=80 W2B=80"},
    {"frmVoltConfig", "B18+2", "W18=FE W19=37"},
    {"frmTherm", "R03 B0D+3 B54+2", "R03 W03=00 R0D W0D=00 W0E=1F W0F=1F W54=44 W55=44"},
    {"frmEDO", "R16 B37+2", "R16 W16=00 W37=00 W38=00"},
};

TEST(ConfigTransfers, ApplyGoesOutInOrderOnBothLinksOkClosesAndCancelJustCloses) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const Case& row : kCases) {
      SCOPED_TRACE(row.window);
      WindowDesk desk(row.window, buses);
      EXPECT_EQ(desk.Sent("cmdApply"), row.apply());
      EXPECT_TRUE(desk.IsOpen()) << "Apply leaves the window open";
      const QString first = Model(row.window).controls.front().name;
      EXPECT_EQ(desk.Sent(first + "=1; cmdCancel"), Traffic{});
      EXPECT_FALSE(desk.IsOpen());
      desk.Reopen();
      EXPECT_EQ(desk.Sent("cmdOK"), row.apply());
      EXPECT_FALSE(desk.IsOpen());
    }
  }
}

TEST(FanConfig, AllTachButtonsTouchOnlyTheBoxes) {
  WindowDesk desk("frmFanConfig");
  EXPECT_EQ(desk.Sent("cmdEnableAll"), Traffic{});
  EXPECT_EQ(desk.Held("chkEnTach(0..7)"), "1|1|1|1|1|1|1|1");
  EXPECT_EQ(desk.Sent("cmdDisableAll"), Traffic{});
  EXPECT_EQ(desk.Held("chkEnTach(0..7)"), "0|0|0|0|0|0|0|0");
}

TEST(FanConfig, ApplyTellsTheMonitorWhichPwmIsManual) {
  WindowDesk desk("frmFanConfig");
  desk.Do("cmbControl(2)=7; cmdApply");
  EXPECT_EQ(link::PwmManual, (std::array<bool, 5>{false, false, false, true, false}));
}

TEST(ConfigTexts, GoOutAsTheNumbersTheyBeginWithAndWithinAByte) {
  const std::vector<std::tuple<const char*, const char*, std::size_t, int>> rows{
      {"frmFanConfig", "txtMinPWM(3)=12ab", 0x2B, 31},
      {"frmFanConfig", "txtMinPWM(0)=", 0x28, 0},
      {"frmFanConfig", "txtMinPWM(1)=ab", 0x29, 0},
      {"frmFanConfig", "txtMinPWM(2)=101", 0x2A, 255},
      {"frmFanConfig", "txtMinPWM(2)=-1", 0x2A, 0},
      {"frmFanConfig", "txtMaxPWM=1E300", 0x2C, 255},
      // Over 0x44: a number too great for its field spills into its neighbour, a fraction of the upper one below.
      {"frmTherm", "txtHyst(1)=5", 0x54, 0x54},
      {"frmTherm", "txtHyst(0)=18", 0x54, 0x52},
      {"frmTherm", "txtHyst(1)=16", 0x54, 0xFF},
      {"frmTherm", "txtHyst(3)=2.5", 0x55, 0x2C},
      {"frmTherm", "txtHyst(2)=2.5", 0x55, 0x42},
      {"frmTherm", "txtHyst(2)=3.5", 0x55, 0x44},
      {"frmTherm", "txtHyst(0)=-3", 0x54, 0x40},
      {"frmTherm", "txtHyst(2)=x", 0x55, 0x40},
      {"frmTherm", "txtHyst(0)=300", 0x54, 0xFF},
  };
  for (const auto& [window, text, reg, sent] : rows) {
    WindowDesk desk(window);
    desk.Do(text);
    desk.Do("cmdApply");
    EXPECT_EQ(desk.board.Chip()[reg], sent) << text;
  }
}

}  // namespace
}  // namespace zth::testing
