// The limits window as a whole: its load, masks, lamps, rows and lists.
#include "chip/ChipState.h"
#include "link/Declarations.h"
#include "tests/windows/limits/LimitsDesk.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using Pins = chip::PinFunctionFlags;

/// The transfers of a load with the pins as at power-up and each tab's masks at the chip's defaults: a selection reads
/// its limits, the load shows them again, and a mask box that changes writes its bit back.
constexpr char kFirstLoad[] =
    "R44 R48 R44 R48 R30 "      // Temperature
    "R78 R78 R34 R07 "          // Fans
    "R72 R69 R72 R69 R32 R33 "  // Voltage
    "R80 R80 R31 R31 W31=C0 R31 W31=C0 "
    "R4D R4D R35 R35 W35=38 R35 W35=38 R35 W35=38";  // THERM Timer, THERM Limits, Digital/VRD

TEST(LimitsLoad, ReadsTabByTabOnBothLinksAndDoesNotWriteUnchangedMasks) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmLimits", buses, [](Desk&) { chip::Model.PollEnabled = false; });
    EXPECT_EQ(desk.load, T(kFirstLoad));
    EXPECT_TRUE(windows::Shared.LimitsOpen);
    const auto before = desk.board.Chip();
    desk.window->Form_Load();
    EXPECT_EQ(desk.board.TakeTraffic(),
              T("R44 R48 R44 R48 R30 R78 R78 R34 R07 R72 R69 R72 R69 R32 R33 R80 R80 R31 R4D R35"));
    EXPECT_EQ(desk.board.Chip(), before);
    desk.Do("cmdClose");
    EXPECT_FALSE(windows::Shared.LimitsOpen);
  }
}

TEST_F(Limits, ALoadChangesNoRegisterWhateverItHolds) {
  for (std::size_t reg = 0; reg < 256; ++reg) {
    // The pin registers stay, so that the pins keep their functions.
    if (reg < 0x10 || reg > 0x14) desk.board.Chip()[reg] = static_cast<std::uint8_t>(reg * 37 + 11);
  }
  const auto before = desk.board.Chip();
  Load();
  EXPECT_EQ(desk.board.Chip(), before);
}

struct MaskBox {
  const char* array;
  int index, mask, status, bit;
  const char* lamp;
};

std::vector<MaskBox> MaskBoxes() {
  const std::tuple<const char*, const char*, int, int, int, std::vector<int>> runs[]{
      {"chkTempMask", "tglTempAlert", 0, 0x30, 0xC0, {1, 2, 3, 4, 5, 6, 7}},
      {"chkFanMask", "tglFanAlert", 0, 0x34, 0xC5, {0, 1, 2, 3, 4, 5, 6, 7}},
      {"chkVoltMask", "tglVoltAlert", 0, 0x32, 0xC3, {0, 1, 3, 4, 5, 6, 2, 7}},
      {"chkVoltMask", "tglVoltAlert", 8, 0x33, 0xC4, {3, 4, 5, 6, 7}},
      {"chkTHERMMask", "tglTHERMAlert", 0, 0x31, 0xC1, {0, 1, 2, 3, 4, 5}},
      {"chkDigMask", "tglDigAlert", 0, 0x35, 0xC6, {3, 4, 5, 6, 7}},
      {"chkDigMask", "tglDigAlert", 5, 0x31, 0xC1, {6, 7}}};
  std::vector<MaskBox> boxes;
  for (const auto& [array, lamp, first, mask, status, bits] : runs) {
    for (int i = first; const int bit : bits) boxes.push_back({array, i++, mask, status, bit, lamp});
  }
  return boxes;
}

TEST_F(Limits, AMaskClickChangesOnlyItsBitAtOnce) {
  Put(desk.board.Chip(), "07=FF 30..35=A5");
  Load();
  for (const MaskBox& box : MaskBoxes()) {
    const QString name = At(box.array, box.index);
    const bool masked = (0xA5 >> box.bit & 1) != 0;
    EXPECT_EQ(Desk::Checked(*window, name), masked) << name.toStdString();
    // Bits changed elsewhere in the meantime are kept.
    desk.board.Chip()[static_cast<std::size_t>(box.mask)] = static_cast<std::uint8_t>(0x5A);
    desk.board.TakeTraffic();
    Desk::Press(*window, name);
    const int changed = masked ? 0x5A & ~(1 << box.bit) : 0x5A | 1 << box.bit;
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(R(box.mask), W(box.mask, changed))) << name.toStdString();
  }
}

TEST_F(Limits, EachStatusBitLightsOnlyItsLamp) {
  Load();
  std::vector<MaskBox> lamps = MaskBoxes();
  for (int n = 0; n < 8; ++n) lamps.push_back({"", n, 0, 0xBA, n, "tglTHERMPinAlert"});
  for (const MaskBox& wanted : lamps) {
    Put(desk.board.Chip(), "BA=00 C0..C6=00");
    desk.board.Chip()[static_cast<std::size_t>(wanted.status)] = static_cast<std::uint8_t>(1 << wanted.bit);
    desk.Advance(550);
    for (const MaskBox& lamp : lamps) {
      const QString name = At(lamp.lamp, lamp.index);
      EXPECT_EQ(Held(*window, name), name == At(wanted.lamp, wanted.index) ? "1" : "0") << name.toStdString();
    }
  }
}

TEST_F(Limits, RefreshReadsTheStatusEachHalfSecondAndMovesNoSlider) {
  Load();
  EXPECT_EQ(Captions(), "Present|Present|Present|Present|Present");
  desk.Advance(50);
  desk.board.TakeTraffic();
  chip::Model.Measurements.Temperature = {25.25F, -3.5F, 0.25F, 0};
  chip::Model.Measurements.TachRpm = {1234};
  chip::Model.Measurements.Voltage[11] = 1.75F;
  chip::Model.Measurements.ThermPercent = {40, 60};
  Put(desk.board.Chip(), "44=10");  // a limit changed elsewhere
  desk.Advance(550);
  EXPECT_EQ(desk.board.TakeTraffic(), T("RC0 RC1 RBA RC3 RC4 RC5 RC6"));
  EXPECT_EQ(Captions(), " 25.25\u00B0C| 1234rpm| 1.75V| 40%|-3.5\u00B0C") << "THERM pins: Remote1, the second item";
  EXPECT_EQ(Needle("ggeTemp", 1), 25.25);
  EXPECT_EQ(Slider("ggeTemp", 2), 0) << "the sliders wait for the user";
  PickItem("cmbTemp", "Remote2");
  desk.Advance(550);
  EXPECT_EQ(Caption("ggeTemp"), " .25\u00B0C");
}

/// Rows of a table that are in use: label and mask enabled, lamp visible.
std::string LiveRows(const QWidget& window, const char* table, int rows) {
  std::string live;
  for (int row = 0; row < rows; ++row) {
    const bool on = Desk::Get<QWidget>(window, QString("lbl%1(%2)").arg(table).arg(row)).isEnabled();
    EXPECT_EQ(Desk::Get<QWidget>(window, QString("chk%1Mask(%2)").arg(table).arg(row)).isEnabled(), on) << row;
    EXPECT_EQ(Desk::Property(window, QString("tgl%1Alert(%2)").arg(table).arg(row), "Visible").toBool(), on) << row;
    live += on ? '1' : '0';
  }
  return live;
}

TEST_F(Limits, TemperatureRowsAndListFollowTheDiodesInBothDirections) {
  Load();
  const std::tuple<bool, bool, const char*, const char*> rows[]{{false, false, "1010010", "Local|Remote2"},
                                                                {true, false, "1110110", "Local|Remote1|Remote2"},
                                                                {false, true, "1011011", "Local|Remote2|Remote3"}};
  for (const auto& [d1, d3, live, items] : rows) {
    PickItem("cmbTemp", "Remote2");
    Load([d1 = d1, d3 = d3](Pins& pins) { pins.D1 = d1, pins.D3 = d3; });
    EXPECT_EQ(LiveRows(*window, "Temp", 7), live);
    EXPECT_EQ(Items("cmbTemp").join('|'), items);
    EXPECT_EQ(Held(*window, "cmbTemp"), "0") << "the first again";
  }
}

TEST_F(Limits, AFanIsListedByItsPinAndAlsoNeedsItsTachToBeLive) {
  Put(desk.board.Chip(), "07=FE");
  Load([](Pins& pins) { pins.Pin8 = pins.Pin22 = 0; });
  EXPECT_EQ(Items("cmbFan").join('|'), "Fan1|Fan2|Fan3|Fan4|Fan5|Fan7");
  EXPECT_EQ(LiveRows(*window, "Fan", 8), "01111010");
  Put(desk.board.Chip(), "07=01");
  Load([](Pins& pins) { pins.Pin8 = 1; });
  EXPECT_EQ(LiveRows(*window, "Fan", 8), "10000000");
  EXPECT_EQ(Items("cmbFan").size(), 7);
}

TEST_F(Limits, VoltageLabelsAreEnabledAndNamedOnceTheirChannelIsListed) {
  Load();
  const auto enabled = [this] {
    std::string all;
    for (int row = 0; row < 13; ++row) all += Enabled(At("lblVolt", row)) ? '1' : '0';
    return all;
  };
  EXPECT_EQ(enabled(), "0000000111100");
  Load([](Pins& pins) {
    pins = {};
    pins.Pin15 = pins.Pin28 = pins.Pin29 = 1;
    pins.Pin25 = 2;
  });
  EXPECT_EQ(Held(*window, "lblVolt(3..9)"),
            "1.8V (pin15)|1.25V (pin19)|5V (pin21)|12V3  (pin22)|2.5V (pin23)|2.5V (pin24)|3.3V (pin25)");
  EXPECT_EQ(enabled(), "1111111111111") << "a load never disables a label";
}

}  // namespace
}  // namespace zth::testing
