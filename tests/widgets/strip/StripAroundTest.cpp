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
