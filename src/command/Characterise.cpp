#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "characterise/Characteriser.h"
#include "characterise/Report.h"
#include "chip/FanCurve.h"
#include "command/Commands.h"

namespace zth::command {
namespace {

using characterise::Characterisation;
using characterise::Ending;
using characterise::Estimate;

Failure Wrong(const std::string& text, const std::string& what, const std::string& remedy) {
  return {kUsage, "'" + text + "' is no " + what, remedy};
}

/// "1,2"
std::vector<int> NumbersOf(const std::string& text) {
  std::vector<int> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end) {
    int number = 0;
    const auto [next, error] = std::from_chars(at, end, number);
    const bool isLast = next == end;
    if (error != std::errc() || (!isLast && (*next != ',' || next + 1 == end))) {
      throw Wrong(text, "list of numbers", "Give 1,2");
    }
    numbers.push_back(number);
    at = isLast ? end : next + 1;
  }
  return numbers;
}

/// "60C" or "60"
double DegreesOf(std::string text) {
  const std::string given = text;
  if (text.ends_with('C') || text.ends_with('c')) text.pop_back();
  if (text.ends_with("°")) text.resize(text.size() - std::string_view("°").size());
  if (!base::IsDecimal(text)) throw Wrong(given, "temperature", "Give 60C");
  return base::LeadingDecimal(text);
}

void Choose(characterise::Settings& settings, const std::vector<std::string>& words) {
  if (words.empty()) return;
  settings.fans = false;
  for (const std::string& word : words) {
    const bool all = word == "all";
    if (!all && word != "fans" && word != "heat" && word != "controller") {
      throw Wrong(word, "part of a run", "Give fans, heat, controller or all");
    }
    settings.fans = settings.fans || all || word == "fans";
    settings.heat = settings.heat || all || word == "heat";
    settings.controller = settings.controller || all || word == "controller";
  }
}

characterise::Settings SettingsOf(const Request& request) {
  const MeasuringOptions& asked = request.measuring;
  characterise::Settings settings;
  Choose(settings, request.words);
  if (!asked.pwms.empty()) settings.pwms = NumbersOf(asked.pwms);
  if (!asked.duties.empty()) settings.heatDuties = NumbersOf(asked.duties);
  if (!asked.keep.empty()) settings.keep = DegreesOf(asked.keep);
  if (!asked.limit.empty()) settings.temperatureLimit = DegreesOf(asked.limit);
  if (!asked.most.empty()) settings.timeLimit = SecondsOf(asked.most);
  if (asked.step != 0) settings.dutyStep = asked.step;
  if (asked.heater != 0) settings.heater = asked.heater;
  if (asked.heat != 0) settings.heaterStep = asked.heat;
  settings.pulses = asked.pulses;
  settings.heaterWatts = asked.watts;
  const std::string why = characterise::CheckSettings(settings);
  if (!why.empty()) throw Failure{kUsage, why, "See zth4718 characterise --help"};
  return settings;
}

double Short(double value) {
  return base::RoundHalfEven(value, 3);
}

std::string Text(double value, int decimals) {
  return NumberText(base::RoundHalfEven(value, decimals));
}

std::string Text(const Estimate& estimate, int decimals) {
  return Text(estimate.value, decimals) + " ± " + Text(estimate.sigma, decimals);
}

void Add(Row& row, const std::string& name, const std::optional<double>& value) {
  if (value) row.emplace_back(name, Short(*value));
}

void Add(Row& row, const std::string& name, const std::optional<Estimate>& value) {
  if (!value) return;
  row.emplace_back(name, Short(value->value));
  row.emplace_back(name + " sigma", Short(value->sigma));
}

void ShowTach(const Output& output, int pwm, const characterise::TachResult& tach) {
  const std::string name = "PWM" + std::to_string(pwm) + " Tach" + std::to_string(tach.tach);
  Row row{{"part", std::string("fans")},
          {"pwm", std::int64_t{pwm}},
          {"tach", std::int64_t{tach.tach}},
          {"words", tach.words},
          {"top rpm", Short(tach.topRpm)}};
  Add(row, "start %", tach.startDuty);
  Add(row, "stall %", tach.stallDuty);
  Add(row, "hysteresis %", tach.hysteresis);
  Add(row, "rpm per %", tach.slope);
  Add(row, "spin-up s", tach.spinUp);
  Add(row, "time constant s", tach.timeConstant);
  row.emplace_back("linearity %", Short(tach.linearity));
  row.emplace_back("noise %", Short(tach.noise));
  std::string line = name + ": " + tach.words;
  if (tach.spinUp) line += "; up to speed in " + Text(*tach.spinUp, 2) + " s";
  if (tach.timeConstant) line += ", time constant " + Text(*tach.timeConstant, 2) + " s";
  output.Result(line, row);
}

void ShowHeat(const Output& output, const characterise::HeatResult& heat) {
  for (const characterise::HeatStep& step : heat.steps) {
    Row row{{"part", std::string("heat")}, {"duty %", Short(step.duty)}};
    std::string line = "Heat at " + Text(step.duty, 0) + " %: ";
    if (step.good) {
      Add(row, "gain K/%", std::optional(step.gain));
      Add(row, "time constant s", std::optional(step.timeConstant));
      Add(row, "resistance K/W", step.resistance);
      line += Text(step.gain, 3) + " K per % of the heater, time constant " + Text(step.timeConstant, 1) + " s";
      if (step.resistance) line += ", " + Text(*step.resistance, 2) + " K/W";
    }
    if (!step.words.empty()) line += (step.good ? "; " : "") + step.words;
    row.emplace_back("words", step.words);
    output.Result(line, row);
  }
  output.Result(heat.proposal.words, {{"part", std::string("proposal")}, {"words", heat.proposal.words}});
  for (const characterise::FieldValue& field : heat.proposal.fields) {
    output.Result("  " + field.name + " = " + std::to_string(field.value) + " (" + field.words + ")",
                  {{"part", std::string("proposal")},
                   {"name", field.name},
                   {"value", std::int64_t{field.value}},
                   {"words", field.words}});
  }
}

void ShowControl(const Output& output, const characterise::ControllerResult& control) {
  output.Result("Controller: " + control.words, {{"part", std::string("controller")}, {"words", control.words}});
  for (const characterise::ProfileStep& step : control.steps) {
    const std::string settled = step.settling ? "settled in " + Text(*step.settling, 0) + " s" : "did not settle";
    Row row{{"part", std::string("controller")},
            {"heater %", Short(step.heater)},
            {"temperature", Short(step.finalTemperature)},
            {"duty %", Short(step.finalDuty)},
            {"overshoot K", Short(step.overshoot)},
            {"noise K", Short(step.temperatureNoise)},
            {"noise %", Short(step.dutyNoise)},
            {"noise rpm", Short(step.speedNoise)}};
    Add(row, "settling s", step.settling);
    output.Result("  Heater " + Text(step.heater, 0) + " %: " + Text(step.finalTemperature, 1) + " °C at " +
                      Text(step.finalDuty, 0) + " %, " + settled + ", overshoot " + Text(step.overshoot, 1) +
                      " K, noise " + Text(step.speedNoise, 0) + " rpm",
                  row);
  }
}

void ShowResults(const Output& output, const Characterisation& data) {
  for (const characterise::FanResult& fan : data.fans) {
    for (const characterise::TachResult& tach : fan.tachs) {
      if (!tach.words.empty()) ShowTach(output, fan.pwm, tach);
    }
  }
  if (data.heat) ShowHeat(output, *data.heat);
  if (data.controller) ShowControl(output, *data.controller);
}

/// Says what it does now, whenever that changes.
class Progress {
 public:
  explicit Progress(const Output& output) : output_(output) {}

  void Show(const characterise::Characteriser& engine) {
    const std::string words = engine.Words();
    if (words == last_) return;
    last_ = words;
    output_.Remark(Text(100 * engine.Progress(), 0) + " %, " + Text(engine.SecondsLeft(), 0) + " s left: " + words);
  }

 private:
  const Output& output_;
  std::string last_;
};

/// Drives the run to its end; a signal cancels it, and it still puts everything back.
void Drive(Session& session, characterise::Characteriser& engine) {
  constexpr double kTick = 0.05;
  Progress progress(session.Out());
  bool isCancelled = false;
  while (engine.IsRunning()) {
    progress.Show(engine);
    try {
      if (!isCancelled) session.Wait(kTick);
    } catch (const Failure& failure) {
      if (failure.status != kEnded) throw;
      isCancelled = true;
      engine.Cancel();
    }
    if (isCancelled) session.Services().clock.WaitMs(static_cast<float>(1000 * kTick));
    engine.Tick();
  }
}

Status StatusOf(const Characterisation& data) {
  if (!data.boardAsFound) return data.ending == Ending::Done ? kNotVerified : kLinkFailed;
  switch (data.ending) {
    case Ending::Done:
      return kDone;
    case Ending::Cancelled:
      return kEnded;
    case Ending::TemperatureLimit:
    case Ending::TimeLimit:
      return kDiffers;
    case Ending::Refused:
      return kUsage;
    default:
      return kLinkFailed;
  }
}

/// How it ended, with each part of the board that is not as it was found.
Failure FailureOf(const Characterisation& data, Status status) {
  std::string what = data.endWords;
  for (const characterise::PartState& part : data.parts) {
    const bool isFine = part.fate == characterise::Fate::Restored || part.fate == characterise::Fate::Off;
    if (!isFine) what += "; " + part.name + " was " + part.before + ", set to " + part.set + ": " + part.words;
  }
  return {status, what, data.boardAsFound ? "" : "Check the board, and that its heaters are off"};
}

/// The report's files in a folder.
struct ReportFile {
  const char* name;
  std::string (*text)(const Characterisation& data);
};
constexpr std::array<ReportFile, 3> kReportFiles{{{"characterise.html", characterise::ReportHtml},
                                                  {"characterise.csv", characterise::ReportCsv},
                                                  {"characterise.json", characterise::ReportJson}}};

QString PathIn(const std::string& folder, const char* name) {
  return QString::fromStdString(folder) + "/" + name;
}

/// Before anything is transferred.
void CheckFolder(const std::string& folder, platform::Files& files) {
  if (folder.empty()) return;
  if (!files.MakeFolder(QString::fromStdString(folder))) {
    throw Failure{kUsage, "The folder '" + folder + "' cannot be made", "Check its name and the disk"};
  }
  for (const ReportFile& file : kReportFiles) {
    if (!files.Look(PathIn(folder, file.name))) continue;
    throw Failure{kUsage, "'" + folder + "' holds a report already", "Name another folder"};
  }
}

void WriteReport(const std::string& folder, const Characterisation& data, platform::Files& files) {
  if (folder.empty()) return;
  for (const ReportFile& file : kReportFiles) {
    if (files.Replace(PathIn(folder, file.name), QByteArray::fromStdString(file.text(data)))) continue;
    throw Failure{kUsage, std::string(file.name) + " cannot be written to '" + folder + "'", "Check the disk"};
  }
}

}  // namespace

Job PrepareCharacterise(const Request& request, const Setting& setting) {
  const characterise::Settings settings = SettingsOf(request);
  CheckFolder(request.measuring.folder, setting.services.files);
  return [settings, folder = request.measuring.folder](Session& session) {
    session.ReadPins();
    characterise::Characteriser engine(session.Services());
    engine.Start(settings);
    Drive(session, engine);
    const Characterisation& data = engine.Data();
    ShowResults(session.Out(), data);
    WriteReport(folder, data, session.Services().files);
    const Status status = StatusOf(data);
    if (status != kDone) throw FailureOf(data, status);
    session.Out().Remark(data.endWords);
  };
}

}  // namespace zth::command
