#include <QLabel>
#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "platform/Guard.h"
#include "tests/support/Desk.h"
#include "widgets/GSlider.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using windows::ChildWindow;

std::vector<int> Ticked(const ChildWindow& window) {
  std::vector<int> boxes;
  for (int i = 0; i < 14; ++i) {
    if (Desk::Checked(window, QString("chkSwitch(%1)").arg(i))) boxes.push_back(i);
  }
  return boxes;
}

widgets::GSlider& Heater(const ChildWindow& window, int heater) {
  return Desk::Get<widgets::GSlider>(window, QString("sldHeater(%1)").arg(heater));
}

// ---- The switches

TEST(Switches, ShowBothPortsFromTheDeviceAt4AOn) {
  Desk desk;
  desk.Start();
  desk.board.ports = {{0x4A, 0xE1}, {0x48, 0x81}};
  auto& window = desk.Open("frmSwitches");
  EXPECT_EQ(window.windowTitle(), "ADG715 Switch Control ");
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb P 4A", "usb P 48"}));
  EXPECT_EQ(Ticked(window), (std::vector<int>{0, 5, 6, 13})) << "bits 6 and 7 of the first device have no box";
  EXPECT_EQ(Desk::Text(window, "chkSwitch(0)"), "D2+ ( Pin17)");
  EXPECT_EQ(Desk::Text(window, "chkSwitch(13)"), "Pin26");

  desk.board.ports = {{0x4A, 0x02}, {0x48, 0x04}};
  Desk::Press(window, "cmdRefresh");
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb P 4A", "usb P 48"}));
  EXPECT_EQ(Ticked(window), (std::vector<int>{1, 8}));
}

TEST(Switches, ApplyWritesBothDevicesAndShowsWhatTheyTook) {
  Desk desk;
  desk.Start();
  desk.board.ports = {{0x4A, 0xFF}, {0x48, 0x00}};
  auto& window = desk.Open("frmSwitches");
  desk.board.TakeTraffic();
  Desk::Check(window, "chkSwitch(0)", false);
  Desk::Check(window, "chkSwitch(7)", true);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "nothing reaches the board before Apply";
  Desk::Press(window, "cmbApply");
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb D 4A=3E", "usb D 48=02", "usb P 4A", "usb P 48"}));

  // A write that fails shows in the boxes alone.
  Desk::Check(window, "chkSwitch(0)", true);
  desk.board.failMatching = "usb D";
  Desk::Press(window, "cmbApply");
  EXPECT_EQ(Ticked(window), (std::vector<int>{1, 2, 3, 4, 5, 7}));
  EXPECT_TRUE(desk.prompts.shown.empty());
}

TEST(Switches, SetByHandLastUntilThePinsAreWritten) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmSwitches");
  chip::BoardSwitch[12] = true;
  Desk::Check(window, "chkSwitch(10)", true);
  Desk::Check(window, "chkSwitch(10)", false);
  Desk::Press(window, "cmbApply");
  EXPECT_FALSE(Desk::Checked(window, "chkSwitch(10)"));
  link::WriteRegisterValue(link::DeviceAddress, 0x13, desk.board.Chip()[0x13]);
  Desk::Press(window, "cmdRefresh");
  EXPECT_EQ(Desk::Checked(window, "chkSwitch(10)"), chip::BoardSwitch[12]);
}

TEST(Switches, TouchNothingOverSmbus) {
  Desk desk(Desk::Buses::Smbus);
  desk.Start();
  auto& window = desk.Open("frmSwitches");
  Desk::Check(window, "chkSwitch(3)", true);
  Desk::Press(window, "cmbApply");
  EXPECT_TRUE(Desk::Checked(window, "chkSwitch(3)")) << "not even re-read";
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  EXPECT_FALSE(Desk::Get<QLabel>(window, "lblNoAdapter").isHidden());
}

// ---- The heaters

TEST(Heaters, ShowTheAdaptersDrivesAndWriteNothing) {
  Desk desk;
  desk.Start();
  desk.board.heaterState = {101, 60, 7};
  auto& window = desk.Open("frmHeaters");
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb H"}));
  EXPECT_EQ(Heater(window, 0).Value(), 50.5);
  EXPECT_EQ(Heater(window, 1).Value(), 30);
  EXPECT_EQ(Desk::Text(window, "lblTemp(0)"), "Remote1 = ");

  // Closing leaves the heaters alone; the next opening shows what the adapter reports then.
  Desk::Press(window, "cmdClose");
  desk.board.heaterState = {0, 200, 0};
  auto& again = desk.Open("frmHeaters");
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb H"}));
  EXPECT_EQ(Heater(again, 1).Value(), 100);
}

TEST(Heaters, EachMoveIsSentAtOnceInWholePercents) {
  Desk desk;
  desk.Start();
  desk.board.heaterState = {101, 103, 0};
  auto& window = desk.Open("frmHeaters");
  desk.board.TakeTraffic();
  Heater(window, 0).Change();
  Heater(window, 1).Change();
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb H 1=50", "usb H 2=52"})) << "halves go to the even percent";
  Heater(window, 1).StepByUser(77);
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb H 2=77"}));
  Heater(window, 1).SetValue(12);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "what code sets is not the user's";
}

TEST(Heaters, ShowTheTemperaturesOnceASecond) {
  Desk desk;
  desk.Start();
  auto& chip = desk.board.Chip();
  chip[0x8A] = 0xC0, chip[0x8B] = 64 + 31;
  chip[0x8C] = 0x00, chip[0x8D] = 64 - 5;
  desk.Advance(1000);
  auto& window = desk.Open("frmHeaters");
  desk.Advance(100);
  EXPECT_EQ(Desk::Text(window, "lblTemp(0)"), "Remote1 = 31.75°C");
  EXPECT_EQ(Desk::Text(window, "lblTemp(1)"), "Remote2 = -5°C");
  chip[0x8B] = 64 + 40;
  desk.Advance(850);
  EXPECT_EQ(Desk::Text(window, "lblTemp(0)"), "Remote1 = 31.75°C");
  desk.Advance(200);
  EXPECT_EQ(Desk::Text(window, "lblTemp(0)"), "Remote1 = 40.75°C");
  Desk::Press(window, "cmdClose");
  Desk::Settle();
  EXPECT_FALSE(windows::HeatersOpen);
  desk.Advance(2000);
}

TEST(Heaters, OverSmbusShowTheBufferAndSendNothing) {
  Desk desk(Desk::Buses::Smbus);
  desk.Start();
  link::ReadBuffer[0] = 80;
  auto& window = desk.Open("frmHeaters");
  EXPECT_EQ(Heater(window, 0).Value(), 40);
  Heater(window, 0).StepByUser(90);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST(Heaters, AFailureAsksAndNoLetsEverythingGoOn) {
  Desk desk;
  desk.Start();
  desk.board.failMatching = "usb H";
  desk.prompts.script = {platform::BoxAnswer::No, platform::BoxAnswer::No};
  auto& window = desk.Open("frmHeaters");
  EXPECT_EQ(desk.prompts.shown.at(0).text, "Error in Heater Module -  Do you wish to close the application?");
  EXPECT_TRUE(windows::HeatersOpen);
  Heater(window, 0).StepByUser(20);
  EXPECT_TRUE(desk.process.ends.empty());
  EXPECT_EQ(desk.Main().FindWindow("frmHeaters"), &window);

  desk.board.failMatching.clear();
  desk.board.TakeTraffic();
  Heater(window, 0).StepByUser(25);
  EXPECT_EQ(desk.board.TakeTraffic(), (Traffic{"usb H 1=25"}));
  desk.Advance(200);
  EXPECT_FALSE(desk.board.TakeTraffic().empty()) << "the monitor goes on";

  desk.board.failMatching = "usb H";
  desk.prompts.script = {platform::BoxAnswer::Yes};
  Heater(window, 0).StepByUser(30);
  EXPECT_EQ(desk.process.ends.size(), 1U);
  EXPECT_FALSE(windows::HeatersOpen);
}

}  // namespace
}  // namespace zth::testing
