// The limits window as a whole: its load, masks, lamps, rows and lists.
#include <array>

#include <QLabel>
#include <QTabWidget>
#include <gmock/gmock.h>

#include "link/Declarations.h"
#include "tests/windows/limits/LimitsDesk.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Pins = chip::PinFunctionFlags;

class LimitsOnSmbus : public Limits {
 protected:
  LimitsOnSmbus() : Limits(Desk::Buses::Smbus) {}
};

/// What a load reads with the pins as the chip starts, each tab's masks as they stand in the chip's defaults: a
/// selection reads its limits, the load shows them once more, and a mask box that changes writes its bit back.
Traffic FirstLoad() {
  const Traffic masks31 = Concat(R(0x31), R(0x31), W(0x31, 0xC0), R(0x31), W(0x31, 0xC0));
  const Traffic masks35 = Concat(R(0x35), R(0x35), W(0x35, 0x38), R(0x35), W(0x35, 0x38), R(0x35), W(0x35, 0x38));
  return Concat(R(0x44), R(0x48), R(0x44), R(0x48), R(0x30),            // Temperature
                R(0x78), R(0x78), R(0x34), R(0x07),                     // Fans
                R(0x72), R(0x69), R(0x72), R(0x69), R(0x32), R(0x33),   // Voltage
                R(0x80), R(0x80), masks31, R(0x4D), R(0x4D), masks35);  // THERM Timer, THERM Limits, Digital/VRD
}

TEST_F(Limits, LoadReadsTabByTab) {
  Load();
  EXPECT_EQ(FirstLoad().size(), 31U);
  EXPECT_EQ(desk.board.TakeTraffic(), FirstLoad());
  EXPECT_TRUE(windows::LimitsOpen);
  EXPECT_EQ(window->windowTitle(), "Limits / Interrupts");
  const auto& tabs = Desk::Get<QTabWidget>(*window, "SSTab1");
  QStringList captions;
  for (int i = 0; i < tabs.count(); ++i) captions << tabs.tabText(i);
  EXPECT_EQ(captions.join('|'), "Temperature|Fans|Voltage|THERM Timer|THERM Limits|Digital/VRD");
  for (const char* gauge : {"ggeTemp", "ggeFan", "ggeVolt", "ggeThermTimer", "ggeTHERMPin"}) {
    EXPECT_EQ(Caption(gauge), "Present");
    EXPECT_EQ(Desk::Get<QWidget>(*window, gauge).toolTip(), "Drag the sliders to change the limits");
  }
  Desk::Press(*window, "cmdClose");
  EXPECT_FALSE(windows::LimitsOpen);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  desk.Advance(2000);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty()) << "nothing is refreshed behind a closed window";
}

TEST_F(LimitsOnSmbus, LoadReadsTheSameThere) {
  Load();
  EXPECT_EQ(desk.board.TakeTraffic(), FirstLoad());
}

TEST_F(Limits, ASecondLoadLeavesMasksAloneThatHaveNotChanged) {
  Load();
  const auto before = desk.board.Chip();
  desk.board.TakeTraffic();
  window->Form_Load();
  EXPECT_THAT(desk.board.TakeTraffic(),
              ElementsAre(R(0x44), R(0x48), R(0x44), R(0x48), R(0x30), R(0x78), R(0x78), R(0x34), R(0x07), R(0x72),
                          R(0x69), R(0x72), R(0x69), R(0x32), R(0x33), R(0x80), R(0x80), R(0x31), R(0x4D), R(0x35)));
  EXPECT_EQ(desk.board.Chip(), before);
}

TEST_F(Limits, ALoadChangesNoRegisterWhateverItHolds) {
  for (int reg = 0; reg < 256; ++reg) {
    // The pin registers stay, so that the pins do.
    if (reg < 0x10 || reg > 0x14)
      desk.board.Chip()[static_cast<std::size_t>(reg)] = static_cast<std::uint8_t>(reg * 37 + 11);
  }
  const auto before = desk.board.Chip();
  Load();
  EXPECT_EQ(desk.board.Chip(), before);
}

struct MaskBox {
  const char* array;
  int index;
  int mask;
  int status;
  int bit;
  const char* lamp;
};

std::vector<MaskBox> MaskBoxes() {
  std::vector<MaskBox> boxes;
  const auto add = [&boxes](const char* array, const char* lamp, int first, int mask, int status,
                            const std::vector<int>& bits) {
    for (const int bit : bits) boxes.push_back({array, first++, mask, status, bit, lamp});
  };
  add("chkTempMask", "tglTempAlert", 0, 0x30, 0xC0, {1, 2, 3, 4, 5, 6, 7});
  add("chkFanMask", "tglFanAlert", 0, 0x34, 0xC5, {0, 1, 2, 3, 4, 5, 6, 7});
  add("chkVoltMask", "tglVoltAlert", 0, 0x32, 0xC3, {0, 1, 3, 4, 5, 6, 2, 7});
  add("chkVoltMask", "tglVoltAlert", 8, 0x33, 0xC4, {3, 4, 5, 6, 7});
  add("chkTHERMMask", "tglTHERMAlert", 0, 0x31, 0xC1, {0, 1, 2, 3, 4, 5});
  add("chkDigMask", "tglDigAlert", 0, 0x35, 0xC6, {3, 4, 5, 6, 7});
  add("chkDigMask", "tglDigAlert", 5, 0x31, 0xC1, {6, 7});
  return boxes;
}

TEST_F(Limits, AMaskClickChangesItsOneBitAtOnce) {
  desk.board.Chip()[0x07] = 0xFF;
  for (const int reg : {0x30, 0x31, 0x32, 0x33, 0x34, 0x35}) desk.board.Chip()[static_cast<std::size_t>(reg)] = 0xA5;
  Load();
  for (const MaskBox& box : MaskBoxes()) {
    const QString name = At(box.array, box.index);
    const bool masked = (0xA5 >> box.bit & 1) != 0;
    EXPECT_EQ(Desk::Checked(*window, name), masked) << name.toStdString();
    // Bits changed meanwhile elsewhere survive.
    desk.board.Chip()[static_cast<std::size_t>(box.mask)] = static_cast<std::uint8_t>(0x5A);
    desk.board.TakeTraffic();
    Desk::Press(*window, name);
    const int changed = masked ? 0x5A & ~(1 << box.bit) : 0x5A | 1 << box.bit;
    EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(box.mask), W(box.mask, changed))) << name.toStdString();
  }
}

TEST_F(Limits, EachStatusBitLightsItsOneLamp) {
  Load();
  struct Lamp {
    QString name;
    int status;
    int bit;
  };
  std::vector<Lamp> lamps;
  for (const MaskBox& box : MaskBoxes()) lamps.push_back({At(box.lamp, box.index), box.status, box.bit});
  for (int n = 0; n < 8; ++n) lamps.push_back({At("tglTHERMPinAlert", n), 0xBA, n});
  for (const Lamp& wanted : lamps) {
    for (const int reg : {0xC0, 0xC1, 0xBA, 0xC3, 0xC4, 0xC5, 0xC6}) {
      desk.board.Chip()[static_cast<std::size_t>(reg)] =
          static_cast<std::uint8_t>(reg == wanted.status ? 1 << wanted.bit : 0);
    }
    desk.Advance(550);
    for (const Lamp& lamp : lamps) EXPECT_EQ(Lit(lamp.name), lamp.name == wanted.name) << lamp.name.toStdString();
  }
}

TEST_F(Limits, RefreshReadsTheStatusEachHalfSecondAndMovesNoSlider) {
  Load();
  desk.Advance(50);
  desk.board.TakeTraffic();
  chip::Measurements.Temperature = {25.25F, -3.5F, 0.25F, 0};
  chip::Measurements.TachRpm = {1234};
  chip::Measurements.Voltage[11] = 1.75F;
  chip::Measurements.ThermPercent = {40, 60};
  desk.board.Chip()[0x44] = 0x10;  // a limit changed elsewhere
  desk.Advance(500);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  desk.Advance(50);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0xC0), R(0xC1), R(0xBA), R(0xC3), R(0xC4), R(0xC5), R(0xC6)));
  EXPECT_EQ(Caption("ggeTemp"), " 25.25\u00B0C");
  EXPECT_EQ(Caption("ggeFan"), " 1234rpm");
  EXPECT_EQ(Caption("ggeVolt"), " 1.75V");
  EXPECT_EQ(Caption("ggeThermTimer"), " 40%");
  EXPECT_EQ(Caption("ggeTHERMPin"), "-3.5\u00B0C") << "Remote1, the second item, at the start";
  EXPECT_EQ(Needle("ggeTemp", 1), 25.25);
  EXPECT_EQ(Needle("ggeFan", 1), 1234);
  EXPECT_EQ(Needle("ggeTHERMPin", 1), -3.5);
  EXPECT_EQ(Slider("ggeTemp", 2), 0) << "the sliders wait for the user";
  PickItem("cmbTemp", "Remote2");
  desk.Advance(550);
  EXPECT_EQ(Caption("ggeTemp"), " .25\u00B0C");
}

TEST_F(Limits, TemperatureRowsAndListFollowTheDiodesInBothDirections) {
  Load([](Pins& pins) { pins.D1 = pins.D3 = false; });
  const auto check = [this](bool d1, bool d3) {
    for (int row = 0; row < 7; ++row) {
      const bool live = row == 1 || row == 4 ? d1 : (row == 3 || row == 6 ? d3 : true);
      EXPECT_EQ(Enabled(At("lblTemp", row)), live) << row;
      EXPECT_EQ(Enabled(At("chkTempMask", row)), live) << row;
      EXPECT_EQ(Seen(At("tglTempAlert", row)), live) << row;
    }
  };
  check(false, false);
  EXPECT_EQ(Items("cmbTemp").join('|'), "Local|Remote2");
  PickItem("cmbTemp", "Remote2");
  LoadAgain([](Pins& pins) { pins.D1 = true; });
  check(true, false);
  EXPECT_EQ(Items("cmbTemp").join('|'), "Local|Remote1|Remote2");
  EXPECT_EQ(Desk::Picked(*window, "cmbTemp"), 0) << "the first again";
  LoadAgain([](Pins& pins) {
    pins.D1 = false;
    pins.D3 = true;
  });
  check(false, true);
  EXPECT_EQ(Items("cmbTemp").join('|'), "Local|Remote2|Remote3");
}

TEST_F(Limits, AFanIsListedByItsPinAndLiveByItsTachToo) {
  desk.board.Chip()[0x07] = 0xFE;
  Load([](Pins& pins) { pins.Pin8 = pins.Pin22 = 0; });
  EXPECT_EQ(Items("cmbFan").join('|'), "Fan1|Fan2|Fan3|Fan4|Fan5|Fan7");
  for (int row = 0; row < 8; ++row) {
    const bool live = row != 0 && row != 5 && row != 7;
    EXPECT_EQ(Enabled(At("lblFan", row)), live) << row;
    EXPECT_EQ(Enabled(At("chkFanMask", row)), live) << row;
    EXPECT_EQ(Seen(At("tglFanAlert", row)), live) << row;
  }
  desk.board.Chip()[0x07] = 0x01;
  LoadAgain([](Pins& pins) { pins.Pin8 = 1; });
  EXPECT_TRUE(Enabled("lblFan(0)") && Seen("tglFanAlert(0)"));
  EXPECT_FALSE(Enabled("lblFan(1)") || Enabled("lblFan(5)"));
  EXPECT_EQ(Items("cmbFan").size(), 7);
}

TEST_F(Limits, VoltageLabelsAreEnabledAndNamedOnceTheirChannelIsListed) {
  Load();
  EXPECT_EQ(Items("cmbVolt").join('|'), "1.8V (pin23)|2.5V (pin24)|3.3V (pin25)|Vbatt (pin26)");
  const QStringList start{"12V1 (pin7)",   "12V2 (pin8)",   "3.3V (pin13)", "Pin15",        "Pin19",
                          "5V (pin21)",    "12V3  (pin22)", "1.8V (pin23)", "2.5V (pin24)", "3.3V (pin25)",
                          "Vbatt (pin26)", "1.5V2 (pin28)", "1.5V1 (pin29)"};
  for (int row = 0; row < 13; ++row) {
    EXPECT_EQ(Desk::Text(*window, At("lblVolt", row)), start[row]);
    EXPECT_EQ(Enabled(At("lblVolt", row)), row >= 7 && row <= 10) << row;
    EXPECT_TRUE(Enabled(At("chkVoltMask", row)) && Seen(At("tglVoltAlert", row))) << row;
  }
  LoadAgain([](Pins& pins) {
    pins = {};
    pins.Pin15 = pins.Pin28 = pins.Pin29 = 1;
    pins.Pin25 = 2;
  });
  EXPECT_EQ(Items("cmbVolt").join('|'),
            "12V1 (pin7)|12V2 (pin8)|3.3V (pin13)|1.8V (pin15)|1.25V (pin19)|5V (pin21)|12V3 (pin22)|2.5V (pin23)|"
            "2.5V (pin24)|Vbatt (pin26)|1.5V (pin28)|1.5V (pin29)");
  const QStringList later{"12V1 (pin7)",   "12V2 (pin8)",   "3.3V (pin13)", "1.8V (pin15)", "1.25V (pin19)",
                          "5V (pin21)",    "12V3  (pin22)", "2.5V (pin23)", "2.5V (pin24)", "3.3V (pin25)",
                          "Vbatt (pin26)", "1.5V2 (pin28)", "1.5V1 (pin29)"};
  for (int row = 0; row < 13; ++row) {
    EXPECT_EQ(Desk::Text(*window, At("lblVolt", row)), later[row]);
    EXPECT_TRUE(Enabled(At("lblVolt", row))) << row << ": a load never disables a label";
  }
}

// One desk at a time: each failure has its own.

TEST(LimitsFailure, InTheLoadEndsTheProgramThereAndThen) {
  constexpr int kTransfers = 31;  // of FirstLoad
  for (int failing = 0; failing < kTransfers; ++failing) {
    Desk fresh(Desk::Buses::Usb);
    fresh.Start();
    fresh.board.failOnly = fresh.board.usbCalls + failing;
    fresh.prompts.script = {platform::BoxAnswer::Ok};
    try {
      fresh.Open("frmLimits");
    } catch (const platform::ProcessEnded&) {  // unless it ended in a mask's handler, which lets nothing through
    }
    EXPECT_FALSE(fresh.process.ends.empty()) << failing;
    EXPECT_EQ(fresh.prompts.shown.size(), 1U) << failing;
    EXPECT_EQ(fresh.board.TakeTraffic().size(), static_cast<std::size_t>(failing) + 1) << "nothing follows it";
    EXPECT_EQ(fresh.Main().FindWindow("frmLimits"), nullptr);
  }
}

TEST(LimitsFailure, InAHandlerOrARefreshEndsItToo) {
  const std::vector<std::pair<int, std::function<void(Desk&, QWidget&)>>> steps{
      {4, [](Desk&, QWidget& w) { QMetaObject::invokeMethod(&Desk::Get<QWidget>(w, "ggeTemp"), "SliderChanged"); }},
      {2, [](Desk&, QWidget& w) { Desk::Press(w, "chkTempMask(0)"); }},
      {2, [](Desk&, QWidget& w) { Desk::Pick(w, "cmbVolt", 1); }},
      {7, [](Desk& d, QWidget&) { d.Advance(550); }},
  };
  for (const auto& [transfers, step] : steps) {
    for (int failing = 0; failing < transfers; ++failing) {
      Desk fresh(Desk::Buses::Usb);
      fresh.Start();
      chip::PollEnabled = false;
      auto& limits = fresh.Open("frmLimits");
      fresh.board.TakeTraffic();
      fresh.board.failOnly = fresh.board.usbCalls + failing;
      fresh.prompts.script = {platform::BoxAnswer::Ok};
      step(fresh, limits);
      EXPECT_EQ(fresh.prompts.shown.size(), 1U);
      EXPECT_FALSE(fresh.process.ends.empty());
      EXPECT_FALSE(windows::LimitsOpen);
      EXPECT_EQ(fresh.board.TakeTraffic().size(), static_cast<std::size_t>(failing) + 1);
    }
  }
}

}  // namespace
}  // namespace zth::testing
