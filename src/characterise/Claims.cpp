#include "characterise/Claims.h"

#include <algorithm>
#include <utility>

#include "chip/Conversions.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "tasks/ChangeWords.h"
#include "tasks/FieldWrites.h"

namespace zth::characterise {
namespace {

std::uint8_t Byte(unsigned value) {
  return static_cast<std::uint8_t>(value);
}

/// Whether the transfer succeeded. An SMBus library that does not count failures always says so: hence the read after.
bool Write(std::uint8_t reg, unsigned value) {
  const link::Quiet quiet;
  const link::FailureWatch watch;
  link::WriteRegisterValue(link::Bus.DeviceAddress, reg, static_cast<std::int32_t>(value));
  return !watch.Failed();
}

std::optional<unsigned> ReadHeater(int heater) {
  const link::Quiet quiet;
  if (link::ReadHeaterState() != 0) return std::nullopt;
  return link::Bus.ReadBuffer.at(static_cast<std::size_t>(heater - 1)) /
         2U;  // the adapter reports twice the percentage
}

bool WriteHeater(int heater, int percent) {
  const link::Quiet quiet;
  std::int32_t drive = percent;
  return link::SetHeater(heater, drive) == 0;
}

Fate HeaterOff(int heater) {
  if (!WriteHeater(heater, 0)) return Fate::Unknown;
  const auto now = ReadHeater(heater);
  if (!now) return Fate::Unknown;
  return *now == 0 ? Fate::Off : Fate::NotVerified;
}

}  // namespace

std::optional<unsigned> ReadQuietly(std::uint8_t reg) {
  const link::Quiet quiet;
  const link::FailureWatch watch;
  const auto value = static_cast<unsigned>(link::ReadRegister(link::Bus.DeviceAddress, reg));
  return watch.Failed() ? std::nullopt : std::optional(value);
}

std::string FateWords(Fate fate) {
  switch (fate) {
    case Fate::InUse:
      return "in use by the run";
    case Fate::Restored:
      return "as before, read back";
    case Fate::Off:
      return "off, read back";
    case Fate::Foreign:
      return "left alone: something else has changed it since";
    case Fate::NotVerified:
      return "put back, but it reads something else";
    case Fate::Unknown:
      break;
  }
  return "not reached: it may still hold what the run has set";
}

std::uint8_t Claims::Actual(unsigned read) const {
  return Byte(static_cast<unsigned>(chip::PwmRawNormalise(static_cast<std::int16_t>(read), revision_)));
}

Claims::Claim* Claims::Find(Kind kind, std::uint8_t number) {
  const auto claim = std::ranges::find_if(
      claims_, [&](const Claim& one) { return one.kind == kind && one.number == number && !one.done; });
  return claim == claims_.end() ? nullptr : &*claim;
}

Claims::Claim& Claims::Enter(const Claim& claim, const std::string& name) {
  claims_.push_back(claim);
  const auto part = std::ranges::find(parts_, name, &PartState::name);
  claims_.back().part = static_cast<std::size_t>(part - parts_.begin());
  if (part == parts_.end()) {
    const bool isHeater = claim.kind == Kind::Heater;
    parts_.push_back({.name = name,
                      .before = isHeater ? std::to_string(claim.before) + " %" : tasks::ByteWords(claim.before),
                      .set = {},
                      .fate = Fate::InUse,
                      .words = {}});
  }
  return claims_.back();
}

void Claims::Show(const Claim& claim) {
  PartState& part = parts_.at(claim.part);
  part.set = claim.kind == Kind::Heater ? std::to_string(claim.written) + " %" : tasks::ByteWords(claim.written);
  part.fate = Fate::InUse;
  part.words = FateWords(part.fate);
}

bool Claims::Set(std::uint8_t reg, unsigned mask, unsigned value) {
  Claim* claim = Find(Kind::Register, reg);
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto now = ReadQuietly(reg);
    if (!now) continue;
    const unsigned wanted = (*now & ~mask) | (value & mask);
    if (wanted == *now) return true;
    if (claim == nullptr) {
      claim = &Enter({.kind = Kind::Register, .number = reg, .before = Byte(*now)}, tasks::RegisterWords(reg));
    }
    // Entered before it is written: a write that is reported as failed may have reached the chip.
    claim->mask = Byte(claim->mask | mask);
    claim->written = Byte(wanted);
    Show(*claim);
    if (Write(reg, wanted) && ReadQuietly(reg) == wanted) return true;
  }
  return false;
}

bool Claims::SetDuty(int pwm, std::uint8_t duty) {
  const auto index = static_cast<unsigned>(pwm - 1);
  const std::uint8_t reg = Byte("PWM 1 Value"_reg + index);
  Claim* claim = Find(Kind::Duty, reg);
  if (claim == nullptr) {
    const auto now = ReadQuietly(reg);
    if (!now) return false;
    const Claim* config = Find(Kind::Register, Byte("PWM1 Config"_reg + index));
    const std::uint8_t manual = base::PutField(0, chip::kBehaviour, chip::kManualMode);
    claim = &Enter({.kind = Kind::Duty,
                    .number = reg,
                    .before = Actual(*now),
                    .mask = 0xFF,
                    .beforeConfig = config == nullptr ? manual : config->before},
                   tasks::RegisterWords(reg));
  }
  claim->written = duty;
  Show(*claim);
  duties_.at(index) = duty;
  return Write(reg, duty) || Write(reg, duty);
}

bool Claims::SetHeater(int heater, int percent) {
  const auto number = Byte(static_cast<unsigned>(heater));
  Claim* claim = Find(Kind::Heater, number);
  if (claim == nullptr) {
    const auto now = ReadHeater(heater);
    if (!now) return false;
    claim = &Enter({.kind = Kind::Heater, .number = number, .before = Byte(*now), .mask = 0xFF},
                   tasks::BoardWords(tasks::BoardPart::Heater, number));
  }
  claim->written = Byte(static_cast<unsigned>(percent));
  Show(*claim);
  heaters_.at(static_cast<std::size_t>(heater - 1)) = percent;
  return WriteHeater(heater, percent) || WriteHeater(heater, percent);
}

bool Claims::Owns(std::uint8_t reg) const {
  return std::ranges::any_of(
      claims_, [&](const Claim& one) { return one.kind != Kind::Heater && one.number == reg && !one.done; });
}

bool Claims::OwnsHeater(int heater) const {
  return std::ranges::any_of(
      claims_, [&](const Claim& one) { return one.kind == Kind::Heater && one.number == heater && !one.done; });
}

std::vector<std::uint8_t> Claims::Registers() const {
  std::vector<std::uint8_t> registers;
  for (const Claim& claim : claims_) {
    if (claim.kind != Kind::Heater && !claim.done) registers.push_back(claim.number);
  }
  return registers;
}

Claims::Claim* Claims::Next() {
  // Heaters first; then in the reverse order of the first writes. One that has failed waits for the others.
  const auto rank = [](const Claim& claim) { return std::pair(claim.tries, claim.kind != Kind::Heater); };
  Claim* next = nullptr;
  for (auto claim = claims_.rbegin(); claim != claims_.rend(); ++claim) {
    if (!claim->done && (next == nullptr || rank(*claim) < rank(*next))) next = &*claim;
  }
  return next;
}

Fate Claims::PutBackDuty(const Claim& claim) const {
  const auto config = ReadQuietly(Byte("PWM1 Config"_reg + unsigned{claim.number} - "PWM 1 Value"_reg));
  if (!config) return Fate::Unknown;
  if (base::GetField(*config, chip::kBehaviour) != chip::kManualMode) {
    // The duty of a PWM that was not in manual mode was the chip's own, and is so again.
    const bool wasManual = base::GetField(claim.beforeConfig, chip::kBehaviour) == chip::kManualMode;
    return wasManual ? Fate::Foreign : Fate::Restored;
  }
  if (!Write(claim.number, claim.before)) return Fate::Unknown;
  const auto now = ReadQuietly(claim.number);
  if (!now) return Fate::Unknown;
  return Actual(*now) == claim.before ? Fate::Restored : Fate::NotVerified;
}

Fate Claims::PutBack(const Claim& claim) const {
  if (claim.kind == Kind::Heater) return HeaterOff(claim.number);
  if (claim.kind == Kind::Duty) return PutBackDuty(claim);
  const link::Quiet quiet;
  const std::vector<tasks::Left> left = tasks::RunSteps({{claim.number, claim.before, claim.mask, claim.written}});
  if (left.empty()) return Fate::Restored;
  switch (left.front().reason) {
    case tasks::Reason::Changed:
      return Fate::Foreign;
    case tasks::Reason::Failed:
      return Fate::Unknown;
    default:
      return Fate::NotVerified;
  }
}

void Claims::Finish(Claim& claim, Fate fate) {
  claim.done = true;
  PartState& part = parts_.at(claim.part);
  part.fate = fate;
  part.words = FateWords(fate);
  if (claim.kind == Kind::Duty) duties_.at(unsigned{claim.number} - "PWM 1 Value"_reg).reset();
  if (claim.kind == Kind::Heater && fate == Fate::Off) heaters_.at(claim.number - 1U) = 0;
}

bool Claims::PutBackNext(bool mayTryAgain) {
  Claim* claim = Next();
  if (claim == nullptr) {
    claims_.clear();
    return false;
  }
  const Fate fate = PutBack(*claim);
  // A duty may read as before only after the chip's next moment.
  constexpr int kVerifications = 5;
  const bool again =
      fate == Fate::Unknown ? mayTryAgain : fate == Fate::NotVerified && ++claim->mismatches < kVerifications;
  ++claim->tries;
  if (!again) Finish(*claim, fate);
  return true;
}

void Claims::GiveUp() {
  for (Claim& claim : claims_) {
    if (!claim.done) Finish(claim, Fate::Unknown);
  }
  claims_.clear();
}

bool Claims::AllAsFound() const {
  return std::ranges::all_of(
      parts_, [](const PartState& part) { return part.fate == Fate::Restored || part.fate == Fate::Off; });
}

}  // namespace zth::characterise
