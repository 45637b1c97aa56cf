#pragma once

#include <array>
#include <cstdint>

#include "simulator/PinModel.h"

namespace zth::simulator {

inline constexpr int kHeaters = 2;

/// The physical constants of the board. The defaults describe a desktop board: ambient air at 25 degrees C, sensors
/// between 29 and 45 degrees at rest, and a heater that at full drive warms its diode by about 1.5 degrees per second.
struct PlantOptions {
  double ambientC = 25.0;
  std::uint64_t seed = 1;  ///< seed of the spread between units
  double spread = 1.0;     ///< scale of that spread; 0 makes all fans and supplies identical
  double ripple = 1.0;     ///< scale of the supplies' ripple; 0 for none
  int fanPulses = 2;       ///< tach pulses of the fans per revolution

  double heaterWatts = 6.0;     ///< at full drive
  double heaterToLocal = 0.12;  ///< fraction of a heater's power that heats the board around Local
  std::array<double, kTemperatures> standingWatts{0.55, 1.4, 1.6, 1.3};  ///< always dissipated at each sensor
  std::array<double, kTemperatures> heatCapacity{6.0, 4.0, 4.0, 4.0};    ///< joules per kelvin
  std::array<double, kTemperatures> stillAir{0.09, 0.08, 0.08, 0.08};    ///< watts per kelvin without a fan
  std::array<double, kTemperatures> movingAir{0.08, 0.22, 0.22, 0.22};   ///< additional watts per kelvin in full air
                                                                         ///< flow

  double fullRpm = 4800;       ///< of a fan at full duty
  double idleShare = 0.1;      ///< fraction of it at zero duty; the speed rises linearly from there
  double stallDuty = 0.15;     ///< a turning fan stops below this duty
  double startDuty = 0.28;     ///< a stopped fan does not start below this duty
  double spinUpSeconds = 0.8;  ///< time constant towards a higher speed
  double coastSeconds = 1.6;   ///< and towards a lower speed
};

/// Heat, air and supplies of the board. Advances by a given time; splitting it into different steps changes
/// temperatures by less than 0.01 degrees C and speeds by less than 0.1 percent.
class Plant {
 public:
  explicit Plant(const PlantOptions& options = {});

  /// Drive of a fan, 0 to 1. Fans 0 to 3 and 4 to 7 are on the PWM outputs 0 to 3, in order.
  void SetFanDrive(int fan, double duty) { fans_[At(fan)].drive = duty; }
  /// Blocks or releases the rotor of a fan.
  void SetFanBlocked(int fan, bool blocked) { fans_[At(fan)].blocked = blocked; }
  /// Sets how fast a worn fan turns, as a share of its healthy speed; 1 for a healthy one.
  void SetFanWear(int fan, double share) { fans_[At(fan)].wear = share; }
  /// Sets the temperature of the air around the board, in degrees C.
  void SetAmbient(double celsius) { ambientC_ = celsius; }
  /// Drive of heater 0 (Remote 1) or 1 (Remote 2), 0 to 1.
  void SetHeater(int heater, double drive) { heaters_[At(heater)] = drive; }
  /// A factor on a supply, 1 for a good one.
  void SetSupplyFactor(VoltagePin pin, double factor) { supplies_[At(pin)].factor = factor; }

  void Step(double seconds);

  double TemperatureC(int sensor) const { return temperatures_[At(sensor)]; }
  double Rpm(int fan) const { return fans_[At(fan)].rpm; }
  double PulsesPerMinute(int fan) const { return Rpm(fan) * options_.fanPulses; }
  /// The supply of a pin relative to its nominal voltage, including the unit's deviation and ripple.
  double SupplyRatio(VoltagePin pin) const;

  /// Watts per kelvin carried away from a sensor at the present fan speeds.
  double Cooling(int sensor) const;
  /// Watts delivered to a sensor.
  double Heating(int sensor) const;

 private:
  struct Fan {
    double drive = 0;
    double rpm = 0;
    double fullRpm = 0;
    double stallDuty = 0;
    double startDuty = 0;
    double wear = 1;
    bool turning = false;
    bool blocked = false;
  };
  struct Supply {
    double offset = 0;  ///< the unit's deviation
    double periodSeconds = 1;
    double phase = 0;
    double factor = 1;
  };

  void StepFan(Fan& fan, double seconds) const;
  void SubStep(double seconds);

  PlantOptions options_;
  double ambientC_;
  double seconds_ = 0;
  std::array<double, kTemperatures> temperatures_{};
  std::array<double, kHeaters> heaters_{};
  std::array<Fan, kTachs> fans_{};
  std::array<Supply, kVoltagePins> supplies_{};
};

}  // namespace zth::simulator
