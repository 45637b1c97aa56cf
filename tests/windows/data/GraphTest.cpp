#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/support/Seen.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using widgets::Strip;
using windows::Shared;

class GraphTest : public DataTest {
 protected:
  windows::ChildWindow& Graph() { return desk.Open("frmGraph"); }
  Strip& Chart(int index) { return Desk::Get<Strip>(Graph(), QString("stpGraph(%1)").arg(index)); }
  std::string Labels(int chart, int first, int last) { return Captions(Chart(chart), first, last); }
  /// The newest values of a chart's traces from a given one on; -1 where there is none.
  std::vector<double> Values(int chart, int first, std::size_t count) {
    std::vector<double> values;
    while (values.size() < count) {
      const Points points = PointsOf(Chart(chart), first++);
      values.push_back(points.empty() ? -1 : points.back().second);
    }
    return values;
  }
  qsizetype Samples(int chart) { return Chart(chart).TracePoints(0).size(); }
};

TEST_F(GraphTest, FeedsAllSevenChartsWithWhatWasMeasuredLast) {
  auto& now = chip::Model.Measurements;
  now.Temperature = {25.25F, -63.75F, 0.5F, 191};
  now.TachRpm = {5400, 1, 2, 3, 4, 5, 6, 200000};
  now.PwmPercent = {42, 0, 100, 7};
  for (std::size_t i = 0; i < now.Voltage.size(); ++i) now.Voltage[i] = static_cast<float>(i) / 4;
  now.ThermPercent = {12.5F, 99};
  chip::Model.VoltagePresent.fill(false);
  for (const std::size_t channel : {2U, 7U, 22U}) chip::Model.VoltagePresent[channel] = true;
  Graph();
  desk.board.TakeTraffic();
  desk.Advance(60);

  using Numbers = std::vector<double>;
  const Numbers degrees{25.25, -63.75, 0.5, 191};
  const Numbers rpm{5400, 1, 2, 3, 4, 5, 6, 200000};
  const Numbers percent{42, 0, 100, 7};
  const QString temps = "Local = 25.25°C|Remote1 = -63.75°C|Remote2 = .5°C|Remote3 = 191°C";
  const QString tachs = "Tach1=5400|Tach2=1|Tach3=2|Tach4=3|Tach5=4|Tach6=5|Tach7=6|Tach8=200000";
  const QString pwms = "PWM1=42%|PWM2=0%|PWM3=100%|PWM4=7%";
  const std::tuple<int, int, Numbers, int, QString> rows[]{
      {0, 0, degrees, 1, temps},
      {1, 0, rpm, 1, tachs},
      {2, 0, percent, 1, pwms},
      {3, 0, degrees, 1, temps},
      {3, 4, rpm, 5, "Fan Speed (RPM)|" + tachs},
      {4, 0, degrees, 1, temps},
      {4, 4, percent, 5, "PWM Drive (% Duty)|" + pwms},
      {5, 0, {0.5, 1.75, 5.5, -1}, 1, "3.3V(P13)|5V(P21)|1.5V2|"},
      {6, 0, {12.5, 99}, 1, "THERM1|THERM2"},
  };
  for (const auto& [chart, trace, values, slot, labels] : rows) {
    EXPECT_EQ(Values(chart, trace, values.size()), values) << chart;
    EXPECT_EQ(Labels(chart, slot, slot + static_cast<int>(labels.count('|'))), labels.toStdString()) << chart;
  }
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "graphs cost the link nothing";
}

TEST_F(GraphTest, OneChartShowsAndFillsTheWindow) {
  windows::ChildWindow& window = Graph();
  EXPECT_EQ(Desk::Text(window, "cmbGraph"), "Temperature and Tach");
  for (const int shown : {3, 0, 1, 2, 3, 4, 5, 6}) {
    Desk::Pick(window, "cmbGraph", shown);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(Chart(i).isHidden(), i != shown) << i;
    EXPECT_EQ(Chart(shown).Left(), 0);
    EXPECT_EQ(Chart(shown).Top(), 960);
    EXPECT_EQ(Chart(shown).Width(), window.width() * 15);
    EXPECT_EQ(Chart(shown).Height(), (window.height()) * 15 - 960 - 495) << "500 twips are 33 pixels";
    window.parentWidget()->resize(900 - shown, 640);
    Desk::Settle();
  }
  EXPECT_EQ(Desk::Text(Reopen("frmGraph"), "cmbGraph"), "Temperature and Tach");
}

TEST_F(GraphTest, UsesThePeriodWhileItIsTyped) {
  const std::tuple<const char*, int, bool> rows[]{
      {"200", 200, false},    {"0", 200, true},        {"", 200, true},        {"fast", 200, true},
      {"-5", 200, true},      {"0.5", 200, true},      {"1", 1, false},        {"32.5", 32, false},
      {"33.5 ms", 34, false}, {"32767", 32767, false}, {"32768", 32767, true}, {"1e9", 32767, true},
      {"400", 400, false}};
  for (const auto& [text, period, marked] : rows) {
    Desk::Type(Graph(), "txtUpdate", text);
    EXPECT_EQ(Shared.GraphPeriodMs, period) << text;
    const auto& box = Desk::Get<QWidget>(Graph(), "txtUpdate");
    EXPECT_EQ(box.palette().color(QPalette::Base) != Graph().palette().color(QPalette::Base), marked) << text;
    EXPECT_EQ(box.toolTip().contains(QString("every %1 ms").arg(period)), marked) << text;
  }
  EXPECT_EQ(Desk::Text(Reopen("frmGraph"), "txtUpdate"), "400") << "the period outlives the window";
  const qsizetype before = Samples(0);
  desk.Advance(4000);
  EXPECT_NEAR(static_cast<double>(Samples(0) - before), 4000.0 / 450, 1.5) << "to the next tick after 400 ms";
}

TEST_F(GraphTest, TheVoltageLegendKeepsTheNamesFromWhenItOpened) {
  chip::Model.VoltagePresent.fill(false);
  for (const std::size_t channel : {0U, 3U, 20U}) chip::Model.VoltagePresent[channel] = true;
  Graph();
  EXPECT_EQ(Labels(5, 1, 13), "12V1|2.5V(P15)|VBatt||||||||||");
  chip::Model.VoltagePresent[0] = false;
  desk.Advance(100);
  EXPECT_EQ(Labels(5, 1, 4), "12V1|2.5V(P15)|VBatt|");
  EXPECT_EQ(Chart(5).TracePoints(2).size(), 0);

  // More than the usual thirteen of a chart.
  chip::Model.VoltagePresent.fill(true);
  chip::Model.Measurements.Voltage[22] = 1.5F;
  Reopen("frmGraph");
  desk.Advance(100);
  EXPECT_EQ(Chart(5).TraceCount(), 23);
  EXPECT_EQ(Labels(5, 23, 23), "1.5V2");
  EXPECT_EQ(Values(5, 22, 1), std::vector{1.5});
  EXPECT_EQ(Chart(5).TraceColour(22), QColor(0, 0, 128));
}

}  // namespace
}  // namespace zth::testing
