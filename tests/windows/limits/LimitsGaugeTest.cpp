// The gauges of the limits window: the registers of their sliders, and the effects of a drag, a key and an empty list.
#include <iterator>
#include <numeric>

#include <QApplication>
#include <QFocusEvent>
#include <QTest>

#include "chip/ChipState.h"
#include "tests/windows/limits/LimitsDesk.h"
#include "widgets/LGauge.h"

namespace zth::testing {
namespace {

using Pins = chip::PinFunctionFlags;

/// Pin settings that list one half of the choices and then the other; two more states of pins 23 and 24.
void PutPins(Pins& pins, int state) {
  pins = {};
  pins.D1 = pins.D3 = state > 2;
  pins.Pin1 = pins.Pin2 = pins.Pin3 = pins.Pin4 = 1;
  pins.Pin28 = pins.Pin29 = state == 1 ? 1 : 2;
  if (state == 1) return;
  pins.Pin7 = pins.Pin8 = pins.Pin21 = pins.Pin22 = pins.Pin15 = pins.Pin20 = pins.Pin25 = pins.Pin26 = 1;
  pins.Pin23 = pins.Pin24 = static_cast<std::int16_t>(state - 1);
}

/// Channels with their two registers and their nominal voltage, one after the other.
struct GaugeChannels {
  int pins;
  const char* list;
  const char* gauge;
  const char* channels;
};

const std::vector<GaugeChannels> kGauges{
    {1, "cmbVolt", "ggeVolt",
     "12V1 (pin7) 6D 7C 12, 12V2 (pin8) 6E 7D 12, 3.3V (pin13) 70 68 3.3, 2.5V (pin15) 45 49 2.5, "
     "1.25V (pin19) 47 4B 1.25, 5V (pin21) 71 7E 5, 12V3 (pin22) 6F 7F 12, 2.5V (pin23) 72 69 2.5, "
     "2.5V (pin24) 73 6A 2.5, 3.3V (pin25) 74 6B 3.3, Vbatt (pin26) 75 6C 4, 1.5V (pin28) 76 4C 1.5, "
     "1.5V (pin29) 77 50 1.5"},
    {2, "cmbVolt", "ggeVolt",
     "1.8V (pin15) 45 49 1.8, 0.9V (pin19) 47 4B 0.9, 1.8V (pin23) 72 69 1.8, 1.8V (pin24) 73 6A 1.8, "
     "1.2V (pin25) 74 6B 1.2, 1.2V (pin26) 75 6C 1.2"},
    {3, "cmbVolt", "ggeVolt", "Vccp1 (pin23) 72 69 2.13, Vccp2 (pin24) 73 6A 2.13"},
    {4, "cmbVolt", "ggeVolt", "1.5V (pin23) 72 69 1.5, 1.5V (pin24) 73 6A 1.5"},
    {1, "cmbTemp", "ggeTemp", "Local 44 48 0, Remote2 46 4A 0"},
    {3, "cmbTemp", "ggeTemp", "Remote1 45 49 0, Remote3 47 4B 0"},
    {1, "cmbFan", "ggeFan", "Fan1 - 78 0, Fan2 - 79 0, Fan3 - 7A 0, Fan4 - 7B 0"},
    {2, "cmbFan", "ggeFan", "Fan5 - 7C 0, Fan6 - 7D 0, Fan7 - 7E 0, Fan8 - 7F 0"},
    {2, "cmbThermTimer", "ggeThermTimer", "THERM1 - 80 0, THERM2 - 81 0"},
    {3, "cmbTHERMPin", "ggeTHERMPin",
     "Local THERM1 - 4C 0, Remote1 THERM1 - 4D 0, Remote2 THERM1 - 4E 0, Remote3 THERM1 - 4F 0"},
    {3, "cmbTHERMPin", "ggeTHERMPin",
     "Local THERM2 - 50 0, Remote1 THERM2 - 51 0, Remote2 THERM2 - 52 0, Remote3 THERM2 - 53 0"},
};

TEST_F(Limits, EachChannelShowsItsOwnReadingAndWritesItsOwnRegistersInOrder) {
  Load();
  // Readings that grow from channel to channel.
  chip::MeasurementSet& readings = chip::Model.Measurements;
  std::iota(readings.Temperature.begin(), readings.Temperature.end(), 1.0F);
  std::iota(readings.TachRpm.begin(), readings.TachRpm.end(), 1);
  for (std::size_t i = 0; i < readings.Voltage.size(); ++i) readings.Voltage[i] = 0.01F * static_cast<float>(i + 1);
  readings.ThermPercent = {1, 2};
  for (const GaugeChannels& on : kGauges) {
    Load([&on](Pins& pins) { PutPins(pins, on.pins); });
    double shown = 0;
    for (const QString& row : QString(on.channels).split(", ")) {
      SCOPED_TRACE(row.toStdString());
      const auto reg = [&row](int place) { return row.section(' ', place, place).toInt(nullptr, 16); };
      const int low = reg(-3), high = reg(-2);
      const double nominal = row.section(' ', -1).toDouble();
      const bool pair = low != 0;
      const Traffic reads = pair ? Concat(R(low), R(high)) : Concat(R(high));
      // Away from the channel first, so that selecting it is a change.
      Desk::Get<QComboBox>(*window, on.list).setCurrentIndex(-1);
      if (pair) desk.board.Chip()[static_cast<std::size_t>(low)] = 0;
      desk.board.Chip()[static_cast<std::size_t>(high)] = 192;
      desk.board.TakeTraffic();
      PickItem(on.list, row.section(' ', 0, -4));
      EXPECT_EQ(desk.board.TakeTraffic(), reads);

      // A drag to the slider's own position; for a voltage, to the top of its scale.
      const std::string gauge = on.gauge;
      int code = gauge == "ggeFan" || gauge == "ggeThermTimer" ? 191 : 192;
      double to = Slider(on.gauge, 3);
      if (nominal > 0) {
        EXPECT_NEAR(to, nominal, 1e-6);
        EXPECT_EQ(Slider(on.gauge, 2), 0);
        to = Desk::Property(*window, on.gauge, "ScaleMax").toDouble();
        EXPECT_NEAR(to, nominal * 255 / 192, 0.00501);
        EXPECT_EQ(Needle(on.gauge, 0), to);
        EXPECT_EQ(Needle(on.gauge, 1), to / 2);
        code = nominal == 1.2 ? 0xFE : 0xFF;  // two decimals: at 1.2 V the top is the code below the last
      }
      Drag(on.gauge, 3, to);
      const Traffic writes = pair ? Concat(W(low, 0), W(high, code)) : Concat(W(high, code));
      EXPECT_EQ(desk.board.TakeTraffic(), Concat(writes, reads));
      desk.Advance(550);
      EXPECT_GT(Needle(on.gauge, 1), std::exchange(shown, Needle(on.gauge, 1)));
    }
  }
}

TEST_F(Limits, BothLimitsAreWrittenOnADragOfOneAndAreNotCheckedAgainstEachOther) {
  Load();
  desk.board.TakeTraffic();
  for (const auto& [number, to, sent] :
       {std::tuple{3, -10, "W44=40 W48=36 R44 R48"}, {2, 90, "W44=9A W48=36 R44 R48"}}) {
    Drag("ggeTemp", number, to);
    EXPECT_EQ(desk.board.TakeTraffic(), T(sent));
  }
}

TEST_F(Limits, SelectingTheCurrentChannelReadsItsLimitsAgain) {
  Load();
  Desk::Pick(*window, "cmbTemp", 0);  // this ends the load's own selection
  desk.board.Chip()[0x44] = 0x50;
  desk.board.TakeTraffic();
  Desk::Pick(*window, "cmbTemp", 0);
  EXPECT_EQ(desk.board.TakeTraffic(), T("R44 R48"));
  EXPECT_EQ(Slider("ggeTemp", 2), 16);
}

TEST_F(Limits, ADragWithNothingListedWritesNothingAndGoesBack) {
  Load([](Pins& pins) { pins = {}; });
  desk.board.TakeTraffic();
  chip::Model.Measurements.TachRpm = {777};
  for (const char* gauge : {"ggeFan", "ggeThermTimer"}) {
    Drag(gauge, 3, 60);
    EXPECT_EQ(Slider(gauge, 3), 0) << gauge;
  }
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
  EXPECT_TRUE(Enabled("cmbFan"));
  EXPECT_FALSE(Enabled("cmbThermTimer"));
  desk.Advance(550);
  EXPECT_EQ(Caption("ggeThermTimer") + Caption("ggeFan"), "Disabled 777rpm") << "the reading of the first";
  Load([](Pins& pins) { pins.Pin29 = 2; });
  EXPECT_TRUE(Enabled("cmbThermTimer"));
  EXPECT_EQ(Items("cmbThermTimer").join('|'), "THERM2");
}

/// The list and its item, the register, and the slider in the order of Tab.
struct KeyRow {
  const char *kind, *item;
  unsigned reg;
  int position;
};

struct LimitKeys : Limits {
  widgets::LGauge& Gauge(const KeyRow& row) { return Desk::Get<widgets::LGauge>(*window, QString("gge") + row.kind); }

  /// The limit with this code, with the focus on its slider.
  double Show(const KeyRow& row, int raw) {
    desk.board.Chip()[row.reg] = static_cast<std::uint8_t>(raw);
    Desk::Get<QComboBox>(*window, QString("cmb") + row.kind).setCurrentIndex(-1);
    PickItem((std::string("cmb") + row.kind).c_str(), row.item);
    QFocusEvent focus(QEvent::FocusIn, row.position == 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    QApplication::sendEvent(&Gauge(row), &focus);
    return Gauge(row).SliderValue(row.position);
  }

  /// The values that a drag can set, as shown afterwards.
  std::set<double> Reachable(const KeyRow& row) {
    Show(row, 0x80);
    std::set<double> reachable;
    widgets::LGauge& gauge = Gauge(row);
    const int slider = gauge.Sliders()[static_cast<std::size_t>(row.position)].number;
    for (double place = gauge.ScaleMin(); place <= gauge.ScaleMax(); place += gauge.Scale().Resolution()) {
      Drag((std::string("gge") + row.kind).c_str(), slider, gauge.Scale().Settle(place));
      reachable.insert(gauge.SliderValue(row.position));
    }
    return reachable;
  }

  void PressEach(const KeyRow& row, int raw, const std::set<double>& reachable) {
    using enum Qt::Key;
    static constexpr std::pair<Qt::Key, int> kKeys[]{{Key_Up, 1},         {Key_Down, -1},  {Key_PageUp, 10},
                                                     {Key_PageDown, -10}, {Key_End, 9999}, {Key_Home, -9999}};
    for (const auto& [key, steps] : kKeys) {
      const double before = Show(row, raw);
      const double after = After(reachable, before, steps);
      QTest::keyClick(&Gauge(row), key);
      ASSERT_EQ(Gauge(row).SliderValue(row.position), after)
          << row.item << ", raw " << raw << ", " << steps << " steps from " << before;
      EXPECT_TRUE(after != before || desk.board.Chip()[row.reg] == raw) << "nothing is written where nothing moves";
    }
  }

  /// Starting from a value, in the direction of that many steps.
  static double After(const std::set<double>& reachable, double before, int steps) {
    std::vector<double> ways{before};
    if (steps > 0) ways.insert(ways.end(), reachable.upper_bound(before), reachable.end());
    if (steps < 0) ways.insert(ways.end(), std::make_reverse_iterator(reachable.lower_bound(before)), reachable.rend());
    return ways[std::min(ways.size() - 1, static_cast<std::size_t>(std::abs(steps)))];
  }
};

TEST_F(LimitKeys, NoneMovesALimitTheWrongWayAndEachStepReachesItsNeighbour) {
  Load();
  Load([](Pins& pins) { PutPins(pins, 2); });
  for (const KeyRow& row :
       {KeyRow{"Temp", "Local", 0x44, 0}, KeyRow{"Temp", "Local", 0x48, 1}, KeyRow{"Volt", "0.9V (pin19)", 0x4B, 1},
        KeyRow{"Volt", "1.2V (pin25)", 0x74, 0}, KeyRow{"Fan", "Fan5", 0x7C, 0},
        KeyRow{"ThermTimer", "THERM2", 0x81, 0}, KeyRow{"THERMPin", "Local THERM2", 0x50, 0}}) {
    const std::set<double> reachable = Reachable(row);
    for (int raw = 0; raw <= 0xFF; ++raw) PressEach(row, raw, reachable);
  }
}

}  // namespace
}  // namespace zth::testing
