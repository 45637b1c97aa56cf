#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Product.h"
#include "characterise/Markup.h"
#include "characterise/Report.h"
#include "characterise/ReportPage.h"
#include "characterise/ReportWords.h"
#include "characterise/SvgChart.h"
#include "chip/ChannelNames.h"

namespace zth::characterise {
namespace {

constexpr char kDegrees[] = " \u00B0C";

std::string With(double value, int digits, const std::string& unit) {
  return std::isfinite(value) ? Fixed(value, digits) + unit : "-";
}
std::string With(const std::optional<double>& value, int digits, const std::string& unit) {
  return value ? With(*value, digits, unit) : "-";
}
/// "12.3 ± 0.4 s".
std::string With(const Estimate& estimate, int digits, const std::string& unit) {
  return Fixed(estimate.value, digits) + " \u00B1 " + Fixed(estimate.sigma, digits) + unit;
}
std::string With(const std::optional<Estimate>& estimate, int digits, const std::string& unit) {
  return estimate ? With(*estimate, digits, unit) : "-";
}

std::string Hex(unsigned byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[(byte >> 4) & 0xF], kDigits[byte & 0xF], 'h'};
}

std::string ChannelName(int channel) {
  return chip::kTemperatureNames.at(static_cast<std::size_t>(channel));
}

std::string Duration(double seconds) {
  const auto whole = static_cast<long>(std::lround(seconds));
  if (whole < 60) return std::to_string(whole) + " s";
  const std::string rest = whole % 60 == 0 ? "" : " " + std::to_string(whole % 60) + " s";
  return std::to_string(whole / 60) + " min" + rest;
}

std::string Numbers(const std::vector<int>& numbers) {
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "" : ", ") + std::to_string(number);
  return text;
}

std::string Facts(const Characterisation& data) {
  const Settings& asked = data.settings;
  PageTable table{"", {}, {}};
  const auto add = [&](const char* name, const std::string& value) {
    if (!value.empty()) table.rows.push_back({name, value});
  };
  add("Board", data.board);
  add("Chip", data.chip + (data.device.empty() ? "" : ", " + data.device));
  add("Measured", data.began + (data.ended.empty() ? "" : " to " + data.ended) + ", " + Duration(data.seconds));
  add("Software", std::string(base::kTitle) + (data.version.empty() ? "" : " " + data.version));
  std::string parts;
  for (const auto& [wanted, name] :
       {std::pair{asked.fans, "fans"}, {asked.heat, "heat"}, {asked.controller, "controller"}}) {
    if (wanted) parts += (parts.empty() ? "" : ", ") + std::string(name);
  }
  add("Asked for", parts + (asked.pwms.empty() ? "" : "; PWM " + Numbers(asked.pwms)));
  if (asked.heat || asked.controller) {
    add("Heater", std::to_string(asked.heater) + " at " + Plain(asked.heaterStep, 1) + " %" +
                      (asked.heaterWatts > 0 ? ", " + Plain(asked.heaterWatts, 3) + " W at 100 %" : ""));
  }
  if (asked.heat) add("Temperature to keep", Plain(asked.keep, 1) + kDegrees);
  add("Limits", Plain(asked.temperatureLimit, 1) + kDegrees + ", " + Duration(asked.timeLimit));
  return TableText(table);
}

std::string Outcome(const Characterisation& data) {
  std::string words = data.endWords.empty() ? std::string(EndingName(data.ending)) : data.endWords;
  if (!words.ends_with('.')) words += '.';
  const std::string board = data.parts.empty()  ? "Nothing was set."
                            : data.boardAsFound ? "Everything that was set is as before, verified by reading."
                                                : "The board was NOT left as it was found: see the last table.";
  const bool isGood = data.ending == Ending::Done && (data.boardAsFound || data.parts.empty());
  std::string text = std::string("<div class=\"outcome") + (isGood ? " good" : "") + "\">\n" + ParagraphText(words) +
                     ParagraphText(board);
  for (const std::string& remark : data.remarks) text += ParagraphText(remark);
  return text + "</div>\n";
}

SvgPlot SpeedChart(const FanResult& fan) {
  SvgPlot plot{"PWM" + std::to_string(fan.pwm) + ": speed against duty", "duty, %", "rpm", {}, true};
  int colour = 0;
  for (const TachResult& tach : fan.tachs) {
    if (tach.state == TachState::Dead) continue;
    for (const Direction direction : {Direction::Down, Direction::Up}) {
      const bool isUp = direction == Direction::Up;
      SvgSeries series{"Tach" + std::to_string(tach.tach) + (isUp ? " up" : " down"),
                       colour,
                       isUp ? SvgSeries::Look::Dashed : SvgSeries::Look::Line,
                       {}};
      for (const SpeedAtDuty& speed : tach.speeds) {
        if (speed.direction == direction) series.points.emplace_back(speed.duty, speed.rpm);
      }
      if (!series.points.empty()) plot.series.push_back(std::move(series));
    }
    ++colour;
  }
  return plot;
}

/// The speeds in one direction as the table's next column; duties that are new get a row.
void AddSpeeds(PageTable& table, const TachResult& tach, Direction direction) {
  table.heads.push_back("Tach" + std::to_string(tach.tach) + (direction == Direction::Up ? " up" : " down"));
  for (const SpeedAtDuty& speed : tach.speeds) {
    if (speed.direction != direction) continue;
    const std::string duty = Plain(speed.duty, 1) + " %";
    auto row = std::ranges::find_if(table.rows, [&](const auto& one) { return one.front() == duty; });
    if (row == table.rows.end()) row = table.rows.insert(row, {duty});
    row->resize(table.heads.size() - 1, "-");
    row->push_back(speed.settled ? Fixed(speed.rpm, 0) : "(" + Fixed(speed.rpm, 0) + ")");
  }
}

std::string SpeedTable(const FanResult& fan) {
  PageTable table{"Settled speeds, rpm; those in brackets had not settled", {"Duty"}, {}};
  for (const TachResult& tach : fan.tachs) {
    if (tach.state == TachState::Dead) continue;
    AddSpeeds(table, tach, Direction::Down);
    AddSpeeds(table, tach, Direction::Up);
  }
  for (auto& row : table.rows) row.resize(table.heads.size(), "-");
  return TableText(table);
}

std::string FanText(const FanResult& fan) {
  std::string text = Element("h3", "PWM" + std::to_string(fan.pwm)) + "\n" + ParagraphText(fan.words);
  PageTable results{"Results",
                    {"Tach", "Top, rpm", "Slowest, rpm", "Starts at, %", "Stalls at, %", "Hysteresis, %",
                     "Slope, rpm/%", "Linearity, %", "Noise, %", "Spin-up, s", "Time constant, s"},
                    {}};
  for (const TachResult& tach : fan.tachs) {
    const std::string name = "Tach" + std::to_string(tach.tach);
    if (!tach.words.empty()) text += ParagraphText(name + ": " + tach.words);
    if (tach.state == TachState::Dead) continue;
    results.rows.push_back({name, With(tach.topRpm, 0, ""), With(tach.lowestRpm, 0, ""), With(tach.startDuty, 0, ""),
                            With(tach.stallDuty, 0, ""), With(tach.hysteresis, 0, ""), With(tach.slope, 2, ""),
                            With(tach.linearity, 1, ""), With(tach.noise, 2, ""), With(tach.spinUp, 2, ""),
                            With(tach.timeConstant, 3, "")});
  }
  text += TableText(results);
  const SvgPlot chart = SpeedChart(fan);
  if (!chart.series.empty()) text += SvgOf(chart);
  return text + SpeedTable(fan);
}

/// What the points of a part show over the time.
template <typename Value>
SvgSeries OverTime(const Characterisation& data, Phase phase, const std::string& name, int colour, Value value) {
  SvgSeries series{name, colour, SvgSeries::Look::Line, {}};
  double begin = std::numeric_limits<double>::quiet_NaN();
  for (const Point& point : data.points) {
    if (point.phase != phase) continue;
    if (std::isnan(begin)) begin = point.time;
    series.points.emplace_back(point.time - begin, value(point));
  }
  return series;
}

SvgSeries TemperatureOf(const Characterisation& data, Phase phase, int channel) {
  return OverTime(data, phase, ChannelName(channel), 4,
                  [channel](const Point& point) { return point.temperature.at(static_cast<std::size_t>(channel)); });
}

SvgSeries HeaterOf(const Characterisation& data, Phase phase, int heater) {
  SvgSeries series = OverTime(data, phase, "Heater" + std::to_string(heater) + ", %", 7, [heater](const Point& point) {
    return point.heater.at(static_cast<std::size_t>(heater - 1));
  });
  series.look = SvgSeries::Look::Dashed;
  return series;
}

std::string ProposalText(const Proposal& proposal, double keep) {
  std::string text = Element("h3", "Proposal for the automatic control") + "\n" + ParagraphText(proposal.words);
  if (!proposal.possible) return text;
  text += TableText(
      {"",
       {},
       {{"Tmin", std::to_string(proposal.tmin) + kDegrees},
        {"Trange", TrangeText(proposal.trange)},
        {"Min Duty", Plain(proposal.minDuty, 1) + " %"},
        {"Predicted at rest", With(proposal.predicted, 1, kDegrees) + " at " + With(proposal.predictedDuty, 0, " %") +
                                  "; to be kept: " + Plain(keep, 1) + kDegrees}}});
  SvgPlot plot{"The chip's duty, and the heat that it balances", "\u00B0C", "%", {}, true};
  plot.series = {{"duty of the chip", 0, SvgSeries::Look::Line, {}},
                 {"heater that it balances", 1, SvgSeries::Look::Dashed, {}}};
  for (const CurvePoint& point : proposal.curve) {
    plot.series[0].points.emplace_back(point.temperature, point.duty);
    plot.series[1].points.emplace_back(point.temperature, point.balanced);
  }
  if (!proposal.curve.empty()) text += SvgOf(plot);
  PageTable fields{"To be written, in this order", {"Field", "Value", "Meaning"}, {}};
  for (const FieldValue& field : proposal.fields)
    fields.rows.push_back({field.name, std::to_string(field.value), field.words});
  return text + TableText(fields);
}

std::string HeatText(const Characterisation& data) {
  const HeatResult& heat = *data.heat;
  std::string text =
      Element("h2", "Heat: " + ChannelName(heat.channel) + " over heater " + std::to_string(heat.heater)) + "\n";
  PageTable steps{"The heater's step at each duty",
                  {"Duty", "Before", "Rise", "Gain", "Time constant", "Resistance", "Residual", "Remark"},
                  {}};
  SvgPlot gains{"Gain against duty, with standard uncertainties", "duty, %", "K/%", {}, true};
  gains.series.push_back({"gain", 0, SvgSeries::Look::Points, {}});
  for (const HeatStep& step : heat.steps) {
    const std::string duty = Plain(step.duty, 1) + " %";
    if (!step.good) {
      steps.rows.push_back({duty, "-", "-", "-", "-", "-", "-", step.words});
      continue;
    }
    steps.rows.push_back({duty, With(step.before, 2, kDegrees), With(step.rise, 2, " K"), With(step.gain, 4, " K/%"),
                          With(step.timeConstant, 1, " s"), With(step.resistance, 3, " K/W"),
                          With(step.residual, 2, " K"), step.words});
    gains.series[0].points.emplace_back(step.duty, step.gain.value);
    gains.series[0].errors.push_back(step.gain.sigma);
  }
  text += TableText(steps);
  SvgPlot course{"Temperature over the time", "s", "\u00B0C, %", {}, true};
  course.series = {TemperatureOf(data, Phase::Heat, heat.channel), HeaterOf(data, Phase::Heat, heat.heater)};
  if (!course.series[0].points.empty()) text += SvgOf(course);
  if (gains.series[0].points.size() > 1) text += SvgOf(gains);
  text += TableText({"Fitted over all steps",
                     {},
                     {{"1 / gain at 0 % duty", With(heat.conductanceBase, 3, " %/K")},
                      {"1 / gain for each % of duty", With(heat.conductanceSlope, 4, " %/K")},
                      {"Air", With(heat.air, 2, kDegrees)},
                      {"Other heat, as a drive of the heater", With(heat.standing, 2, " %")}}});
  return text + ProposalText(heat.proposal, data.settings.keep);
}

std::string ControllerText(const Characterisation& data) {
  const ControllerResult& controller = *data.controller;
  std::string text =
      Element("h2", "Controller: " + ChannelName(controller.channel)) + "\n" + ParagraphText(controller.words);
  PageTable steps{"The parts of the heater's profile",
                  {"Heater", "Temperature", "Duty", "Overshoot", "Settled after", "Noise", "Noise of the duty",
                   "Noise of the speed"},
                  {}};
  for (const ProfileStep& step : controller.steps) {
    steps.rows.push_back(
        {Plain(step.heater, 1) + " %", With(step.finalTemperature, 2, kDegrees), With(step.finalDuty, 1, " %"),
         With(step.overshoot, 2, " K"), step.settling ? With(step.settling, 1, " s") : "not settled",
         With(step.temperatureNoise, 2, " K"), With(step.dutyNoise, 2, " %"), With(step.speedNoise, 1, " rpm")});
  }
  text += TableText(steps);
  SvgPlot course{"Temperature, heater and duty over the time", "s", "\u00B0C, %", {}, true};
  course.series = {TemperatureOf(data, Phase::Controller, controller.channel),
                   HeaterOf(data, Phase::Controller, data.settings.heater)};
  int colour = 0;
  for (const int pwm : data.settings.pwms) {
    if (pwm < 1 || pwm > kPwms) continue;
    course.series.push_back(
        OverTime(data, Phase::Controller, "PWM" + std::to_string(pwm), colour++,
                 [pwm](const Point& point) { return point.duty.at(static_cast<std::size_t>(pwm - 1)); }));
  }
  return course.series[0].points.empty() ? text : text + SvgOf(course);
}

std::string BoardText(const Characterisation& data) {
  PageTable parts{"What the run has set, and what became of it", {"Part", "Before", "Set last", "Now"}, {}};
  for (const PartState& part : data.parts) {
    parts.rows.push_back({part.name, part.before, part.set, part.words.empty() ? FateName(part.fate) : part.words});
  }
  PageTable departures{"Registers that differed from their defaults when the run began",
                       {"Register", "Address", "Value", "Default"},
                       {}};
  for (const Departure& one : data.departures) {
    departures.rows.push_back({one.name, Hex(one.reg), Hex(one.value), Hex(one.standard)});
  }
  std::string text = Element("h2", "The board") + "\n";
  if (data.departures.empty()) text += ParagraphText("No register differed from its default when the run began.");
  return text + TableText(departures) + TableText(parts);
}

}  // namespace

std::string ReportHtml(const Characterisation& data) {
  const std::string title = "Cooling of " + (data.board.empty() ? data.chip : data.board);
  std::string body = Element("h1", title) + "\n" + Outcome(data) + Facts(data);
  if (!data.fans.empty()) body += Element("h2", "Fans") + "\n";
  for (const FanResult& fan : data.fans) body += FanText(fan);
  if (data.heat) body += HeatText(data);
  if (data.controller) body += ControllerText(data);
  return PageText(title, body + BoardText(data));
}

}  // namespace zth::characterise
