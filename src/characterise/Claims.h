#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "characterise/Characterisation.h"

/// What a run sets on the board, and how it puts it back.
namespace zth::characterise {

/// A byte of the chip in use; nothing if the transfer failed. Reports no failure.
std::optional<unsigned> ReadQuietly(std::uint8_t reg);

/// The registers and heaters that a run has set. No failure is reported: each call says whether it has succeeded.
class Claims {
 public:
  /// The states of the parts are kept in `parts`, which must outlive it.
  explicit Claims(std::vector<PartState>& parts) : parts_(parts) {}

  /// The revision of the chip decides how duties read (chip/Conversions.h).
  void SetRevision(std::int16_t revision) { revision_ = revision; }

  /// Sets the bits of `mask` and reads the register back. The first time it reads and keeps what it held. False if a
  /// transfer has failed twice or the chip does not take the value.
  bool Set(std::uint8_t reg, unsigned mask, unsigned value);

  /// Sets the duty of a PWM in manual mode, 0 to 255.
  bool SetDuty(int pwm, std::uint8_t duty);
  /// What was set; nothing if the PWM is not claimed.
  std::optional<std::uint8_t> Duty(int pwm) const { return duties_.at(static_cast<std::size_t>(pwm - 1)); }

  bool SetHeater(int heater, int percent);
  int Heater(int heater) const { return heaters_.at(static_cast<std::size_t>(heater - 1)); }

  bool Owns(std::uint8_t reg) const;
  bool OwnsHeater(int heater) const;
  std::vector<std::uint8_t> Registers() const;

  /// Puts back one part, heaters first and then in the reverse order of the first writes. True while there is more to
  /// do. A part whose transfers fail is tried again, behind the others, as long as `mayTryAgain`.
  bool PutBackNext(bool mayTryAgain);

  /// Gives all up without a transfer: what has become of it is not known.
  void GiveUp();

  /// Whether all parts are as before, or off, and verified.
  bool AllAsFound() const;

 private:
  enum class Kind : std::uint8_t { Register, Duty, Heater };
  struct Claim {
    Kind kind = Kind::Register;
    std::uint8_t number = 0;  ///< register; of a heater its number
    std::uint8_t before = 0;  ///< a duty's as it is, not as it reads
    std::uint8_t mask = 0;    ///< bits that were set
    std::uint8_t written = 0;
    std::uint8_t beforeConfig = 0;  ///< of a duty: what the PWM's configuration was
    std::size_t part = 0;
    int tries = 0;       ///< to put it back
    int mismatches = 0;  ///< of them, how often it read something else
    bool done = false;
  };

  Claim* Find(Kind kind, std::uint8_t number);
  Claim& Enter(const Claim& claim, const std::string& name);
  Claim* Next();
  Fate PutBack(const Claim& claim) const;
  Fate PutBackDuty(const Claim& claim) const;
  void Finish(Claim& claim, Fate fate);
  void Show(const Claim& claim);
  std::uint8_t Actual(unsigned read) const;

  std::vector<PartState>& parts_;
  std::vector<Claim> claims_;
  std::array<std::optional<std::uint8_t>, kPwms> duties_{};
  std::array<int, kHeaters> heaters_{};
  std::int16_t revision_ = 0;
};

/// What a fate means, for people.
std::string FateWords(Fate fate);

}  // namespace zth::characterise
