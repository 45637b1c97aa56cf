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

/// Converts a number to an index.
constexpr std::size_t At(int i) {
  return static_cast<std::size_t>(i);
}
constexpr std::size_t At(VoltagePin pin) {
  return static_cast<std::size_t>(pin);
}

/// A voltage pin's entries in the register map.
struct VoltageRow {
  VoltagePin pin;
  int number;  ///< of the pin on the package
  int valueRegister;
  int lowRegister;
  int highRegister;
  int statusGroup;  ///< 0: Voltage Status 1, 1: Voltage Status 2; the masks correspond
  int statusBit;
  int attenuatorRegister;
  int attenuatorBit;
};

/// The row of a voltage pin.
const VoltageRow& RowOf(VoltagePin pin);

/// The functions of the multi-function pins, according to the present registers 0x10 to 0x13.
class PinModel {
 public:
  explicit PinModel(const RegisterFile& registers) : registers_(registers) {}

  bool Vid() const { return registers_.Bit(0x10, 7); }

  /// True if the channel has its diode; always true for Local (0) and Remote 2.
  bool HasDiode(int channel) const;
  /// True if the pin of tach `fan`, 0 to 7, is a tach input.
  bool HasTach(int fan) const;
  /// True if the pin of output `pwm`, 0 to 3, is a PWM output.
  bool HasPwm(int pwm) const;
  /// True if the pin of GPIO `gpio`, 0 to 7, is a GPIO.
  bool HasGpio(int gpio) const;
  /// True if THERM pin 0 or 1 is used as one.
  bool HasTherm(int therm) const { return registers_.Bit(0x13, therm == 0 ? 7 : 5); }
  /// True if VR_Hot pin 0 or 1 is used as one.
  bool HasVrHot(int index) const { return registers_.Bit(0x12, index == 0 ? 5 : 3); }
  bool HasChassisIntrusion() const { return registers_.Bit(0x12, 1); }

  /// The voltage that reads as code 192 on the pin in its present function; 0 if it measures none.
  double Nominal(VoltagePin pin) const;
  bool IsVoltage(VoltagePin pin) const { return Nominal(pin) > 0; }

 private:
  const RegisterFile& registers_;
};

/// Sets 0x10 to 0x13 to the pin assignment of an Easy option. `option` is the byte written to 0x14, one bit per option;
/// the highest set bit counts, and with none the pins are unchanged.
void ApplyEasyOption(RegisterFile& registers, std::uint8_t option);

/// Clears 0x14 if 0x10 to 0x13 no longer match its option: 0x14 is the option in force, or none.
void DropLeftOption(RegisterFile& registers);

}  // namespace zth::simulator
