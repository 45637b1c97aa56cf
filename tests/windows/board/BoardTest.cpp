#include <QLabel>

#include "chip/ChipState.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "tests/support/Steps.h"
#include "widgets/GSlider.h"

namespace zth::testing {
namespace {

widgets::GSlider& Heater(const QWidget& window, int heater) {
  return Desk::Get<widgets::GSlider>(window, QString("sldHeater(%1)").arg(heater));
}

constexpr char kBoxes[] = "chkSwitch(0..13)";

WindowDesk Switches(int device4A, int device48) {
  return WindowDesk("frmSwitches", Desk::Buses::Both, [=](Desk& desk) {
    desk.board.ports = {{0x4A, static_cast<std::uint8_t>(device4A)}, {0x48, static_cast<std::uint8_t>(device48)}};
  });
}

TEST(Switches, ShowBothPortsStartingWithTheDeviceAt4A) {
  WindowDesk desk = Switches(0xE1, 0x81);
  EXPECT_EQ(desk.Held(kBoxes), "1|0|0|0|0|1|1|0|0|0|0|0|0|1") << "bits 6 and 7 of the first device have no box";
  EXPECT_EQ(desk.Text(*desk.window, "chkSwitch(0)") + desk.Text(*desk.window, "chkSwitch(13)"), "D2+ ( Pin17)Pin26");
  desk.board.ports = {{0x4A, 0x02}, {0x48, 0x04}};
  EXPECT_EQ(desk.Sent("cmdRefresh"), T("P4A P48"));
  EXPECT_EQ(desk.Held(kBoxes), "0|1|0|0|0|0|0|0|1|0|0|0|0|0");
}

TEST(Switches, ApplyWritesBothDevicesAndShowsWhatTheyTook) {
  WindowDesk desk = Switches(0xFF, 0x00);
  EXPECT_EQ(desk.Sent("chkSwitch(0)=0; chkSwitch(7)=1"), Traffic{}) << "nothing reaches the board before Apply";
  EXPECT_EQ(desk.Sent("cmbApply"), T("D4A=3E D48=02 P4A P48"));
  EXPECT_EQ(desk.Held(kBoxes), "0|1|1|1|1|1|0|1|0|0|0|0|0|0");
}

TEST(Switches, SetByHandStayUntilThePinsAreWritten) {
  WindowDesk desk("frmSwitches");
  chip::Model.BoardSwitch[12] = true;
  desk.Do("chkSwitch(10)=1; chkSwitch(10)=0; cmbApply");
  EXPECT_EQ(desk.Held("chkSwitch(10)"), "0");
  link::WriteRegisterValue(link::Bus.DeviceAddress, 0x13, desk.board.Chip()[0x13]);
  desk.Do("cmdRefresh");
  EXPECT_EQ(desk.Held("chkSwitch(10)"), chip::Model.BoardSwitch[12] ? "1" : "0");
}

TEST(Switches, TouchNothingOverSmbus) {
  WindowDesk desk("frmSwitches", Desk::Buses::Smbus);
  EXPECT_EQ(desk.Sent("chkSwitch(3)=1; cmbApply"), Traffic{});
  EXPECT_EQ(desk.Held("chkSwitch(3)"), "1") << "not even re-read";
  EXPECT_FALSE(Desk::Get<QLabel>(*desk.window, "lblNoAdapter").isHidden());
}

TEST(Heaters, ShowTheAdaptersDrivesEachTimeTheyOpen) {
  WindowDesk desk("frmHeaters", Desk::Buses::Both, [](Desk& each) { each.board.heaterState = {101, 60, 7}; });
  EXPECT_EQ(desk.Held("sldHeater(0..1) lblTemp(0)"), "50.5|30|Remote1 = ");
  desk.board.heaterState = {0, 200, 0};
  desk.Reopen();
  EXPECT_EQ(desk.load, T("H"));
  EXPECT_EQ(desk.Held("sldHeater(0..1)"), "0|100");
}

TEST(Heaters, EachMoveIsSentAtOnceInWholePercents) {
  WindowDesk desk("frmHeaters", Desk::Buses::Both, [](Desk& each) { each.board.heaterState = {101, 103, 0}; });
  Heater(*desk.window, 0).Change();
  Heater(*desk.window, 1).Change();
  EXPECT_EQ(desk.board.TakeTraffic(), T("H1=50 H2=52")) << "halves go to the even percent";
  EXPECT_EQ(desk.Sent("sldHeater(1)=77"), T("H2=77"));
  Heater(*desk.window, 1).SetValue(12);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "what code sets is not the user's";
}

TEST(Heaters, ShowTheTemperatures) {
  WindowDesk desk("frmHeaters", Desk::Buses::Both, [](Desk& each) {
    Put(each.board.Chip(), "8A=C0 8B=5F 8C=00 8D=3B");
    each.Advance(1000);
  });
  desk.Advance(100);
  EXPECT_EQ(desk.Held("lblTemp(0..1)"), "Remote1 = 31.75°C|Remote2 = -5°C");
}

TEST(Heaters, OverSmbusShowTheBufferAndSendNothing) {
  WindowDesk desk("frmHeaters", Desk::Buses::Smbus, [](Desk&) { link::Bus.ReadBuffer[0] = 80; });
  EXPECT_EQ(desk.Held("sldHeater(0)"), "40");
  EXPECT_EQ(desk.Sent("sldHeater(0)=90"), Traffic{});
}

TEST(Heaters, StayOpenWhenTheirLoadFailsAndTheUserContinues) {
  WindowDesk desk("frmHeaters", Desk::Buses::Usb, [](Desk& each) {
    each.board.failMatching = "usb H";
    each.prompts.script = {platform::BoxAnswer::No};
  });
  EXPECT_EQ(desk.prompts.shown.size(), 1U);
  EXPECT_TRUE(desk.IsOpen() && desk.process.ends.empty());
}

}  // namespace
}  // namespace zth::testing
