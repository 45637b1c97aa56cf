#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

/// The transfers of opening a window, what closes it, and the flag that tells the master timer that it is open.
struct Opening {
  QString window;
  const char* load;
  const char* close;
  bool* open = nullptr;
};

const std::vector<Opening> kOpenings{
    {"frmSave", "", "cmdClose"},
    {"frmGraph", "", nullptr, &windows::Shared.GraphOpen},
    {"frmRegMap", "", nullptr, &windows::Shared.RegMapOpen},
    {"frmLogging", "", "cmdClose"},
    {"frmSwitches", "P4A P48", "cmdCancel"},
    {"frmHeaters", "H", "cmdClose", &windows::Shared.HeatersOpen},
    {"frmTraffic", "", nullptr},
    {"frmEasySetup", "", "cmdClose"},
    {"frmAbout", "", "cmdOK"},
    {"frmGuide", "", nullptr},
    {"frmChanges", "", nullptr},
    {"frmCompare", "", nullptr},
    {"frmGenConfig", "B01+3 R0C", "cmdCancel"},
    {"frmFanConfig", "B07+2 B01+2 R0D R2C B1A+2 B21+4 B25+2 B28+4", "cmdCancel"},
    {"frmVoltConfig", "B18+2", "cmdCancel"},
    {"frmTherm", "R03 B0D+3 B54+2", "cmdCancel"},
    {"frmEDO", "R16 B37+2", "cmdCancel"},
    {"frmPinConfig", "B10+5", "cmdClose(1)"},
    {"frmGPIO", "R03 B09+2 RBF", "cmdCancel", &windows::Shared.GpioOpen},
    {"frmAutoGraph", "R0D R2C B21+4 B25+2 B28+4 B5C+4 B60+4 B54+2 B4C+8", "cmdCancel", &windows::Shared.AutoGraphOpen},
    {"frmDynamicTmin", "B0B+2 B5A+2 B5D+2 B45+2 B49+2 B64+1", "cmdCancel", &windows::Shared.DynTminOpen},
    {"frmManualControl", "", "cmdClose", &windows::Shared.ManualOpen},
};

void ExpectOpensAndCloses(const Opening& row, Desk::Buses buses, const char* registers) {
  WindowDesk desk(row.window, buses, [&](Desk& each) { Put(each.board.Chip(), registers); });
  chip::Model.PollEnabled = false;
  const FakeBoard::Registers before = desk.board.Chip();
  EXPECT_EQ(desk.load, T(row.load));
  EXPECT_TRUE(row.open == nullptr || *row.open);
  desk.Open(row.window);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "an open window is not read again";
  row.close == nullptr ? desk.window->Unload() : desk.Do(row.close);
  EXPECT_FALSE(desk.IsOpen());
  EXPECT_FALSE(row.open != nullptr && *row.open);
  desk.Advance(2500);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "nothing is refreshed behind a closed window";
  EXPECT_EQ(desk.board.Chip(), before);
}

/// frmLimits writes masks back when it opens and has its own test.
TEST(Opening, EachWindowReadsInOrderChangesNothingWhateverTheChipHoldsAndEndsWhenClosed) {
  EXPECT_EQ(kOpenings.size() + 1, EveryWindow().size());
  for (const Opening& row : kOpenings) {
    for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
      for (const char* registers : {"", "00..FF=00", "00..FF=A5", "00..FF=FF"}) {
        SCOPED_TRACE(row.window.toStdString() + " " + registers);
        ExpectOpensAndCloses(row, buses, registers);
      }
    }
  }
}

}  // namespace
}  // namespace zth::testing
