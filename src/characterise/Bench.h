#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "characterise/Characterisation.h"
#include "characterise/Claims.h"
#include "platform/Services.h"

/// What the parts of a run work with: time, fresh readings, and writes that are made one after the other.
namespace zth::characterise {

/// How old a group of readings may become before the run reads it itself, seconds.
struct Pace {
  double tachs = 0.25;
  double temperatures = 0.5;
  double duties = 2;
};

/// The latest readings, from whomever they were read.
class Readings {
 public:
  /// No good reading for this long ends a run, seconds.
  static constexpr double kLost = 4;

  /// Takes what has been read since the last call, and reads what is older than the pace allows. `now` of the clock.
  void Take(double now, const Pace& pace);

  bool HasTachs() const { return groups_[0].fresh; }         ///< new with the last Take
  bool HasTemperatures() const { return groups_[1].fresh; }  ///< likewise
  bool HasDuties() const { return groups_[2].fresh; }
  bool AreLost(double now) const;

  static double Rpm(int tach);
  static double Temperature(int channel);
  static double Duty(int pwm);

 private:
  struct Group {
    int number = 0;
    std::uint32_t reads = 0;
    std::optional<double> at;  ///< of the last good reading; before the first one of the run, its beginning
    bool fresh = false;
  };
  static void Take(Group& group, double now, double age);

  std::array<Group, 3> groups_{};
  bool began_ = false;
};

class Bench {
 public:
  Bench(platform::Services& services, Characterisation& data, Claims& claims)
      : services_(services), data_(data), claims_(claims), began_(services.clock.Now()) {}

  double Now() const { return services_.clock.Now() - began_; }  ///< since the start of the run
  const Settings& Asked() const { return data_.settings; }
  Characterisation& Data() { return data_; }
  Claims& Held() { return claims_; }
  Readings& Read() { return readings_; }
  Pace& Every() { return pace_; }

  /// Writes to be made, in order, before the part of the run goes on. `words` say what failed if it does.
  void SetField(chip::RegisterField field, unsigned value, const std::string& words);
  void SetDuty(int pwm, double percent);
  void SetHeater(double percent);
  /// Makes a few of them. False if one has failed; `failed` says which.
  bool WriteSome(std::string& failed);
  bool HasWrites() const { return !writes_.empty(); }
  /// When the last of them was made.
  double WrittenAt() const { return writtenAt_; }

  /// The duty of a PWM, percent: as set by the run, or as measured.
  double Duty(int pwm) const;

 private:
  struct Write {
    std::string words;
    std::function<bool(Claims&)> make;
  };

  platform::Services& services_;
  Characterisation& data_;
  Claims& claims_;
  double began_;
  Readings readings_;
  Pace pace_;
  std::vector<Write> writes_;
  double writtenAt_ = 0;
};

/// A part of a run.
class Part {
 public:
  Part() = default;
  virtual ~Part() = default;
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  virtual Phase Which() const = 0;
  /// Goes on; called when no write is pending. True once the part is done.
  virtual bool Tick(Bench& bench) = 0;
  virtual double Done() const = 0;      ///< 0 to 1
  virtual double Expected() const = 0;  ///< seconds from beginning to end
  virtual std::string Words() const = 0;
};

}  // namespace zth::characterise
