#include <algorithm>
#include <map>
#include <vector>

#include <QComboBox>
#include <QLineEdit>
#include <QMdiSubWindow>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/windows/data/DataGround.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using widgets::Strip;
using windows::GraphPeriodMs;

class GraphTest : public DataTest {
 protected:
  windows::ChildWindow& Graph() { return desk.Open("frmGraph"); }
  Strip& Chart(int index) { return Desk::Get<Strip>(Graph(), QString("stpGraph(%1)").arg(index)); }
  QString Label(int chart, int slot) {
    Chart(chart).SetLabelIndex(slot);
    return Chart(chart).Caption();
  }
  QString Labels(int chart, int first, int last) {
    QStringList names;
    for (int slot = first; slot <= last; ++slot) names << Label(chart, slot);
    return names.join('|');
  }
  /// The value of a trace's newest point; -1 when there is none.
  double Newest(int chart, int trace) {
    const QVariantList points = Chart(chart).TracePoints(trace);
    return points.isEmpty() ? -1 : points.back().toList().at(1).toDouble();
  }
  /// The newest values of a chart's traces from one on.
  std::vector<double> Values(int chart, int first, int count) {
    std::vector<double> values;
    for (int trace = first; trace < first + count; ++trace) values.push_back(Newest(chart, trace));
    return values;
  }
  qsizetype Samples(int chart) { return Chart(chart).TracePoints(0).size(); }
};

TEST_F(GraphTest, FeedsAllSevenChartsWithWhatWasMeasuredLast) {
  auto& now = chip::Measurements;
  now.Temperature = {25.25F, -63.75F, 0.5F, 191};
  now.TachRpm = {5400, 1, 2, 3, 4, 5, 6, 200000};
  now.PwmPercent = {42, 0, 100, 7};
  for (std::size_t i = 0; i < now.Voltage.size(); ++i) now.Voltage[i] = static_cast<float>(i) / 4;
  now.ThermPercent = {12.5F, 99};
  chip::VoltagePresent.fill(false);
  for (const std::size_t channel : {2U, 7U, 22U}) chip::VoltagePresent[channel] = true;
  Graph();
  desk.board.TakeTraffic();
  desk.Advance(60);

  using Numbers = std::vector<double>;
  for (const int chart : {0, 3, 4}) {
    EXPECT_EQ(Values(chart, 0, 4), (Numbers{25.25, -63.75, 0.5, 191})) << chart;
    EXPECT_EQ(Labels(chart, 1, 4), "Local = 25.25°C|Remote1 = -63.75°C|Remote2 = .5°C|Remote3 = 191°C") << chart;
  }
  const Numbers rpm{5400, 1, 2, 3, 4, 5, 6, 200000};
  const QString tachs = "Tach1=5400|Tach2=1|Tach3=2|Tach4=3|Tach5=4|Tach6=5|Tach7=6|Tach8=200000";
  EXPECT_EQ(Values(1, 0, 8), rpm);
  EXPECT_EQ(Labels(1, 1, 8), tachs);
  EXPECT_EQ(Values(3, 4, 8), rpm);
  EXPECT_EQ(Labels(3, 5, 13), "Fan Speed (RPM)|" + tachs);
  const Numbers percent{42, 0, 100, 7};
  const QString pwms = "PWM1=42%|PWM2=0%|PWM3=100%|PWM4=7%";
  EXPECT_EQ(Values(2, 0, 4), percent);
  EXPECT_EQ(Labels(2, 1, 4), pwms);
  EXPECT_EQ(Values(4, 4, 4), percent);
  EXPECT_EQ(Labels(4, 5, 9), "PWM Drive (% Duty)|" + pwms);
  EXPECT_EQ(Values(5, 0, 4), (Numbers{0.5, 1.75, 5.5, -1}));
  EXPECT_EQ(Values(6, 0, 2), (Numbers{12.5, 99}));
  EXPECT_EQ(Labels(6, 1, 2), "THERM1|THERM2");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "graphs cost the link nothing";
}

TEST_F(GraphTest, ChartsStandAsPrescribed) {
  // Each axis with its top value and its part of the height; each trace with its axis and the letter of its colour.
  const std::map<QString, QColor> colours{
      {"b", Qt::blue},          {"r", Qt::red},           {"g", QColor(0, 128, 0)},
      {"k", Qt::black},         {"m", Qt::magenta},       {"o", QColor(255, 128, 0)},
      {"l", QColor(0, 255, 0)}, {"a", QColor(128, 0, 0)}, {"n", QColor(0, 0, 128)}};
  const QStringList expected{
      "Temperature Only: Temperature (°C) 60@0-1 0b0r0g0k",
      "Tach Only: Fan Speed (RPM) 12000@0-1 0b0r0g0k0m0o0l0a",
      "PWM Only: PWM Drive (% Duty) 105@0-1 0b0r0g0k",
      "Temperature and Tach: Temperature (°C) 60@0-0.47 12000@0.53-1 0b0r0g0k1b1r1g1k1m1o1l1a",
      "Temperature and PWM: Temperature (°C) 60@0-0.47 105@0.53-1 0b0r0g0k1b1r1g1k",
      "Voltage: Voltage 6@0-1 0b0r0g0k0n0n0n0n0n0n0n0n0n",
      "THERM: THERM Timer % 105@0-1 0b0r",
  };
  const auto& list = Desk::Get<QComboBox>(Graph(), "cmbGraph");
  ASSERT_EQ(list.count(), expected.size());
  for (int i = 0; i < list.count(); ++i) {
    Strip& chart = Chart(i);
    QString found = list.itemText(i) + ": " + Label(i, 0) + " ";
    for (int axis = 0; axis < chart.AxisCount(); ++axis) {
      chart.SetAxisIndex(axis);
      EXPECT_EQ(chart.AxisMin(), 0);
      found += QString("%1@%2-%3 ").arg(chart.AxisMax()).arg(chart.AxisAreaTop()).arg(chart.AxisAreaBottom());
    }
    for (int trace = 0; trace < chart.TraceCount(); ++trace) {
      const auto colour =
          std::ranges::find(colours, chart.TraceColour(trace), &std::pair<const QString, QColor>::second);
      found += QString::number(chart.TraceAxis(trace)) + (colour == colours.end() ? "?" : colour->first);
      EXPECT_EQ(chart.TraceWidth(trace), 1);
    }
    EXPECT_EQ(found, expected[i]);
    EXPECT_EQ(chart.XSpan(), 100);
    EXPECT_EQ(chart.XEnd(), 10);
  }
}

TEST_F(GraphTest, OneChartShowsAndFillsTheWindow) {
  windows::ChildWindow& window = Graph();
  EXPECT_EQ(Desk::Text(window, "cmbGraph"), "Temperature and Tach");
  const auto expectShown = [&](int shown) {
    for (int i = 0; i < 7; ++i) EXPECT_EQ(Chart(i).isHidden(), i != shown) << i;
    EXPECT_EQ(Chart(shown).Left(), 0);
    EXPECT_EQ(Chart(shown).Top(), 960);
    EXPECT_EQ(Chart(shown).Width(), window.width() * 15);
    EXPECT_EQ(Chart(shown).Height(), (window.height()) * 15 - 960 - 495) << "500 twips are 33 pixels";
  };
  expectShown(3);
  for (int i = 0; i < 7; ++i) {
    Desk::Pick(window, "cmbGraph", i);
    expectShown(i);
  }
  window.parentWidget()->resize(900, 640);
  Desk::Settle();
  expectShown(6);
  Desk::Pick(window, "cmbGraph", 0);
  expectShown(0);
  Desk::Pick(window, "cmbGraph", 2);
  Graph().Unload();
  Desk::Settle();
  EXPECT_EQ(Desk::Text(Graph(), "cmbGraph"), "Temperature and Tach");
}

TEST_F(GraphTest, FeedsHiddenChartsFromOpeningToClosing) {
  Graph();
  desk.Advance(1000);
  // More than 50 ms have to pass from one feeding to the next: every second tick.
  for (int i = 0; i < 7; ++i) EXPECT_NEAR(static_cast<double>(Samples(i)), 10, 1) << i;
  Graph().Unload();
  Desk::Settle();
  desk.Advance(1000);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(Samples(i), 0) << "a new window begins empty";
  desk.Advance(100);
  EXPECT_GT(Samples(6), 0);
}

TEST_F(GraphTest, TakesThePeriodWhileItIsTyped) {
  struct Row {
    const char* text;
    int period;
    bool marked;
  };
  for (const Row row : {Row{"200", 200, false}, Row{"0", 200, true}, Row{"", 200, true}, Row{"fast", 200, true},
                        Row{"-5", 200, true}, Row{"0.4", 200, true}, Row{"0.5", 200, true}, Row{"1", 1, false},
                        Row{"32.5", 32, false}, Row{"33.5 ms", 34, false}, Row{"32767", 32767, false},
                        Row{"32768", 32767, true}, Row{"1e9", 32767, true}, Row{"70", 70, false}}) {
    Desk::Type(Graph(), "txtUpdate", row.text);
    EXPECT_EQ(GraphPeriodMs, row.period) << row.text;
    const auto& box = Desk::Get<QLineEdit>(Graph(), "txtUpdate");
    const bool coloured = box.palette().color(QPalette::Base) != Graph().palette().color(QPalette::Base);
    EXPECT_EQ(coloured, row.marked) << row.text;
    EXPECT_EQ(box.toolTip().contains(QString("every %1 ms").arg(row.period)), row.marked) << row.text;
  }
  Graph().Unload();
  Desk::Settle();
  EXPECT_EQ(Desk::Text(Graph(), "txtUpdate"), "70") << "the period outlives the window";
  Desk::Type(Graph(), "txtUpdate", "400");
  const qsizetype before = Samples(0);
  desk.Advance(4000);
  EXPECT_NEAR(static_cast<double>(Samples(0) - before), 4000.0 / 450, 1.5) << "to the next tick after 400 ms";
}

TEST_F(GraphTest, TheVoltageLegendHoldsTheNamesOfItsOpening) {
  chip::VoltagePresent.fill(false);
  for (const std::size_t channel : {0U, 3U, 20U}) chip::VoltagePresent[channel] = true;
  Graph();
  EXPECT_EQ(Labels(5, 1, 13), "12V1|2.5V(P15)|VBatt||||||||||");
  chip::VoltagePresent[0] = false;
  desk.Advance(100);
  EXPECT_EQ(Labels(5, 1, 4), "12V1|2.5V(P15)|VBatt|");
  EXPECT_EQ(Chart(5).TracePoints(2).size(), 0);

  // More than the thirteen that a chart has as a rule.
  Graph().Unload();
  Desk::Settle();
  chip::VoltagePresent.fill(true);
  chip::Measurements.Voltage[22] = 1.5F;
  Graph();
  desk.Advance(100);
  EXPECT_EQ(Chart(5).TraceCount(), 23);
  EXPECT_EQ(Label(5, 23), "1.5V2");
  EXPECT_EQ(Newest(5, 22), 1.5);
  EXPECT_EQ(Chart(5).TraceColour(22), QColor(0, 0, 128));
}

}  // namespace
}  // namespace zth::testing
