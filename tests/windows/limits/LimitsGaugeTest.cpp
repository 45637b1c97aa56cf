// The gauges of the limits window: which registers their sliders are, and what a drag, a key and an empty list do.
#include <QApplication>
#include <QFocusEvent>
#include <QTest>
#include <gmock/gmock.h>

#include "tests/windows/limits/LimitsDesk.h"
#include "widgets/LGauge.h"

namespace zth::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Pins = chip::PinFunctionFlags;

constexpr int kNone = -1;

struct Channel {
  const char* item;
  int low;  ///< register of slider 2, or kNone
  int high;
  double nominal = 0;  ///< volts; 0 for the others
};

struct GaugeChannels {
  const char* list;
  const char* gauge;
  std::vector<Channel> channels;
};

struct PinChoice {
  void (*pins)(Pins&);
  std::vector<GaugeChannels> gauges;
};

// Pins that list one half of the choices and the other; four states of pins 23 and 24 take two more.
void FirstPins(Pins& pins) {
  pins = {};
  pins.D1 = pins.D3 = false;
  pins.Pin1 = pins.Pin2 = pins.Pin3 = pins.Pin4 = 1;
  pins.Pin28 = pins.Pin29 = 1;
}
void SecondPins(Pins& pins) {
  FirstPins(pins);
  pins.Pin7 = pins.Pin8 = pins.Pin21 = pins.Pin22 = pins.Pin15 = pins.Pin20 = 1;
  pins.Pin23 = pins.Pin24 = pins.Pin25 = pins.Pin26 = 1;
  pins.Pin28 = pins.Pin29 = 2;
}
void ThirdPins(Pins& pins) {
  SecondPins(pins);
  pins.D1 = pins.D3 = true;
  pins.Pin23 = pins.Pin24 = 2;
}
void FourthPins(Pins& pins) {
  ThirdPins(pins);
  pins.Pin23 = pins.Pin24 = 3;
}

const std::vector<PinChoice> kPinChoices{
    {FirstPins,
     {{"cmbVolt",
       "ggeVolt",
       {{"12V1 (pin7)", 0x6D, 0x7C, 12},
        {"12V2 (pin8)", 0x6E, 0x7D, 12},
        {"3.3V (pin13)", 0x70, 0x68, 3.3},
        {"2.5V (pin15)", 0x45, 0x49, 2.5},
        {"1.25V (pin19)", 0x47, 0x4B, 1.25},
        {"5V (pin21)", 0x71, 0x7E, 5},
        {"12V3 (pin22)", 0x6F, 0x7F, 12},
        {"2.5V (pin23)", 0x72, 0x69, 2.5},
        {"2.5V (pin24)", 0x73, 0x6A, 2.5},
        {"3.3V (pin25)", 0x74, 0x6B, 3.3},
        {"Vbatt (pin26)", 0x75, 0x6C, 4},
        {"1.5V (pin28)", 0x76, 0x4C, 1.5},
        {"1.5V (pin29)", 0x77, 0x50, 1.5}}},
      {"cmbTemp", "ggeTemp", {{"Local", 0x44, 0x48}, {"Remote2", 0x46, 0x4A}}},
      {"cmbFan",
       "ggeFan",
       {{"Fan1", kNone, 0x78}, {"Fan2", kNone, 0x79}, {"Fan3", kNone, 0x7A}, {"Fan4", kNone, 0x7B}}}}},
    {SecondPins,
     {{"cmbVolt",
       "ggeVolt",
       {{"1.8V (pin15)", 0x45, 0x49, 1.8},
        {"0.9V (pin19)", 0x47, 0x4B, 0.9},
        {"1.8V (pin23)", 0x72, 0x69, 1.8},
        {"1.8V (pin24)", 0x73, 0x6A, 1.8},
        {"1.2V (pin25)", 0x74, 0x6B, 1.2},
        {"1.2V (pin26)", 0x75, 0x6C, 1.2}}},
      {"cmbFan",
       "ggeFan",
       {{"Fan5", kNone, 0x7C}, {"Fan6", kNone, 0x7D}, {"Fan7", kNone, 0x7E}, {"Fan8", kNone, 0x7F}}},
      {"cmbThermTimer", "ggeThermTimer", {{"THERM1", kNone, 0x80}, {"THERM2", kNone, 0x81}}}}},
    {ThirdPins,
     {{"cmbVolt", "ggeVolt", {{"Vccp1 (pin23)", 0x72, 0x69, 2.13}, {"Vccp2 (pin24)", 0x73, 0x6A, 2.13}}},
      {"cmbTemp", "ggeTemp", {{"Remote1", 0x45, 0x49}, {"Remote3", 0x47, 0x4B}}},
      {"cmbTHERMPin",
       "ggeTHERMPin",
       {{"Local THERM1", kNone, 0x4C},
        {"Remote1 THERM1", kNone, 0x4D},
        {"Remote2 THERM1", kNone, 0x4E},
        {"Remote3 THERM1", kNone, 0x4F},
        {"Local THERM2", kNone, 0x50},
        {"Remote1 THERM2", kNone, 0x51},
        {"Remote2 THERM2", kNone, 0x52},
        {"Remote3 THERM2", kNone, 0x53}}}}},
    {FourthPins, {{"cmbVolt", "ggeVolt", {{"1.5V (pin23)", 0x72, 0x69, 1.5}, {"1.5V (pin24)", 0x73, 0x6A, 1.5}}}}},
};

TEST_F(Limits, EachChannelShowsAndWritesItsOwnRegistersInOrder) {
  Load();
  const auto expectOf = [this](const GaugeChannels& on, const Channel& channel) {
    const bool pair = channel.low != kNone;
    const Traffic reads = pair ? Concat(R(channel.low), R(channel.high)) : Concat(R(channel.high));
    // Away from the channel first, so that picking it is a change.
    Desk::Get<QComboBox>(*window, on.list).setCurrentIndex(-1);
    if (pair) desk.board.Chip()[static_cast<std::size_t>(channel.low)] = 0;
    desk.board.Chip()[static_cast<std::size_t>(channel.high)] = 192;
    desk.board.TakeTraffic();
    PickItem(on.list, channel.item);
    EXPECT_EQ(desk.board.TakeTraffic(), reads);

    // A drag to where the slider stands; of a voltage, to the top of its scale.
    const std::string gauge = on.gauge;
    int code = gauge == "ggeFan" || gauge == "ggeThermTimer" ? 191 : 192;
    double to = Slider(on.gauge, 3);
    if (channel.nominal > 0) {
      EXPECT_NEAR(to, channel.nominal, 1e-6);
      EXPECT_EQ(Slider(on.gauge, 2), 0);
      to = Desk::Property(*window, on.gauge, "ScaleMax").toDouble();
      EXPECT_NEAR(to, channel.nominal * 255 / 192, 0.00501);
      EXPECT_EQ(Needle(on.gauge, 0), to);
      EXPECT_EQ(Needle(on.gauge, 1), to / 2);
      code = channel.nominal == 1.2 ? 0xFE : 0xFF;  // two decimals: at 1.2 V the top is the code below the last
    }
    Drag(on.gauge, 3, to);
    const Traffic writes = pair ? Concat(W(channel.low, 0), W(channel.high, code)) : Concat(W(channel.high, code));
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(writes, reads));
  };
  for (const PinChoice& choice : kPinChoices) {
    LoadAgain(choice.pins);
    for (const GaugeChannels& on : choice.gauges) {
      for (const Channel& channel : on.channels) {
        SCOPED_TRACE(channel.item);
        expectOf(on, channel);
      }
    }
  }
}

TEST_F(Limits, ADragWritesTheEncodedLimitAndTheSliderShowsWhatTheChipHolds) {
  struct Case {
    const char* gauge;
    double dragged;
    std::size_t reg;
    int raw;
    double shown;
  };
  Load();
  for (const Case& row :
       {Case{"ggeTemp", 25.5, 0x48, 90, 26}, Case{"ggeTemp", -64, 0x48, 0, -64}, Case{"ggeFan", 0, 0x78, 255, 0},
        Case{"ggeFan", 1000, 0x78, 21, 959}, Case{"ggeThermTimer", 100, 0x80, 255, 100},
        Case{"ggeThermTimer", 50, 0x80, 127, 50}, Case{"ggeTHERMPin", 24.5, 0x4D, 88, 24}}) {
    Drag(row.gauge, 3, row.dragged);
    EXPECT_EQ(desk.board.Chip()[row.reg], row.raw) << row.gauge << " " << row.dragged;
    EXPECT_NEAR(Slider(row.gauge, 3), row.shown, 0.5) << row.gauge << " " << row.dragged;
  }
}

TEST_F(Limits, BothLimitsGoOutOnADragOfOneAndAreNotCheckedAgainstEachOther) {
  Load();
  desk.board.TakeTraffic();
  Drag("ggeTemp", 3, -10);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x44, 0x40), W(0x48, 54), R(0x44), R(0x48)));
  Drag("ggeTemp", 2, 90);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x44, 154), W(0x48, 54), R(0x44), R(0x48)));
}

TEST_F(Limits, PickingTheChannelThatShowsReadsItsLimitsAgain) {
  Load();
  Desk::Pick(*window, "cmbTemp", 0);  // the load's own selection is over with this one
  desk.board.Chip()[0x44] = 0x50;
  desk.board.TakeTraffic();
  Desk::Pick(*window, "cmbTemp", 0);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(R(0x44), R(0x48)));
  EXPECT_EQ(Slider("ggeTemp", 2), 16);
}

TEST_F(Limits, ADragWithNothingListedWritesNothingAndGoesBack) {
  Load([](Pins& pins) {
    pins.Pin1 = pins.Pin2 = pins.Pin3 = pins.Pin4 = pins.Pin7 = pins.Pin8 = pins.Pin21 = pins.Pin22 = 0;
    pins.Pin28 = pins.Pin29 = 0;
  });
  desk.board.TakeTraffic();
  chip::Measurements.TachRpm = {777};
  for (const char* gauge : {"ggeFan", "ggeThermTimer"}) {
    EXPECT_EQ(Slider(gauge, 3), 0);
    Drag(gauge, 3, 60);
    EXPECT_EQ(Slider(gauge, 3), 0) << gauge;
  }
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty());
  EXPECT_TRUE(Enabled("cmbFan"));
  EXPECT_FALSE(Enabled("cmbThermTimer"));
  desk.Advance(550);
  EXPECT_EQ(Caption("ggeThermTimer"), "Disabled");
  EXPECT_EQ(Caption("ggeFan"), " 777rpm") << "the reading of the first";
  LoadAgain([](Pins& pins) { pins.Pin29 = 2; });
  EXPECT_TRUE(Enabled("cmbThermTimer"));
  EXPECT_EQ(Items("cmbThermTimer").join('|'), "THERM2");
}

TEST_F(Limits, TheMouseDragsASliderAndReportsAtItsEnd) {
  Load();
  desk.Main().show();
  auto& gauge = Desk::Get<widgets::LGauge>(*window, "ggeTemp");
  desk.board.TakeTraffic();
  const QPoint from = gauge.SliderRect(1).center();
  const QPoint to(gauge.width() / 2, from.y());
  QTest::mousePress(&gauge, Qt::LeftButton, {}, from);
  QTest::mouseMove(&gauge, (from + to) / 2);
  QTest::mouseMove(&gauge, to);
  EXPECT_THAT(desk.board.TakeTraffic(), IsEmpty()) << "nothing on the way";
  QTest::mouseRelease(&gauge, Qt::LeftButton, {}, to);
  const int raw = desk.board.Chip()[0x48];
  EXPECT_NE(raw, 0x95);
  EXPECT_THAT(desk.board.TakeTraffic(), ElementsAre(W(0x44, 0x40), W(0x48, raw), R(0x44), R(0x48)));
}

TEST_F(Limits, OneArrowKeyMovesEachLimitByACodeAtLeastInItsDirection) {
  Load();
  LoadAgain(SecondPins);
  struct Case {
    const char* list;
    const char* item;
    const char* gauge;
    int reg;
    int position;   ///< of the slider in the order of Tab
    int direction;  ///< of the register when the limit goes up
  };
  for (const Case& row : {
           Case{"cmbTemp", "Local", "ggeTemp", 0x44, 0, 1},
           Case{"cmbTemp", "Local", "ggeTemp", 0x48, 1, 1},
           Case{"cmbVolt", "0.9V (pin19)", "ggeVolt", 0x4B, 1, 1},
           Case{"cmbVolt", "1.2V (pin25)", "ggeVolt", 0x74, 0, 1},
           Case{"cmbFan", "Fan5", "ggeFan", 0x7C, 0, -1},
           Case{"cmbThermTimer", "THERM2", "ggeThermTimer", 0x81, 0, 1},
           Case{"cmbTHERMPin", "Local THERM2", "ggeTHERMPin", 0x50, 0, 1},
       }) {
    auto& gauge = Desk::Get<widgets::LGauge>(*window, row.gauge);
    for (const int raw : {20, 100, 150, 192}) {
      for (const auto& [key, way] : {std::pair{Qt::Key_Up, 1}, std::pair{Qt::Key_Down, -1}}) {
        desk.board.Chip()[static_cast<std::size_t>(row.reg)] = static_cast<std::uint8_t>(raw);
        Desk::Get<QComboBox>(*window, row.list).setCurrentIndex(-1);
        PickItem(row.list, row.item);
        const double before = gauge.SliderValue(row.position);
        // Tab comes to the first slider, Shift+Tab to the last.
        QFocusEvent focus(QEvent::FocusIn, row.position == 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        QApplication::sendEvent(&gauge, &focus);
        QTest::keyClick(&gauge, key);
        const int now = desk.board.Chip()[static_cast<std::size_t>(row.reg)];
        EXPECT_GT((now - raw) * way * row.direction, 0) << row.item << " from " << raw << " to " << now;
        EXPECT_GT((gauge.SliderValue(row.position) - before) * way, 0) << row.item << " from " << raw;
      }
    }
  }
}

}  // namespace
}  // namespace zth::testing
