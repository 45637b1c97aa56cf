#include "characterise/Run.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

#include "base/Product.h"
#include "characterise/ControllerPart.h"
#include "characterise/FanPart.h"
#include "characterise/HeatPart.h"
#include "chip/ChannelNames.h"
#include "chip/ChipModel.h"
#include "chip/ChipState.h"
#include "chip/RegisterNames.h"
#include "chip/WriteEffects.h"
#include "link/Asker.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "tasks/RegisterImage.h"
#include "tasks/TasksState.h"

namespace zth::characterise {
namespace {

constexpr int kReadsPerTick = 8;
constexpr double kPointEvery = 0.24;  // seconds
constexpr double kPrepareSeconds = 1;
constexpr double kTryFor = 5;  // seconds, to put back what cannot be reached
constexpr double kTryForNow = 1;

std::string WallTime(platform::Services& services) {
  return services.clock.WallTime().toString("yyyy-MM-dd HH:mm:ss").toStdString();
}

std::string OneDecimal(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", value);
  return text.data();
}

}  // namespace

Run::Run(platform::Services& services, const Settings& settings)
    : services_(services),
      claims_(data_.parts),
      bench_(services, data_, claims_),
      chip_(link::ChipInUse()),
      tryFor_(kTryFor) {
  data_.settings = settings;
  Describe();
  const std::string why = CheckSettings(settings);
  if (!why.empty()) {
    Refuse(why);
    return;
  }
  if (chip_.mode != link::kModeUsb && chip_.mode != link::kModeSmbus) {
    Refuse("There is no chip");
    return;
  }
  if (settings.fans) parts_.push_back(std::make_unique<FanPart>(settings));
  if (settings.heat) parts_.push_back(std::make_unique<HeatPart>(settings));
  if (settings.controller) parts_.push_back(std::make_unique<ControllerPart>(settings));
}

void Run::Describe() {
  data_.board = link::BoardName().toStdString();
  data_.chip = link::TextOf(chip_).toStdString();
  data_.version = base::kVersionText;
  data_.began = WallTime(services_);
}

void Run::Refuse(const std::string& why) {
  data_.ending = Ending::Refused;
  data_.endWords = why + ". Nothing was set";
  data_.boardAsFound = true;
  data_.ended = WallTime(services_);
}

bool Run::CheckChip() {
  const auto first = ReadQuietly("Configuration 1"_reg);
  const auto second = ReadQuietly("Configuration 2"_reg);
  const auto revision = ReadQuietly("Revision Number"_reg);
  if (!first || !second || !revision) return Refuse("A transfer with the chip failed"), false;
  // The duties that are measured depend on it.
  if (chip::Model.ChipRevisionFrom != chip_) chip::ReadChipRevision();
  claims_.SetRevision(static_cast<std::int16_t>(*revision));
  data_.device = "Revision " + std::to_string(*revision);
  const auto isSet = [](unsigned value, base::BitField bits) { return base::GetField(value, bits) != 0; };
  if (isSet(*first, chip::kLock.bits)) return Refuse("The chip is locked until it is reset"), false;
  if (!isSet(*first, chip::Field("Configuration 1", "MON"))) return Refuse("The chip's monitoring is off"), false;
  if (isSet(*second, chip::Field("Configuration 2", "Shdn"))) return Refuse("The chip is shut down"), false;
  if (isSet(*second, chip::Field("Configuration 2", "FFS"))) {
    return Refuse("The chip drives all fans at full speed (Configuration 2.FFS)"), false;
  }
  return true;
}

bool Run::ReadSome() {
  if (read_ == 0 && !CheckChip()) return false;
  const std::vector<std::uint8_t>& registers = tasks::ComparableRegisters();
  for (int count = 0; count < kReadsPerTick && read_ < registers.size(); ++count, ++read_) {
    const std::uint8_t reg = registers[read_];
    const auto value = ReadQuietly(reg);
    if (!value) return Refuse("A transfer with the chip failed"), false;
    const chip::RegisterRow& row = *chip::RowAt(reg);
    const unsigned chipsOwn = base::Mask(chip::kReady.bits) * (reg == chip::kReady.reg ? 1U : 0U);
    if (((*value ^ row.defaultValue) & ~chipsOwn) == 0) continue;
    data_.departures.push_back({reg, row.name, static_cast<std::uint8_t>(*value), row.defaultValue});
  }
  hasRead_ = read_ >= registers.size();
  return true;
}

bool Run::IsWithinLimits() {
  const double now = bench_.Now();
  if (now > data_.settings.timeLimit) {
    End(Ending::TimeLimit, "The limit of the time was reached");
    return false;
  }
  if (bench_.Read().AreLost(services_.clock.Now())) {
    End(Ending::NoReadings, "The readings of the chip have failed for some seconds");
    return false;
  }
  if (!bench_.Read().HasTemperatures()) return true;
  for (int channel = 0; channel < kTemperatures; ++channel) {
    const double temperature = Readings::Temperature(channel);
    if (temperature <= data_.settings.temperatureLimit) continue;
    End(Ending::TemperatureLimit, std::string(chip::kTemperatureNames.at(static_cast<std::size_t>(channel))) +
                                      " reached " + OneDecimal(temperature) + " °C, above the limit");
    return false;
  }
  return true;
}

void Run::AddPoint() {
  const bool isNew = bench_.Read().HasTachs() || bench_.Read().HasTemperatures();
  const double now = bench_.Now();
  if (!isNew || now - pointAt_ < kPointEvery) return;
  pointAt_ = now;
  Point point{.time = now, .phase = parts_[part_]->Which()};
  for (int i = 0; i < kPwms; ++i) point.duty.at(static_cast<std::size_t>(i)) = bench_.Duty(i + 1);
  for (int i = 0; i < kTachs; ++i) point.rpm.at(static_cast<std::size_t>(i)) = static_cast<int>(Readings::Rpm(i + 1));
  for (int i = 0; i < kTemperatures; ++i) point.temperature.at(static_cast<std::size_t>(i)) = Readings::Temperature(i);
  for (int i = 0; i < kHeaters; ++i) point.heater.at(static_cast<std::size_t>(i)) = claims_.Heater(i + 1);
  data_.points.push_back(point);
}

void Run::Go() {
  bench_.Read().Take(services_.clock.Now(), bench_.Every());
  if (!IsWithinLimits()) return;
  AddPoint();
  std::string failed;
  if (bench_.HasWrites()) {
    if (!bench_.WriteSome(failed)) End(Ending::TransferFailed, "Setting " + failed + " failed");
    return;
  }
  if (!parts_[part_]->Tick(bench_)) return;
  if (++part_ < parts_.size()) {
    between_ = true;
    return;
  }
  End(Ending::Done, "All was measured");
}

void Run::Tick() {
  if (IsOver()) return;
  const link::Asker asker(link::Asker::Kind::Job, [] { return std::string(kAsker); });
  const link::Quiet quiet;
  if (puttingBack_) return PutBackSome();
  if (link::ChipInUse() != chip_) return End(Ending::OtherChip, "Another chip was selected");
  data_.seconds = bench_.Now();
  if (!hasRead_) {
    ReadSome();
  } else if (between_) {
    PutBackSome();
  } else {
    Go();
  }
}

void Run::End(Ending ending, const std::string& words) {
  if (data_.ending != Ending::Running) return;
  data_.ending = ending;
  data_.endWords = words;
  between_ = false;
  puttingBack_ = true;
}

void Run::PutBackSome() {
  const link::Meanwhile meanwhile(chip_);
  const tasks::Journal::Pause pause(*tasks::Work.journal);
  if (putBackFrom_ < 0) putBackFrom_ = bench_.Now();
  if (claims_.PutBackNext(bench_.Now() - putBackFrom_ < tryFor_)) return;
  putBackFrom_ = -1;
  if (puttingBack_) return Finish();
  between_ = false;
  if (!claims_.AllAsFound()) End(Ending::TransferFailed, "What a part of the run had set could not be put back");
}

void Run::EndNow(Ending ending, const std::string& words) {
  if (IsOver()) return;
  const link::Asker asker(link::Asker::Kind::Job, [] { return std::string(kAsker); });
  const link::Quiet quiet;
  End(ending, words);
  tryFor_ = kTryForNow;
  if (link::LinkHeld()) claims_.GiveUp();
  constexpr float kPause = 20;
  for (int round = 0; puttingBack_ && round < 1000; ++round) {
    PutBackSome();
    // The chip shows a duty only after its next moment.
    if (puttingBack_ && !link::LinkHeld()) services_.clock.WaitMs(kPause);
  }
}

void Run::Finish() {
  puttingBack_ = false;
  data_.seconds = bench_.Now();
  data_.ended = WallTime(services_);
  data_.boardAsFound = claims_.AllAsFound();
  data_.endWords += data_.boardAsFound ? ". The board is as it was found" : ". Not all of the board is as it was found";
  const bool hadHeat = std::ranges::any_of(
      data_.parts, [](const PartState& part) { return part.fate == Fate::Off && part.before != "0 %"; });
  if (hadHeat) data_.remarks.emplace_back("A heater that was on before is off now");
  if (!data_.boardAsFound) return;
  // What has been put back is nothing to undo.
  const std::vector<tasks::Action> actions = tasks::Work.journal->Actions();
  for (const tasks::Action& action : actions) {
    if (action.who == kAsker) tasks::Work.journal->Forget(action);
  }
}

std::vector<std::uint8_t> Run::Owned() const {
  std::vector<std::uint8_t> registers = claims_.Registers();
  const auto add = [&registers](unsigned reg) {
    const auto byte = static_cast<std::uint8_t>(reg);
    if (std::ranges::find(registers, byte) == registers.end()) registers.push_back(byte);
  };
  for (const int pwm : data_.settings.pwms) {
    add("PWM1 Config"_reg + static_cast<unsigned>(pwm - 1));
    add("PWM 1 Value"_reg + static_cast<unsigned>(pwm - 1));
  }
  add("Tach Enable"_reg);
  add("Configuration 2"_reg);
  std::ranges::sort(registers);
  return registers;
}

double Run::Left() const {
  double left = 0;
  for (std::size_t i = part_; i < parts_.size(); ++i) {
    left += parts_[i]->Expected() * (i == part_ ? 1 - parts_[i]->Done() : 1);
  }
  return left;
}

double Run::SecondsLeft() const {
  return data_.ending == Ending::Running ? Left() : 0;
}

double Run::Progress() {
  double whole = kPrepareSeconds;
  for (const auto& part : parts_) whole += part->Expected();
  const double done = data_.ending == Ending::Running ? (hasRead_ ? whole - Left() : 0) / whole : 1;
  progress_ = std::max(progress_, std::clamp(done, 0.0, 1.0));
  return progress_;
}

std::string Run::Words() const {
  if (IsOver()) return data_.endWords;
  if (puttingBack_ || between_) return "Putting everything back";
  if (!hasRead_) return "Reading the chip's registers";
  return part_ < parts_.size() ? parts_[part_]->Words() : "";
}

}  // namespace zth::characterise
