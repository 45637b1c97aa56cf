// What is drawn around and over a chart's traces.
#include "tests/widgets/strip/StripGround.h"

namespace zth::widgets {
namespace {

using StripAround = StripTest;

/// The texts of the painted legend, with the x where each ends.
std::map<QString, int> Drawn(Strip& strip) {
  zth::testing::TextRecorder recorder(strip);
  std::map<QString, int> ends;
  for (const auto& text : recorder.texts) ends[text.text] = static_cast<int>(text.place.right());
  return ends;
}

TEST_F(StripAround, TellsTheValuesUnderTheCursorInTheLegendAtOnePlace) {
  StripSetup setup = TwoZones();
  setup.axes[0].unit = "°C";
  setup.axes[1].unit = " RPM";
  setup.traces.push_back({.colour = Qt::blue, .shownWith = 0, .name = "Low"});  // without a row of its own
  Use(setup);
  for (int i = 0; i < 200; ++i) {
    Feed(0, i < 100 ? 20.25 : 9.5);
    strip.PlotValue(2, 4300);
    strip.PlotValue(3, 7);
  }
  EXPECT_FALSE(Drawn(strip).contains("Low"));
  std::map<QString, std::set<int>> ends;  // the ends seen for each text, over all places of the cursor
  for (int x = 400; x < 640; x += 3) {
    tests::Mouse(strip, QEvent::MouseMove, QPoint(x, 120), Qt::NoButton);
    for (const auto& [text, end] : Drawn(strip)) ends[text].insert(end);
  }
  for (const char* name : {"Local", "Remote1", "Tach1", "Low"}) EXPECT_EQ(ends[name].size(), 1U) << name;
  EXPECT_TRUE(ends.contains("\u2013")) << "a trace without a value";
  for (const char* value : {"20.25°C", "9.50°C", "4300 RPM", "7.00°C"}) {
    EXPECT_EQ(ends[value], ends["20.25°C"]) << value << ": all values end in one line";
  }
  EXPECT_EQ(ends["20.25°C"].size(), 1U);
}

TEST_F(StripAround, TellsEachTracesOwnValueOfTheSampleUnderTheCursor) {
  Use(TwoZones());
  for (int i = 0; i < 9; ++i) {
    Feed(0, i, i == 0 ? 0 : 1);
    strip.PlotValue(1, 20 + i);
    strip.PlotValue(2, 1000 * i);
  }
  for (int x = 606; x < 646; x += 4) {
    tests::Mouse(strip, QEvent::MouseMove, QPoint(x, 120), Qt::NoButton);
    std::map<double, std::vector<QString>> rows;
    for (const auto& text : zth::testing::TextRecorder(strip).texts) rows[text.place.center().y()].push_back(text.text);
    std::map<QString, double> values;
    double at = -1;
    for (const auto& [y, row] : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        if (row[i].endsWith(" s")) at = row[i].chopped(2).toDouble();
        if (i > 0) values[row[i - 1]] = row[i].toDouble();
      }
    }
    EXPECT_NEAR(values["Local"], at, 0.6) << x;
    EXPECT_EQ(values["Tach1"], values["Local"] * 1000) << x;
  }
}

TEST_F(StripAround, HasItsMenuInButtonsThatTakeNothingOfThePlot) {
  auto* bar = strip.findChild<QWidget*>("fraStripBar");
  const auto press = [this](const char* name) { strip.findChild<QAbstractButton*>(name)->click(); };
  for (int i = 0; i < 300; ++i) Feed(0, 20 + i % 11);
  press("cmdStripFit");
  EXPECT_EQ(Ranges(), "100 s, 19 to 31, 0 to 12000");
  press("cmdStripHold");
  strip.SetXSpan(50);
  Feed(0, 20, 30);
  EXPECT_EQ(Ranges(), "50 s, 19 to 31, 0 to 12000, held") << "a zoom at the live edge does not let it go";
  EXPECT_EQ(strip.findChild<QWidget*>("cmdStripHold")->accessibleName(), "Live");
  press("cmdStripStart");
  EXPECT_EQ(Ranges(), "100 s, 0 to 60, 0 to 12000");
  EXPECT_EQ(After(Qt::Key_H), "100 s, 0 to 60, 0 to 12000, held");
  EXPECT_EQ(After(Qt::Key_H), "100 s, 0 to 60, 0 to 12000");
  press("cmdStripCopy");
  EXPECT_EQ(clipboard.picture, strip.Picture());
  press("cmdStripExport");
  EXPECT_NE(strip.findChild<QMenu*>("mnuStripExport"), nullptr);
  EXPECT_LT(bar->geometry().bottom(), 28) << "in the title's row";
  strip.resize(170, 300);
  Paint();
  EXPECT_TRUE(bar->isHidden()) << "where the row holds no more than the title";
}

TEST_F(StripAround, ShowsTheTimeOfDayOnRequest) {
  zth::testing::VirtualClock clock;
  clock.SetWallTime(QDateTime(QDate(2026, 3, 1), QTime(14, 5, 0)));
  Strip timed(clock), other(clock);
  Strip* const both[] = {&timed, &other};
  ShareTimeOfDay(both);
  timed.SetUp(TwoZones());
  timed.resize(800, 500);
  const QImage start = timed.Picture();
  for (int i = 0; i <= 40; ++i) {
    if (i > 0) clock.Advance(1000);
    timed.PlotValue(0, 20);
  }
  const QString elapsed = "Time (s),Local\n0.000,20\n";
  EXPECT_TRUE(timed.VisibleData().startsWith(elapsed));
  EXPECT_FALSE(Drawn(timed).contains("14:05:30"));
  QTest::keyClick(&timed, Qt::Key_T);
  EXPECT_TRUE(other.TimeOfDay()) << "with the other charts of the window";
  const auto drawn = Drawn(timed);
  for (const char* text : {"14:05:00", "14:05:30", "time of day"}) EXPECT_TRUE(drawn.contains(text)) << text;
  EXPECT_TRUE(timed.VisibleData().startsWith("Time (s),Local time,Local\n0.000,2026-03-01 14:05:00.000,20\n"));
  // Where a label stands the cursor tells the same time.
  const int width = timed.fontMetrics().horizontalAdvance("14:05:30");
  tests::Mouse(timed, QEvent::MouseMove, QPoint(drawn.at("14:05:30") - width / 2, 120), Qt::NoButton);
  int told = 100000;
  for (const auto& [text, end] : Drawn(timed)) {
    if (text.contains('.'))
      told = std::min(told, std::abs(QTime(14, 5, 30).msecsTo(QTime::fromString(text, "H:m:s.z"))));
  }
  EXPECT_LT(told, 500);
  timed.findChild<QAbstractButton*>("cmdStripTimeOfDay")->click();
  EXPECT_TRUE(!timed.TimeOfDay() && timed.VisibleData().startsWith(elapsed));
  strip.SetTimeOfDay(true);
  EXPECT_FALSE(strip.TimeOfDay()) << "without a wall clock";
}

TEST_F(StripAround, LabelsTheUsersOwnRangesWithRoundNumbers) {
  StripSetup setup{.mode = StripMode::XY, .xMin = -40, .xMax = 120, .xDivisions = 10};
  setup.axes = {{.min = 0, .max = 110, .divisions = 10}};
  Use(setup);
  const auto numbers = [this](bool beside) {
    std::vector<double> values;
    for (const auto& text : zth::testing::TextRecorder(strip).texts) {
      bool number = false;
      const double value = text.text.toDouble(&number);
      if (number && beside == (text.place.right() < 60 && text.place.center().y() < 478)) values.push_back(value);
    }
    return values;
  };
  using ::testing::ElementsAre;
  EXPECT_THAT(numbers(true), ElementsAre(110, 99, 88, 77, 66, 55, 44, 33, 22, 11, 0)) << "the start range as set up";
  EXPECT_THAT(numbers(false), ElementsAre(-40, -24, -8, 8, 24, 40, 56, 72, 88, 104, 120));
  tests::Wheel(strip, 120, Qt::NoModifier, {301, 123});
  for (const bool beside : {true, false}) {
    const std::vector<double> values = numbers(beside);
    ASSERT_GE(values.size(), 4U);
    const double step = std::abs(values[1] - values[0]);
    EXPECT_THAT(step, ::testing::AnyOf(10, 20)) << beside;
    for (const double value : values) EXPECT_NEAR(std::remainder(value, step), 0, 1e-9) << value;
  }
}

TEST_F(StripAround, MarksAtTheEdgeWhatIsCutOff) {
  for (int i = 0; i < 200; ++i) Feed(0, i < 100 ? 30 : 70);
  // A triangle is wide just below its tip at the top of the zone; a line along the edge is not.
  const auto wide = [this](int y) {
    const QImage picture = strip.Picture();
    int blue = 0;
    for (int x = 0; x < 670; ++x) blue += picture.pixelColor(x, y) == QColor(Qt::blue);
    return blue;
  };
  EXPECT_GE(wide(31), 4);
  strip.SetAxisIndex(0);
  strip.SetAxisMax(80);
  EXPECT_LE(wide(31), 1);
  strip.SetAxisMin(40);
  int edge = 250;
  while (edge > 200 && wide(edge) < 20) --edge;
  EXPECT_GE(wide(edge - 4), 4) << "and at the lower edge";
  Use({.mode = StripMode::XY, .axes = {{0, 110}}, .traces = {{.colour = Qt::red, .width = 8, .dots = true}}});
  for (const auto& [y, upper] : {std::pair{200, true}, {-20, false}}) {
    strip.ClearData();
    strip.PlotXY(0, -40, y);
    EXPECT_GT(PixelsOf(Qt::red), 5) << y;
    EXPECT_EQ(PixelsOf(Qt::red, 0.5) > 0, upper);
  }
}

TEST_F(StripAround, KeepsMovingLabelsAboutTheirHeightAndOffTheNewestSamples) {
  StripSetup setup = TwoZones();
  setup.labels = {{.slot = 1, .text = "Temp", .place = StripPlace::Free, .trace = 0, .left = 0.92, .top = 0.2},
                  {.slot = 2, .text = "Tmin", .place = StripPlace::Free, .trace = 1, .left = 0.86, .top = 0.2}};
  Use(setup);
  for (int i = 0; i < 300; ++i) {
    Feed(0, 36);
    strip.PlotValue(1, 36);
  }
  zth::testing::TextRecorder recorder(strip);
  std::map<QString, QRectF> places;
  for (const auto& text : recorder.texts) places[text.text] = text.place;
  const double right = strip.width() - 50;  // of the plot, where the newest sample is
  EXPECT_LT(places["Temp"].right(), right - 10);
  EXPECT_LT(places["Tmin"].right(), places["Temp"].left());
  EXPECT_NEAR(places["Temp"].center().y(), 28 + 0.2 * (strip.height() - 28 - 29), 3);
}

}  // namespace
}  // namespace zth::widgets
