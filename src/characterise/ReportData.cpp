#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "characterise/Markup.h"
#include "characterise/Report.h"
#include "characterise/ReportWords.h"
#include "chip/ChannelNames.h"

namespace zth::characterise {
namespace {

using Json = nlohmann::ordered_json;

template <typename T, typename Make>
Json ListOf(const std::vector<T>& values, Make make) {
  Json list = Json::array();
  for (const T& value : values) list.push_back(make(value));
  return list;
}

Json Of(const Estimate& estimate) {
  return {{"value", estimate.value}, {"sigma", estimate.sigma}};
}
Json Of(const std::optional<Estimate>& estimate) {
  return estimate ? Of(*estimate) : Json();
}
Json Of(const std::optional<double>& value) {
  return value ? Json(*value) : Json();
}

Json Of(const SpeedAtDuty& speed) {
  return {{"direction", speed.direction == Direction::Up ? "up" : "down"},
          {"duty", speed.duty},
          {"rpm", speed.rpm},
          {"noise", speed.noise},
          {"seconds", speed.seconds},
          {"settled", speed.settled}};
}

Json Of(const TachResult& tach) {
  return {{"tach", tach.tach},
          {"state", StateName(tach.state)},
          {"words", tach.words},
          {"stall_duty", Of(tach.stallDuty)},
          {"start_duty", Of(tach.startDuty)},
          {"hysteresis", Of(tach.hysteresis)},
          {"top_rpm", tach.topRpm},
          {"lowest_rpm", tach.lowestRpm},
          {"rpm_per_percent", Of(tach.slope)},
          {"rpm_at_0", Of(tach.intercept)},
          {"linearity_percent", tach.linearity},
          {"noise_percent", tach.noise},
          {"spin_up_seconds", Of(tach.spinUp)},
          {"time_constant_seconds", Of(tach.timeConstant)},
          {"speeds", ListOf(tach.speeds, [](const SpeedAtDuty& speed) { return Of(speed); })}};
}

Json Of(const HeatStep& step) {
  return {{"duty", step.duty},
          {"begin", step.begin},
          {"end", step.end},
          {"before_celsius", Of(step.before)},
          {"rise_kelvin", Of(step.rise)},
          {"gain_kelvin_per_percent", Of(step.gain)},
          {"time_constant_seconds", Of(step.timeConstant)},
          {"resistance_kelvin_per_watt", Of(step.resistance)},
          {"residual_kelvin", step.residual},
          {"good", step.good},
          {"words", step.words}};
}

Json Of(const Proposal& proposal) {
  return {{"possible", proposal.possible},
          {"words", proposal.words},
          {"tmin_celsius", proposal.tmin},
          {"trange", TrangeText(proposal.trange)},
          {"min_duty", proposal.minDuty},
          {"predicted_celsius", proposal.predicted},
          {"predicted_duty", proposal.predictedDuty},
          {"fields", ListOf(proposal.fields,
                            [](const FieldValue& field) {
                              return Json{{"name", field.name}, {"value", field.value}, {"words", field.words}};
                            })},
          {"curve", ListOf(proposal.curve, [](const CurvePoint& point) {
             return Json{{"celsius", point.temperature}, {"duty", point.duty}, {"balanced_heater", point.balanced}};
           })}};
}

Json Of(const HeatResult& heat) {
  return {{"heater", heat.heater},
          {"channel", chip::kTemperatureNames.at(static_cast<std::size_t>(heat.channel))},
          {"conductance_base", Of(heat.conductanceBase)},
          {"conductance_per_percent", Of(heat.conductanceSlope)},
          {"air_celsius", Of(heat.air)},
          {"standing_percent", Of(heat.standing)},
          {"steps", ListOf(heat.steps, [](const HeatStep& step) { return Of(step); })},
          {"proposal", Of(heat.proposal)}};
}

Json Of(const ProfileStep& step) {
  return {{"heater", step.heater},
          {"begin", step.begin},
          {"end", step.end},
          {"final_celsius", step.finalTemperature},
          {"final_duty", step.finalDuty},
          {"overshoot_kelvin", step.overshoot},
          {"settling_seconds", Of(step.settling)},
          {"temperature_noise_kelvin", step.temperatureNoise},
          {"duty_noise_percent", step.dutyNoise},
          {"speed_noise_rpm", step.speedNoise}};
}

Json Of(const ControllerResult& controller) {
  return {{"channel", chip::kTemperatureNames.at(static_cast<std::size_t>(controller.channel))},
          {"used_proposal", controller.usedProposal},
          {"words", controller.words},
          {"steps", ListOf(controller.steps, [](const ProfileStep& step) { return Of(step); })}};
}

Json Of(const Settings& settings) {
  return {{"fans", settings.fans},
          {"heat", settings.heat},
          {"controller", settings.controller},
          {"pwms", settings.pwms},
          {"tachs", settings.tachs},
          {"pulses", settings.pulses},
          {"duty_step", settings.dutyStep},
          {"settle_most_seconds", settings.settleMost},
          {"heater", settings.heater},
          {"heater_step_percent", settings.heaterStep},
          {"heater_watts", settings.heaterWatts},
          {"heat_duties", settings.heatDuties},
          {"heat_most_seconds", settings.heatMost},
          {"keep_celsius", settings.keep},
          {"min_duty", settings.minDuty},
          {"try_proposal", settings.tryProposal},
          {"profile_hold_seconds", settings.profileHold},
          {"temperature_limit_celsius", settings.temperatureLimit},
          {"time_limit_seconds", settings.timeLimit}};
}

Json Of(const Point& point) {
  return Json::array({point.time, PhaseName(point.phase), point.duty, point.rpm, point.temperature, point.heater});
}

Json FoundOf(const Characterisation& data) {
  return {
      {"ending", EndingName(data.ending)},
      {"words", data.endWords},
      {"board_as_found", data.boardAsFound},
      {"parts", ListOf(data.parts,
                       [](const PartState& part) {
                         return Json{{"name", part.name},
                                     {"before", part.before},
                                     {"set", part.set},
                                     {"fate", FateName(part.fate)},
                                     {"words", part.words}};
                       })},
      {"departures",
       ListOf(data.departures,
              [](const Departure& one) {
                return Json{{"register", one.reg}, {"name", one.name}, {"value", one.value}, {"default", one.standard}};
              })},
      {"remarks", data.remarks}};
}

template <typename Values>
void AddColumns(std::string& line, const Values& values, int digits) {
  for (const auto value : values) line += "," + Plain(static_cast<double>(value), digits);
}

}  // namespace

std::string ReportJson(const Characterisation& data) {
  Json json{{"format", "ZTH4718 characterisation 1"},
            {"board", data.board},
            {"chip", data.chip},
            {"device", data.device},
            {"version", data.version},
            {"began", data.began},
            {"ended", data.ended},
            {"seconds", data.seconds},
            {"settings", Of(data.settings)},
            {"end", FoundOf(data)}};
  json["fans"] = ListOf(data.fans, [](const FanResult& fan) {
    return Json{{"pwm", fan.pwm},
                {"words", fan.words},
                {"tachs", ListOf(fan.tachs, [](const TachResult& tach) { return Of(tach); })}};
  });
  json["heat"] = data.heat ? Of(*data.heat) : Json();
  json["controller"] = data.controller ? Of(*data.controller) : Json();
  json["point_columns"] = {"time", "phase", "duty", "rpm", "celsius", "heater"};
  json["points"] = ListOf(data.points, [](const Point& point) { return Of(point); });
  return json.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string ReportCsv(const Characterisation& data) {
  std::string text = "Time (s),Part";
  for (int i = 1; i <= kPwms; ++i) text += ",PWM" + std::to_string(i) + " (%)";
  for (int i = 1; i <= kTachs; ++i) text += ",Tach" + std::to_string(i) + " (rpm)";
  for (const char* name : chip::kTemperatureNames) text += std::string(",") + name + " (\u00B0C)";
  for (int i = 1; i <= kHeaters; ++i) text += ",Heater" + std::to_string(i) + " (%)";
  text += "\r\n";
  for (const Point& point : data.points) {
    text += Fixed(point.time, 3) + "," + PhaseName(point.phase);
    AddColumns(text, point.duty, 2);
    AddColumns(text, point.rpm, 0);
    AddColumns(text, point.temperature, 2);
    AddColumns(text, point.heater, 2);
    text += "\r\n";
  }
  return text;
}

}  // namespace zth::characterise
