#include "characterise/Bench.h"

#include <algorithm>
#include <utility>

#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/Freshness.h"
#include "chip/Measurements.h"
#include "link/LinkErrors.h"

namespace zth::characterise {

void Readings::Take(Group& group, double now, double age) {
  const auto index = static_cast<std::size_t>(group.number);
  const auto isNew = [&] { return chip::Model.Measurements.Reads[index] != group.reads; };
  if (!isNew() && now - *group.at >= age) {
    const link::Quiet quiet;
    chip::Model.Freshness.now = now;
    chip::ReadMeasurementGroup(static_cast<std::int16_t>(group.number));
  }
  group.fresh = isNew();
  group.reads = chip::Model.Measurements.Reads[index];
  if (group.fresh) group.at = now;
}

void Readings::Take(double now, const Pace& pace) {
  if (!std::exchange(began_, true)) {
    constexpr std::array kNumbers{chip::kTachGroup, chip::kTemperatureGroup, chip::kPwmGroup};
    for (std::size_t i = 0; i < groups_.size(); ++i) {
      // What was read before the run is no reading of it.
      const auto index = static_cast<std::size_t>(kNumbers.at(i));
      groups_.at(i) = {kNumbers.at(i), chip::Model.Measurements.Reads[index], now, false};
    }
  }
  Take(groups_[0], now, pace.tachs);
  Take(groups_[1], now, pace.temperatures);
  Take(groups_[2], now, pace.duties);
}

bool Readings::AreLost(double now) const {
  return began_ && std::ranges::any_of(groups_, [&](const Group& group) { return now - *group.at > kLost; });
}

double Readings::Rpm(int tach) {
  return chip::Model.Measurements.TachRpm.at(static_cast<std::size_t>(tach - 1));
}

double Readings::Temperature(int channel) {
  return static_cast<double>(chip::Model.Measurements.Temperature.at(static_cast<std::size_t>(channel)));
}

double Readings::Duty(int pwm) {
  return chip::Model.Measurements.PwmPercent.at(static_cast<std::size_t>(pwm - 1));
}

void Bench::SetField(chip::RegisterField field, unsigned value, const std::string& words) {
  const unsigned mask = base::Mask(field.bits);
  const unsigned bits = value << field.bits.shift;
  writes_.push_back({words, [reg = field.reg, mask, bits](Claims& claims) { return claims.Set(reg, mask, bits); }});
}

void Bench::SetDuty(int pwm, double percent) {
  writes_.push_back({"the duty of PWM" + std::to_string(pwm),
                     [pwm, percent](Claims& claims) { return claims.SetDuty(pwm, chip::ByteFromPercent(percent)); }});
}

void Bench::SetHeater(double percent) {
  const int heater = Asked().heater;
  writes_.push_back({"heater " + std::to_string(heater), [heater, percent](Claims& claims) {
                       return claims.SetHeater(heater, static_cast<int>(percent));
                     }});
}

bool Bench::WriteSome(std::string& failed) {
  constexpr int kAtOnce = 4;
  for (int count = 0; count < kAtOnce && !writes_.empty(); ++count) {
    if (!writes_.front().make(claims_)) {
      failed = writes_.front().words;
      return false;
    }
    writes_.erase(writes_.begin());
    writtenAt_ = Now();
  }
  return true;
}

double Bench::Duty(int pwm) const {
  const auto set = claims_.Duty(pwm);
  return set ? *set / chip::kPercentDivisor : Readings::Duty(pwm);
}

}  // namespace zth::characterise
