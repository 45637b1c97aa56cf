#include <array>
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
  /// The value of a trace's newest point; -1 when there is none.
  double Newest(int chart, int trace) {
    const QVariantList points = Chart(chart).TracePoints(trace);
    return points.isEmpty() ? -1 : points.back().toList().at(1).toDouble();
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

  const std::array<QString, 4> temperatures{"Local = 25.25°C", "Remote1 = -63.75°C", "Remote2 = .5°C",
                                            "Remote3 = 191°C"};
  for (int i = 0; i < 4; ++i) {
    const auto at = static_cast<std::size_t>(i);
    for (const int chart : {0, 3, 4}) {
      EXPECT_EQ(Newest(chart, i), static_cast<double>(now.Temperature[at])) << chart << ' ' << i;
      EXPECT_EQ(Label(chart, i + 1), temperatures[at]);
    }
    EXPECT_EQ(Newest(2, i), now.PwmPercent[at]);
    EXPECT_EQ(Newest(4, i + 4), now.PwmPercent[at]);
    const QString pwm = QString("PWM%1=%2%").arg(i + 1).arg(now.PwmPercent[at]);
    EXPECT_EQ(Label(2, i + 1), pwm);
    EXPECT_EQ(Label(4, i + 6), pwm);
  }
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(Newest(1, i), now.TachRpm[static_cast<std::size_t>(i)]);
    EXPECT_EQ(Newest(3, i + 4), now.TachRpm[static_cast<std::size_t>(i)]);
    const QString tach = QString("Tach%1=%2").arg(i + 1).arg(now.TachRpm[static_cast<std::size_t>(i)]);
    EXPECT_EQ(Label(1, i + 1), tach);
    EXPECT_EQ(Label(3, i + 6), tach);
  }
  EXPECT_EQ(Label(3, 5), "Fan Speed (RPM)");
  EXPECT_EQ(Label(4, 5), "PWM Drive (% Duty)");
  EXPECT_EQ(Newest(5, 0), 0.5);
  EXPECT_EQ(Newest(5, 1), 1.75);
  EXPECT_EQ(Newest(5, 2), 5.5);
  EXPECT_EQ(Newest(5, 3), -1);
  EXPECT_EQ(Newest(6, 0), 12.5);
  EXPECT_EQ(Newest(6, 1), 99);
  EXPECT_EQ(Label(6, 1) + Label(6, 2), "THERM1THERM2");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "graphs cost the link nothing";
}

TEST_F(GraphTest, ChartsStandAsPrescribed) {
  struct Axis {
    double max, top, bottom;
  };
  struct Row {
    const char* item;
    const char* title;
    std::vector<Axis> axes;
    const char* colours;  ///< a letter each trace
    const char* axisOfTraces;
  };
  const std::map<char, QColor> colours{{'b', Qt::blue},          {'r', Qt::red},           {'g', QColor(0, 128, 0)},
                                       {'k', Qt::black},         {'m', Qt::magenta},       {'o', QColor(255, 128, 0)},
                                       {'l', QColor(0, 255, 0)}, {'a', QColor(128, 0, 0)}, {'n', QColor(0, 0, 128)}};
  const std::vector<Row> rows{
      {"Temperature Only", "Temperature (°C)", {{60, 0, 1}}, "brgk", "0000"},
      {"Tach Only", "Fan Speed (RPM)", {{12000, 0, 1}}, "brgkmola", "00000000"},
      {"PWM Only", "PWM Drive (% Duty)", {{105, 0, 1}}, "brgk", "0000"},
      {"Temperature and Tach", "Temperature (°C)", {{60, 0, .47}, {12000, .53, 1}}, "brgkbrgkmola", "000011111111"},
      {"Temperature and PWM", "Temperature (°C)", {{60, 0, .47}, {105, .53, 1}}, "brgkbrgk", "00001111"},
      {"Voltage", "Voltage", {{6, 0, 1}}, "brgknnnnnnnnn", "0000000000000"},
      {"THERM", "THERM Timer %", {{105, 0, 1}}, "br", "00"}};
  auto& list = Desk::Get<QComboBox>(Graph(), "cmbGraph");
  ASSERT_EQ(list.count(), 7);
  for (int i = 0; i < 7; ++i) {
    const Row& row = rows[static_cast<std::size_t>(i)];
    SCOPED_TRACE(row.item);
    Strip& chart = Chart(i);
    EXPECT_EQ(list.itemText(i), row.item);
    EXPECT_EQ(Label(i, 0), row.title);
    EXPECT_EQ(chart.XSpan(), 100);
    EXPECT_EQ(chart.XEnd(), 10);
    EXPECT_EQ(chart.toolTip(), "Drag the arrows at the edges of this graph to zoom in and out");
    ASSERT_EQ(chart.AxisCount(), static_cast<int>(row.axes.size()));
    for (int axis = 0; axis < chart.AxisCount(); ++axis) {
      const Axis& expected = row.axes[static_cast<std::size_t>(axis)];
      chart.SetAxisIndex(axis);
      EXPECT_EQ(chart.AxisMin(), 0);
      EXPECT_EQ(chart.AxisMax(), expected.max);
      EXPECT_DOUBLE_EQ(chart.AxisAreaTop(), expected.top);
      EXPECT_DOUBLE_EQ(chart.AxisAreaBottom(), expected.bottom);
    }
    ASSERT_EQ(chart.TraceCount(), static_cast<int>(std::string(row.colours).size()));
    for (int trace = 0; trace < chart.TraceCount(); ++trace) {
      EXPECT_EQ(chart.TraceColour(trace), colours.at(row.colours[trace])) << trace;
      EXPECT_EQ(chart.TraceAxis(trace), row.axisOfTraces[trace] - '0') << trace;
      EXPECT_EQ(chart.TraceWidth(trace), 1);
    }
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
  const auto legend = [this](int count) {
    QStringList names;
    for (int slot = 1; slot <= count; ++slot) names << Label(5, slot);
    return names.join(',');
  };
  EXPECT_EQ(legend(13), "12V1,2.5V(P15),VBatt,,,,,,,,,,");
  chip::VoltagePresent[0] = false;
  desk.Advance(100);
  EXPECT_EQ(legend(4), "12V1,2.5V(P15),VBatt,");
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
