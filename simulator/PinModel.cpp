#include "simulator/PinModel.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "simulator/RegisterFile.h"

namespace zth::simulator {
namespace {

using enum VoltagePin;

// pin, number, value, low, high, status group and bit, attenuator register and bit. As in the register names, pin 28 is
// the +1.5V2 (ICH) input and pin 29 the +1.5V1 (3GIO) input.
constexpr std::array<VoltageRow, kVoltagePins> kVoltageRows{{
    {P7, 7, 0xA3, 0x6D, 0x7C, 0, 0, 0x18, 1},
    {P8, 8, 0xA5, 0x6E, 0x7D, 0, 1, 0x18, 2},
    {P13, 13, 0x96, 0x70, 0x68, 0, 3, 0x18, 3},
    {P15, 15, 0x8B, 0x45, 0x49, 0, 4, 0x18, 4},
    {P19, 19, 0x8F, 0x47, 0x4B, 0, 5, 0x18, 5},
    {P21, 21, 0xA7, 0x71, 0x7E, 0, 6, 0x18, 6},
    {P22, 22, 0xA9, 0x6F, 0x7F, 0, 2, 0x18, 7},
    {P23, 23, 0x90, 0x72, 0x69, 0, 7, 0x19, 0},
    {P24, 24, 0x91, 0x73, 0x6A, 1, 3, 0x19, 1},
    {P25, 25, 0x92, 0x74, 0x6B, 1, 4, 0x19, 2},
    {P26, 26, 0x93, 0x75, 0x6C, 1, 5, 0x19, 3},
    {P28, 28, 0x95, 0x76, 0x4C, 1, 6, 0x19, 4},
    {P29, 29, 0x94, 0x77, 0x50, 1, 7, 0x19, 5},
}};

// The two-bit field of pins 23 and 24 selects a core supply or one of three rails.
constexpr std::array kCoreNominal{2.13, 2.5, 1.8, 1.5};

struct EasyOption {
  std::uint8_t pinConfig[4];  // 0x10 to 0x13
};

constexpr std::array<EasyOption, 5> kEasyOptions{{
    // 4 temperatures, 4 PWMs, 8 tachs, 4 voltages (23 to 26), 2 THERM pins, chassis intrusion: the power-up state
    {{0x7F, 0xCE, 0x42, 0xFC}},
    // 4 temperatures, 4 PWMs, 8 tachs, 2 core voltages, 2 VR_Hot, 2 THERM pins, FAN2MAX
    {{0x7F, 0xCC, 0x3C, 0xFC}},
    // Local and Remote 2, 3 PWMs, 4 tachs, every voltage pin and both SCSI inputs, chassis intrusion
    {{0x1E, 0x00, 0x02, 0x5C}},
    // Remote 1 and 2, 4 PWMs, tachs 1 to 6, voltages 19, 21 to 24, 26, 29, THERM1, SCSI input, FAN2MAX, VR_Hot1
    {{0x5F, 0xC0, 0x30, 0xDC}},
    // Remote 2 and 3, 3 PWMs, tachs 1 to 4, 7, 8, voltages 7, 8, 13, 15, 23 to 25, THERM1, SCSI input, FAN2MAX, VR_Hot2
    {{0x3E, 0x0C, 0x0C, 0xCC}},
}};

/// The option selected by 0x14, the highest if there are several; nullptr for none.
const EasyOption* OptionOf(std::uint8_t easy) {
  for (std::size_t i = kEasyOptions.size(); i-- > 0;) {
    if ((easy >> i & 1) != 0) return &kEasyOptions[i];
  }
  return nullptr;
}

}  // namespace

const VoltageRow& RowOf(VoltagePin pin) {
  return kVoltageRows[At(pin)];
}

bool PinModel::HasDiode(int channel) const {
  if (channel == 1) return registers_.Bit(0x10, 6);
  if (channel == 3) return registers_.Bit(0x10, 5);
  return true;
}

bool PinModel::HasTach(int fan) const {
  if (fan < 4) return !Vid() && registers_.Bit(0x10, 4 - fan);
  if (fan == 4) return registers_.Bit(0x10, 0);
  if (fan == 5) return registers_.Bit(0x11, 7);
  return registers_.Bit(0x11, fan == 6 ? 3 : 2);
}

bool PinModel::HasPwm(int pwm) const {
  if (pwm < 2) return !Vid() && registers_.Bit(0x13, 3 - pwm);
  return pwm == 2 || registers_.Bit(0x11, 6);
}

bool PinModel::HasGpio(int gpio) const {
  if (gpio < 4) return !Vid() && !registers_.Bit(0x10, 4 - gpio);
  if (gpio < 6) return !Vid() && !registers_.Bit(0x13, 3 - (gpio - 4));
  return registers_.Field(0x13, gpio == 6 ? 6 : 4, 2) == 0;
}

double PinModel::Nominal(VoltagePin pin) const {
  const RegisterFile& r = registers_;
  switch (pin) {
    case P7:
      return r.Bit(0x10, 0) ? 0 : 12;
    case P8:
      return r.Bit(0x11, 7) ? 0 : 12;
    case P13:
      return r.Bit(0x11, 6) ? 0 : 3.3;
    case P15:
      return HasDiode(1) ? 0 : (r.Bit(0x11, 5) ? 1.8 : 2.5);
    case P19:
      return HasDiode(3) ? 0 : (r.Bit(0x11, 4) ? 0.9 : 1.25);
    case P21:
      return r.Bit(0x11, 3) ? 0 : 5;
    case P22:
      return r.Bit(0x11, 2) ? 0 : 12;
    case P23:
      return kCoreNominal[static_cast<std::size_t>(r.Field(0x11, 0, 2))];
    case P24:
      return kCoreNominal[static_cast<std::size_t>(r.Field(0x12, 6, 2))];
    case P25:
      return HasVrHot(0) ? 0 : (r.Bit(0x12, 4) ? 1.2 : 3.3);
    case P26:
      return HasVrHot(1) ? 0 : (r.Bit(0x12, 2) ? 1.2 : 4);
    case P28:
    case P29:
      return r.Field(0x13, pin == P28 ? 6 : 4, 2) == 1 ? 1.5 : 0;
  }
  return 0;
}

void ApplyEasyOption(RegisterFile& registers, std::uint8_t option) {
  const EasyOption* row = OptionOf(option);
  if (row == nullptr) return;
  for (int i = 0; i < 4; ++i) registers.Put(0x10 + i, row->pinConfig[i]);
}

void DropLeftOption(RegisterFile& registers) {
  const EasyOption* row = OptionOf(registers[0x14]);
  if (row == nullptr) return;
  for (int i = 0; i < 4; ++i) {
    if (registers[0x10 + i] != row->pinConfig[i]) registers.Put(0x14, 0);
  }
}

}  // namespace zth::simulator
