// The report of a run: well-formed, the same bytes for the same data, and no number but the data's.

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <QString>
#include <QXmlStreamReader>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "characterise/Markup.h"
#include "characterise/Report.h"
#include "characterise/SvgChart.h"
#include "chip/RegisterNames.h"

namespace zth::characterise {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using Json = nlohmann::json;

TachResult GoodTach(int number) {
  TachResult tach;
  tach.tach = number;
  tach.state = TachState::Good;
  tach.words = "Turns and follows.";
  for (const double duty : {100.0, 50.0, 0.0}) {
    tach.speeds.push_back({Direction::Down, duty, duty * 31.7, 2, 5, duty != 50});
  }
  tach.speeds.push_back({Direction::Up, 50, 1600, 2, 5, true});
  tach.stallDuty = 15;
  tach.startDuty = 25;
  tach.hysteresis = 10;
  tach.topRpm = 3170;
  tach.slope = Estimate{31.7, 0.05};
  tach.spinUp = 1.25;
  return tach;
}

Characterisation Measured() {
  Characterisation data;
  data.board = "Board <7> & \"Co\"";
  data.chip = "58h on USB";
  data.began = "2026-03-01 10:20:30";
  data.seconds = 754;
  data.settings.heat = data.settings.controller = true;
  TachResult dead;
  dead.tach = 5;
  dead.words = "No speed at any duty.";
  data.fans = {{1, "", {GoodTach(1), dead}}};
  HeatResult heat;
  heat.steps.push_back(
      {.duty = 60, .rise = {12.34, 0.05}, .gain = {0.2057, 0.0008}, .timeConstant = {41.5, 0.7}, .good = true});
  heat.steps.push_back({.duty = 35, .words = "The temperature did not rise."});
  heat.proposal.possible = true;
  heat.proposal.tmin = 47;
  heat.proposal.trange = 10;
  heat.proposal.fields.push_back({"Remote 1 Tmin", {}, 111, "47"});
  heat.proposal.curve = {{47, 30, 40}, {67, 100, 90}};
  data.heat = heat;
  ControllerResult controller;
  controller.steps.push_back({.heater = 60, .finalTemperature = 55.25, .overshoot = 1.75});
  data.controller = controller;
  for (int i = 0; i < 9000; ++i) {
    Point point;
    point.time = i * 0.25;
    point.phase = i < 3000 ? Phase::Fans : i < 6000 ? Phase::Heat : Phase::Controller;
    point.duty = {60.25, 0, 0, 100};
    point.rpm = {i, 0, 0, 0, 0, 0, 0, 7};
    point.temperature = {28, 30 + 20 * std::sin(i * 0.01), 31, -0.0};
    point.heater = {60, 0};
    data.points.push_back(point);
  }
  data.ending = Ending::TransferFailed;
  data.endWords = "A write failed.";
  data.parts = {{"PWM1 Config (21h)", "11h", "E2h", Fate::Unknown, "the link failed: it may still hold E2h"}};
  data.departures = {{0x2C, "PWM 1-4 Max", 0xFF, 0xC0}};
  return data;
}

/// The texts of a document, and the names of its elements; a fault of its form fails the test.
struct Document {
  explicit Document(const std::string& html) {
    QXmlStreamReader reader(QByteArray::fromStdString(html));
    while (!reader.atEnd()) {
      reader.readNext();
      if (reader.isStartElement()) elements.push_back(reader.name().toString().toStdString());
      if (reader.isCharacters() && !reader.isWhitespace()) texts.push_back(reader.text().toString().toStdString());
      for (const QXmlStreamAttribute& attribute : reader.attributes()) {
        attributes.insert(attribute.value().toString().toStdString());
      }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << " in line " << reader.lineNumber();
  }
  std::vector<std::string> elements;
  std::vector<std::string> texts;
  std::set<std::string> attributes;
};

TEST(ReportTest, IsAWellFormedPageThatStandsAlone) {
  const std::string html = ReportHtml(Measured());
  const Document page(html);
  EXPECT_EQ(std::ranges::count(page.elements, "svg"), 4);
  EXPECT_THAT(page.texts, Contains("Cooling of Board <7> & \"Co\""));
  for (const char* foreign : {"<script", "<link", "<img", "url(", "@import", "href"}) {
    EXPECT_THAT(html, Not(HasSubstr(foreign)));
  }
  for (const char* style : {"prefers-color-scheme: dark", "@page", "break-inside: avoid"}) {
    EXPECT_THAT(html, HasSubstr(style));
  }
}

TEST(ReportTest, TellsTheResultsAndHowTheBoardWasLeft) {
  const Document page(ReportHtml(Measured()));
  for (const char* text : {"3170",
                           "25",
                           "15",
                           "31.70 \u00B1 0.05",
                           "1.25",
                           "(1585)",
                           "1600",
                           "Tach5: No speed at any duty.",
                           "12.34 \u00B1 0.05 K",
                           "41.5 \u00B1 0.7 s",
                           "20\u00B0C",
                           "47 \u00B0C",
                           "The temperature did not rise.",
                           "1.75 K",
                           "not settled",
                           "A write failed.",
                           "The board was NOT left as it was found: see the last table.",
                           "the link failed: it may still hold E2h",
                           "2Ch",
                           "FFh",
                           "C0h",
                           "2026-03-01 10:20:30, 12 min 34 s"}) {
    EXPECT_THAT(page.texts, Contains(text));
  }
  EXPECT_THAT(page.attributes, Not(Contains("outcome good")));
  Characterisation well = Measured();
  well.ending = Ending::Done;
  well.boardAsFound = true;
  EXPECT_THAT(Document(ReportHtml(well)).attributes, Contains("outcome good"));
}

TEST(ReportTest, IsTheSameForTheSameDataWhateverTheLocale) {
  const Characterisation data = Measured();
  const std::string html = ReportHtml(data);
  const std::string csv = ReportCsv(data);
  const std::string json = ReportJson(data);
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale(), new Comma));
  EXPECT_EQ(ReportHtml(data), html);
  EXPECT_EQ(ReportCsv(data), csv);
  EXPECT_EQ(ReportJson(data), json);
  std::locale::global(before);
}

TEST(ReportTest, GivesEveryPointInBothForms) {
  const Characterisation data = Measured();
  std::istringstream csv(ReportCsv(data));
  std::string line;
  std::getline(csv, line);
  EXPECT_EQ(std::ranges::count(line, ','), 1 + 4 + 8 + 4 + 2);
  const Json json = Json::parse(ReportJson(data));
  ASSERT_EQ(json["points"].size(), data.points.size());
  for (std::size_t i = 0; i < data.points.size(); ++i) {
    const Point& point = data.points[i];
    const Json& read = json["points"][i];
    EXPECT_EQ(read[0].get<double>(), point.time);
    EXPECT_EQ((read[3].get<std::array<int, kTachs>>()), point.rpm);
    EXPECT_EQ((read[4].get<std::array<double, kTemperatures>>()), point.temperature);
    ASSERT_TRUE(std::getline(csv, line));
    if (i != 4) continue;
    EXPECT_EQ(line, "1.000,fans,60.25,0,0,100,4,0,0,0,0,0,0,7,28,30.8,31,0,60,0\r");
  }
  EXPECT_FALSE(std::getline(csv, line));
  EXPECT_EQ(json["fans"][0]["tachs"][0]["start_duty"], 25);
  EXPECT_TRUE(json["fans"][0]["tachs"][1]["start_duty"].is_null());
  EXPECT_EQ(json["heat"]["proposal"]["trange"], "20\u00B0C");
  EXPECT_EQ(json["end"]["parts"][0]["fate"], "unknown");
}

TEST(ReportTest, AnEmptyRunIsAReportToo) {
  Characterisation nothing;
  nothing.ending = Ending::Refused;
  nothing.endWords = "The chip is locked.";
  EXPECT_THAT(Document(ReportHtml(nothing)).texts, Contains("Nothing was set."));
  EXPECT_TRUE(Json::parse(ReportJson(nothing))["heat"].is_null());
}

TEST(ReportTest, WritesTextsAndNumbersThatAreNone) {
  EXPECT_EQ(Escaped("a\x01<\xC3\xA4\xFF\xED\xA0\x80>"), "a?&lt;\xC3\xA4????&gt;");
  EXPECT_EQ(Fixed(-0.004, 2), "0.00");
  EXPECT_EQ(Fixed(std::numeric_limits<double>::infinity(), 1), "-");
  EXPECT_EQ(Plain(120, 0), "120");
  EXPECT_EQ(Plain(2.50, 2), "2.5");
}

TEST(ReportTest, AChartKeepsTheExtremesOfALongLineAndGapsOfABrokenOne) {
  SvgPlot plot{"t", "s", "rpm", {{"a", 0, SvgSeries::Look::Line, {}}}, true};
  for (int i = 0; i < 100'000; ++i) plot.series[0].points.emplace_back(i, i == 70'001 ? 500 : 100);
  const std::string svg = SvgOf(plot);
  EXPECT_LT(svg.size(), 60'000U);
  EXPECT_THAT(svg, HasSubstr(",30.0 ")) << "the one high sample, at the top of the drawing";
  plot.series[0].points = {{0, 1}, {1, 2}, {2, std::nan("")}, {3, 2}, {4, 1}};
  const Document gap(SvgOf(plot));
  EXPECT_EQ(std::ranges::count(gap.elements, "polyline"), 2);
}

}  // namespace
}  // namespace zth::characterise
