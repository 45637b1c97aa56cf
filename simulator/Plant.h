#pragma once

#include <array>
#include <cstdint>

#include "simulator/PinModel.h"

namespace zth::simulator {

inline constexpr int kHeaters = 2;

/// The physical constants of the board. The defaults give a desk-top board: 25 degrees C of ambient air, sensors
/// between 29 and 45 degrees at rest, and a heater at full drive that lifts its diode by about a degree and a half a
/// second.
struct PlantOptions {
  double ambientC = 25.0;
  std::uint64_t seed = 1;  ///< of the spread between units
  double spread = 1.0;     ///< scale of that spread; 0 makes all fans and supplies alike
  double ripple = 1.0;     ///< scale of the supplies' ripple; 0 for none
  int fanPulses = 2;       ///< tach pulses that the fans give in a revolution

  double heaterWatts = 6.0;     ///< at full drive
  double heaterToLocal = 0.12;  ///< share of a heater's power that ends in the board around Local
  std::array<double, kTemperatures> standingWatts{0.55, 1.4, 1.6, 1.3};  ///< dissipated at each sensor always
  std::array<double, kTemperatures> heatCapacity{6.0, 4.0, 4.0, 4.0};    ///< joules a kelvin
  std::array<double, kTemperatures> stillAir{0.09, 0.08, 0.08, 0.08};    ///< watts a kelvin without a fan
  std::array<double, kTemperatures> movingAir{0.08, 0.22, 0.22, 0.22};   ///< more of it in the full air flow

  double fullRpm = 4800;       ///< of a fan at full duty
  double idleShare = 0.1;      ///< the speed rises from this share of it at no duty in a straight line
  double stallDuty = 0.15;     ///< a turning fan below this duty stops
  double startDuty = 0.28;     ///< a standing fan below this duty does not start
  double spinUpSeconds = 0.8;  ///< time constant towards a higher speed
  double coastSeconds = 1.6;   ///< and towards a lower one
};

/// Heat, air and supplies of the board. Advances by given time; how a stretch of time is cut into steps changes
/// temperatures by less than 0.01 degrees C and speeds by less than 0.1 percent.
class Plant {
 public:
  explicit Plant(const PlantOptions& options = {});

  /// Drive of a fan, 0 to 1. Fans 0 to 3 and 4 to 7 hang on the PWM outputs 0 to 3 in order.
  void SetFanDrive(int fan, double duty) { fans_[At(fan)].drive = duty; }
  /// Blocks the rotor of a fan or lets it go.
  void SetFanBlocked(int fan, bool blocked) { fans_[At(fan)].blocked = blocked; }
  /// How fast a worn fan turns, in shares of its healthy speed; 1 for a sound one.
  void SetFanWear(int fan, double share) { fans_[At(fan)].wear = share; }
  /// The air that the board stands in, in degrees C.
  void SetAmbient(double celsius) { ambientC_ = celsius; }
  /// Drive of heater 0 (Remote 1) or 1 (Remote 2), 0 to 1.
  void SetHeater(int heater, double drive) { heaters_[At(heater)] = drive; }
  /// A factor on a supply, 1 for a sound one.
  void SetSupplyFactor(VoltagePin pin, double factor) { supplies_[At(pin)].factor = factor; }

  void Step(double seconds);

  double TemperatureC(int sensor) const { return temperatures_[At(sensor)]; }
  double Rpm(int fan) const { return fans_[At(fan)].rpm; }
  double PulsesPerMinute(int fan) const { return Rpm(fan) * options_.fanPulses; }
  /// The supply of a pin in shares of its nominal voltage, with its unit's deviation and ripple.
  double SupplyRatio(VoltagePin pin) const;

  /// Watts a kelvin that leave a sensor at the present fan speeds.
  double Cooling(int sensor) const;
  /// Watts that enter at a sensor.
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
