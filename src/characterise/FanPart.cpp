#include "characterise/FanPart.h"

#include <algorithm>
#include <cmath>

#include "characterise/FanAnalysis.h"
#include "chip/ChipState.h"
#include "chip/RegisterNames.h"
#include "link/ChipId.h"

namespace zth::characterise {
namespace {

constexpr double kFull = 100;
constexpr double kUsualSettling = 6.5;  // seconds

/// Whether the chip's pins let the tach be counted; what is not known counts as yes.
bool PinIsTach(int tach) {
  constexpr std::size_t kFirstTachRow = 4;
  if (chip::Model.PinFunctionsFrom != link::ChipInUse()) return true;
  return chip::Model.LogChannelTable.at(kFirstTachRow + static_cast<std::size_t>(tach - 1)).Available == 1.0F;
}

template <typename Visit>
void ForEachTach(Characterisation& data, const Visit& visit) {
  for (FanResult& fan : data.fans) {
    for (TachResult& tach : fan.tachs) visit(tach);
  }
}

}  // namespace

void MakeManual(Bench& bench, int pwm) {
  const auto reg = static_cast<std::uint8_t>("PWM1 Config"_reg + pwm - 1);
  bench.SetField({reg, chip::Field("PWM1 Config", "Spin")}, 0, "the spin-up of PWM" + std::to_string(pwm));
  bench.SetField({reg, chip::kBehaviour}, chip::kManualMode, "the behaviour of PWM" + std::to_string(pwm));
}

void CountFast(Bench& bench) {
  unsigned tachs = 0;
  for (const int pwm : bench.Asked().pwms) {
    for (const int tach : bench.Asked().tachs.at(static_cast<std::size_t>(pwm - 1))) tachs |= 1U << (tach - 1);
  }
  for (unsigned tach = 0; tach < kTachs; ++tach) {
    if ((tachs >> tach & 1U) == 0) continue;
    bench.SetField({"Tach Enable"_reg, {static_cast<std::uint8_t>(tach), 1}}, 1, "the tachs");
  }
  bench.SetField(chip::At("Configuration 2", "Fst"), 1, "the tachs' rate");
  if (bench.Asked().pulses == 0) return;
  bench.SetField(chip::At("Configuration 2", "#FP"), static_cast<unsigned>(bench.Asked().pulses - 1), "the pulses");
}

FanPart::FanPart(const Settings& settings) : settings_(settings) {
  const int step = settings.dutyStep;
  std::vector<double> duties;
  for (int duty = 0; duty < static_cast<int>(kFull); duty += step) duties.push_back(duty);
  duties.push_back(kFull);
  for (auto duty = duties.rbegin(); duty != duties.rend(); ++duty) {
    steps_.push_back({Kind::Measure, Direction::Down, *duty});
  }
  for (const double duty : duties) {
    if (duty > 0) steps_.push_back({Kind::Measure, Direction::Up, duty});
  }
  steps_.push_back({Kind::Stand, Direction::Down, 0});
  steps_.push_back({Kind::SpinUp, Direction::Up, kFull});
}

double FanPart::Expected() const {
  return kUsualSettling * static_cast<double>(steps_.size());
}

double FanPart::Done() const {
  return static_cast<double>(step_) / static_cast<double>(steps_.size());
}

std::string FanPart::Words() const {
  if (step_ >= steps_.size()) return "Fans: done";
  const Step& step = steps_[step_];
  if (step.kind == Kind::Stand) return "Fans: waiting for standstill";
  if (step.kind == Kind::SpinUp) return "Fans: spinning up";
  return "Fans: " + std::to_string(std::lround(step.duty)) + " % " +
         (step.direction == Direction::Down ? "on the way down" : "on the way up");
}

void FanPart::Prepare(Bench& bench) {
  for (const int pwm : settings_.pwms) {
    FanResult fan{.pwm = pwm, .words = {}, .tachs = {}};
    for (const int tach : settings_.tachs.at(static_cast<std::size_t>(pwm - 1))) {
      fan.tachs.emplace_back();
      fan.tachs.back().tach = tach;
    }
    bench.Data().fans.push_back(fan);
  }
  CountFast(bench);
  for (const int pwm : settings_.pwms) MakeManual(bench, pwm);
}

void FanPart::Begin(Bench& bench) {
  for (const int pwm : settings_.pwms) bench.SetDuty(pwm, steps_[step_].duty);
}

void FanPart::Listen(Bench& bench) {
  if (!bench.Read().HasTachs()) return;
  ForEachTach(bench.Data(), [&](const TachResult& tach) {
    tachs_.at(static_cast<std::size_t>(tach.tach - 1)).Add(bench.Now(), Readings::Rpm(tach.tach));
  });
}

bool FanPart::HasSettled(double now) const {
  for (const int pwm : settings_.pwms) {
    for (const int tach : settings_.tachs.at(static_cast<std::size_t>(pwm - 1))) {
      if (!tachs_.at(static_cast<std::size_t>(tach - 1)).IsSettled(now)) return false;
    }
  }
  return true;
}

void FanPart::Finish(Bench& bench) {
  const Step& step = steps_[step_];
  ForEachTach(bench.Data(), [&](TachResult& tach) {
    const Settling& settling = tachs_.at(static_cast<std::size_t>(tach.tach - 1));
    if (step.kind == Kind::SpinUp) {
      // A fan that turned at 0 % does not start from standstill.
      if (tach.speeds.empty() || settling.Speeds().empty() || settling.Speeds().front().rpm > tach.topRpm / 2) return;
      AnalyseSpinUp(tach, settling.Speeds(), began_);
    } else if (step.kind == Kind::Measure) {
      tach.speeds.push_back({.direction = step.direction,
                             .duty = bench.Duty(bench.Asked().pwms.front()),
                             .rpm = settling.Rpm(),
                             .noise = settling.Noise(),
                             .seconds = bench.Now() - began_,
                             .settled = settling.IsSettled(bench.Now())});
    } else {
      Analyse(tach, PinIsTach(tach.tach));
    }
  });
}

void FanPart::Conclude(Bench& bench) {
  for (FanResult& fan : bench.Data().fans) {
    const bool isDead =
        std::ranges::all_of(fan.tachs, [](const TachResult& tach) { return tach.state == TachState::Dead; });
    if (isDead) fan.words = "None of its tachs gives a speed";
  }
}

bool FanPart::Tick(Bench& bench) {
  const double now = bench.Now();
  switch (state_) {
    case State::New:
      Prepare(bench);
      state_ = State::Prepared;
      return false;
    case State::Prepared:
      Begin(bench);
      state_ = State::Begun;
      return false;
    case State::Begun:
      began_ = bench.WrittenAt();
      for (Settling& tach : tachs_) tach.Begin(began_);
      bench.Every().tachs = steps_[step_].kind == Kind::SpinUp ? 0.05 : 0.25;
      state_ = State::Listening;
      [[fallthrough]];
    case State::Listening:
      break;
  }
  Listen(bench);
  if (!HasSettled(now) && now - began_ < settings_.settleMost) return false;
  Finish(bench);
  if (++step_ < steps_.size()) {
    state_ = State::Prepared;
    return false;
  }
  Conclude(bench);
  return true;
}

}  // namespace zth::characterise
