#pragma once

#include <cstddef>
#include <cstdint>

#include "simulator/RegisterFile.h"

namespace zth::simulator {

inline constexpr int kTemperatures = 4;  ///< Local, Remote 1, Remote 2, Remote 3
inline constexpr int kTachs = 8;
inline constexpr int kPwms = 4;
inline constexpr int kGpios = 8;
inline constexpr int kVoltagePins = 13;

/// The pins that can measure a voltage, by pin number.
enum class VoltagePin : std::uint8_t { P7, P8, P13, P15, P19, P21, P22, P23, P24, P25, P26, P28, P29 };

/// Numbers as indices.
constexpr std::size_t At(int i) {
  return static_cast<std::size_t>(i);
}
constexpr std::size_t At(VoltagePin pin) {
  return static_cast<std::size_t>(pin);
}

/// A voltage pin as it stands in the register map.
struct VoltageRow {
  VoltagePin pin;
  int number;  ///< of the pin on the package
  int valueRegister;
  int lowRegister;
  int highRegister;
  int statusGroup;  ///< 0: Voltage Status 1, 1: Voltage Status 2; the masks go alike
  int statusBit;
  int attenuatorRegister;
  int attenuatorBit;
};

/// The row of a voltage pin.
const VoltageRow& RowOf(VoltagePin pin);

/// What the multi-function pins do, as the registers 0x10 to 0x13 say at this moment.
class PinModel {
 public:
  explicit PinModel(const RegisterFile& registers) : registers_(registers) {}

  bool Vid() const { return registers_.Bit(0x10, 7); }

  /// The channel has its diode: always so for Local (0) and Remote 2.
  bool HasDiode(int channel) const;
  /// The pin of tach `fan`, 0 to 7, is a tach input.
  bool HasTach(int fan) const;
  /// The pin of output `pwm`, 0 to 3, is a PWM output.
  bool HasPwm(int pwm) const;
  /// The pin of GPIO `gpio`, 0 to 7, is a GPIO.
  bool HasGpio(int gpio) const;
  /// The THERM pin, 0 or 1, is one.
  bool HasTherm(int therm) const { return registers_.Bit(0x13, therm == 0 ? 7 : 5); }
  /// The VR_Hot pin, 0 or 1, is one.
  bool HasVrHot(int index) const { return registers_.Bit(0x12, index == 0 ? 5 : 3); }
  bool HasChassisIntrusion() const { return registers_.Bit(0x12, 1); }

  /// The voltage that reads as code 192 on the pin in its present function; 0 when it measures none.
  double Nominal(VoltagePin pin) const;
  bool IsVoltage(VoltagePin pin) const { return Nominal(pin) > 0; }

 private:
  const RegisterFile& registers_;
};

/// Puts the pin assignment of an Easy option into 0x10 to 0x13. `option` is the byte written to 0x14, one bit an
/// option; of several the highest counts, and none leaves the pins as they are.
void ApplyEasyOption(RegisterFile& registers, std::uint8_t option);

/// Clears 0x14 when 0x10 to 0x13 no longer hold the assignment of its option: it names the option in force, or none.
void DropLeftOption(RegisterFile& registers);

}  // namespace zth::simulator
