#include "simulator/RegisterRules.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zth::simulator {
namespace {

using enum OnWrite;

// Written from the data sheet, not from the program's own table: a test compares the two, so that a mistake in either
// is found.
constexpr std::array kRules{
    RegisterRule{0x00, 0x20, Reset},                  // Configuration 0
    RegisterRule{0x01, 0x01, Config1},                // Configuration 1
    RegisterRule{0x02, 0x80},                         // Configuration 2
    RegisterRule{0x03, 0x00},                         // Configuration 3
    RegisterRule{0x07, 0x00, TachEnable},             // Tach Enable
    RegisterRule{0x08, 0x0F},                         // Tach Configuration
    RegisterRule{0x09, 0x00},                         // GPIO1_Bhvr
    RegisterRule{0x0A, 0x00},                         // GPIO2_Bhvr
    RegisterRule{0x0B, 0x00},                         // Tmin_Cal1
    RegisterRule{0x0C, 0x40},                         // Tmin_Cal2
    RegisterRule{0x0D, 0x00},                         // THERM Configuration
    RegisterRule{0x0E, 0x1F, Therm},                  // Conf_Therm1
    RegisterRule{0x0F, 0x1F, Therm},                  // Conf_Therm2
    RegisterRule{0x10, 0x7F, PinConfig},              // Pin Config 1
    RegisterRule{0x11, 0xCE, PinConfig},              // Pin Config 2
    RegisterRule{0x12, 0x42, PinConfig},              // Pin Config 3
    RegisterRule{0x13, 0xFC, PinConfig},              // Pin Config 4
    RegisterRule{0x14, 0x01, Easy},                   // Easy Config
    RegisterRule{0x16, 0x00},                         // EDO Enable
    RegisterRule{0x18, 0xFF},                         // Attenuators 1 En
    RegisterRule{0x19, 0x37},                         // Attenuators 2 En
    RegisterRule{0x1A, 0x00},                         // Enhance Acoustics 1
    RegisterRule{0x1B, 0x00},                         // Enhance Acoustics 2
    RegisterRule{0x1C, 0x00},                         // Free Wheel Test
    RegisterRule{0x1D, 0x00},                         // Fans Present
    RegisterRule{0x1E, 0x00},                         // Free Wheel Test En
    RegisterRule{0x21, 0x11, PwmConfig},              // PWM1 Config
    RegisterRule{0x22, 0x31, PwmConfig},              // PWM2 Config
    RegisterRule{0x23, 0x51, PwmConfig},              // PWM3 Config
    RegisterRule{0x24, 0x71, PwmConfig},              // PWM4 Config
    RegisterRule{0x25, 0x90},                         // PWM 1&2 Freq
    RegisterRule{0x26, 0x90},                         // PWM 3&4 Freq
    RegisterRule{0x28, 0x80},                         // PWM1 Min
    RegisterRule{0x29, 0x80},                         // PWM2 Min
    RegisterRule{0x2A, 0x80},                         // PWM3 Min
    RegisterRule{0x2B, 0x80},                         // PWM4 Min
    RegisterRule{0x2C, 0xC0},                         // PWM 1-4 Max
    RegisterRule{0x30, 0x00},                         // Thermal Mask 1
    RegisterRule{0x31, 0xC0},                         // Thermal Mask 2
    RegisterRule{0x32, 0x00},                         // Voltage Mask 1
    RegisterRule{0x33, 0x00},                         // Voltage Mask 2
    RegisterRule{0x34, 0x00},                         // Fan Mask
    RegisterRule{0x35, 0x38},                         // Digital Mask
    RegisterRule{0x36, 0x00},                         // GPIO Mask
    RegisterRule{0x37, 0x00},                         // EDO Mask 1
    RegisterRule{0x38, 0x00},                         // EDO Mask 2
    RegisterRule{0x3D, 0x62, Ignore},                 // Device ID
    RegisterRule{0x3E, 0x41, Ignore},                 // Company ID
    RegisterRule{0x3F, 0x00, Ignore},                 // Revision Number
    RegisterRule{0x44, 0x40},                         // Local Low Limit
    RegisterRule{0x45, 0x40},                         // Remote 1 Low Limit, Pin 15 Low Limit
    RegisterRule{0x46, 0x40},                         // Remote 2 Low Limit
    RegisterRule{0x47, 0x40},                         // Remote 3 Low Limit, Pin 19 Low Limit
    RegisterRule{0x48, 0x95},                         // Local High Limit
    RegisterRule{0x49, 0x95},                         // Remote 1 High Limit, Pin 15 High Limit
    RegisterRule{0x4A, 0x95},                         // Remote 2 High Limit
    RegisterRule{0x4B, 0x95},                         // Remote 3 High Limit, Pin 19 High Limit
    RegisterRule{0x4C, 0xA4, Therm},                  // Local THERM1 Limit, +1.5V2 (ICH) High Limit
    RegisterRule{0x4D, 0xA4, Therm},                  // Remote 1 THERM1 Limit
    RegisterRule{0x4E, 0xA4, Therm},                  // Remote 2 THERM1 Limit
    RegisterRule{0x4F, 0xA4, Therm},                  // Remote 3 THERM1 Limit
    RegisterRule{0x50, 0xA4, Therm},                  // Local THERM2 Limit, +1.5V1 (3GIO) High Limit
    RegisterRule{0x51, 0xA4, Therm},                  // Remote 1 THERM2 Limit
    RegisterRule{0x52, 0xA4, Therm},                  // Remote 2 THERM2 Limit
    RegisterRule{0x53, 0xA4, Therm},                  // Remote 3 THERM2 Limit
    RegisterRule{0x54, 0x44, Therm},                  // Local/Remote 1 Hyst
    RegisterRule{0x55, 0x44, Therm},                  // Remote 2 / Remote 3 Hyst
    RegisterRule{0x56, 0x00},                         // Local Offset
    RegisterRule{0x57, 0x00},                         // Remote 1 Offset
    RegisterRule{0x58, 0x00},                         // Remote 2 Offset
    RegisterRule{0x59, 0x00},                         // Remote 3 Offset
    RegisterRule{0x5A, 0xA4},                         // Remote 1 Operating Point
    RegisterRule{0x5B, 0xA4},                         // Remote 2 Operating Point
    RegisterRule{0x5C, 0x9A},                         // Local Tmin
    RegisterRule{0x5D, 0x9A},                         // Remote 1 Tmin
    RegisterRule{0x5E, 0x9A},                         // Remote 2 Tmin
    RegisterRule{0x5F, 0x9A},                         // Remote 3 Tmin
    RegisterRule{0x60, 0xC4},                         // Local Trange/Hys
    RegisterRule{0x61, 0xC4},                         // Remote 1 Trange/Hys
    RegisterRule{0x62, 0xC4},                         // Remote 2 Trange/Hys
    RegisterRule{0x63, 0xC4},                         // Remote 3 Trange/Hys
    RegisterRule{0x64, 0x04},                         // Operating Point Hyst
    RegisterRule{0x68, 0xFF},                         // +3.3V High Limit
    RegisterRule{0x69, 0xFF},                         // Pin 23 V High Limit
    RegisterRule{0x6A, 0xFF},                         // Pin 24 V High Limit
    RegisterRule{0x6B, 0xFF},                         // Pin 25 V High Limit
    RegisterRule{0x6C, 0xFF},                         // Pin 26 V High Limit
    RegisterRule{0x6D, 0x00},                         // +12V1 Low Limit
    RegisterRule{0x6E, 0x00},                         // +12V2 Low Limit
    RegisterRule{0x6F, 0x00},                         // +12V3 Low Limit
    RegisterRule{0x70, 0x00},                         // +3.3V Low Limit
    RegisterRule{0x71, 0x00},                         // +5V Low Limit
    RegisterRule{0x72, 0x20},                         // Pin 23 V Low Limit
    RegisterRule{0x73, 0x00},                         // Pin 24 V Low Limit
    RegisterRule{0x74, 0x00},                         // Pin 25 V Low Limit
    RegisterRule{0x75, 0x00},                         // Pin 26 V Low Limit
    RegisterRule{0x76, 0x00},                         // +1.5V2 (ICH) Low Limit
    RegisterRule{0x77, 0x00},                         // +1.5V1 (3GIO) Low Limit
    RegisterRule{0x78, 0xFF, TachOrVid},              // Tach 1 Limit, VID
    RegisterRule{0x79, 0xFF},                         // Tach 2 Limit
    RegisterRule{0x7A, 0xFF},                         // Tach 3 Limit
    RegisterRule{0x7B, 0xFF},                         // Tach 4 Limit
    RegisterRule{0x7C, 0xFF},                         // Tach 5 Limit, +12V1 High Limit
    RegisterRule{0x7D, 0xFF},                         // Tach 6 Limit, +12V2 High Limit
    RegisterRule{0x7E, 0xFF},                         // Tach 7 Limit, +5V High Limit
    RegisterRule{0x7F, 0xFF},                         // Tach 8 Limit, +12V3 High Limit
    RegisterRule{0x80, 0xFF},                         // THERM 1 Timer Limit
    RegisterRule{0x81, 0xFF},                         // THERM 2 Timer Limit
    RegisterRule{0x88, 0x00, Ignore},                 // Local Temp LSBs
    RegisterRule{0x89, 0x00, Ignore},                 // Local Temp MSB
    RegisterRule{0x8A, 0x00, Ignore},                 // Remote 1 Temp LSBs
    RegisterRule{0x8B, 0x00, Ignore},                 // Remote 1 Temp MSB, Pin 15 Voltage
    RegisterRule{0x8C, 0x00, Ignore},                 // Remote 2 Temp LSBs
    RegisterRule{0x8D, 0x00, Ignore},                 // Remote 2 Temp MSB
    RegisterRule{0x8E, 0x00, Ignore},                 // Remote 3 Temp LSBs
    RegisterRule{0x8F, 0xFF, Ignore},                 // Remote 3 Temp MSB, Pin 19 Voltage
    RegisterRule{0x90, 0x00, Ignore},                 // Pin 23 Voltage
    RegisterRule{0x91, 0x00, Ignore},                 // Pin 24 Voltage
    RegisterRule{0x92, 0x00, Ignore},                 // Pin 25 Voltage
    RegisterRule{0x93, 0x00, Ignore},                 // Pin 26 Voltage
    RegisterRule{0x94, 0x00, Ignore},                 // +1.5V1 (3GIO) Voltage
    RegisterRule{0x95, 0x00, Ignore},                 // +1.5V2 (ICH) Voltage
    RegisterRule{0x96, 0x00, Ignore},                 // +3.3V Voltage
    RegisterRule{0x98, 0xFF, Ignore},                 // Tach 1 LSB
    RegisterRule{0x99, 0xFF, Ignore},                 // Tach 1 MSB
    RegisterRule{0x9A, 0xFF, Ignore},                 // Tach 2 LSB
    RegisterRule{0x9B, 0xFF, Ignore},                 // Tach 2 MSB
    RegisterRule{0x9C, 0xFF, Ignore},                 // Tach 3 LSB
    RegisterRule{0x9D, 0xFF, Ignore},                 // Tach 3 MSB
    RegisterRule{0x9E, 0xFF, Ignore},                 // Tach 4 LSB
    RegisterRule{0x9F, 0xFF, Ignore},                 // Tach 4 MSB
    RegisterRule{0xA2, 0xFF, Ignore},                 // Tach 5 LSB
    RegisterRule{0xA3, 0xFF, Ignore},                 // Tach 5 MSB, +12V1 Voltage
    RegisterRule{0xA4, 0xFF, Ignore},                 // Tach 6 LSB
    RegisterRule{0xA5, 0xFF, Ignore},                 // Tach 6 MSB, +12V2 Voltage
    RegisterRule{0xA6, 0xFF, Ignore},                 // Tach 7 LSB
    RegisterRule{0xA7, 0xFF, Ignore},                 // Tach 7 MSB, +5V Voltage
    RegisterRule{0xA8, 0xFF, Ignore},                 // Tach 8 LSB
    RegisterRule{0xA9, 0xFF, Ignore},                 // Tach 8 MSB, +12V3 Voltage
    RegisterRule{0xAA, 0x00, Duty},                   // PWM 1 Value
    RegisterRule{0xAB, 0x00, Duty},                   // PWM 2 Value
    RegisterRule{0xAC, 0x00, Duty},                   // PWM 3 Value
    RegisterRule{0xAD, 0x00, Duty},                   // PWM 4 Value
    RegisterRule{0xAE, 0x00, Ignore},                 // THERM 1% Ontime
    RegisterRule{0xAF, 0x00, Ignore},                 // THERM 2% Ontime
    RegisterRule{0xB8, 0x00, Ignore, OnRead::Latch},  // Thermal Status 1,Host
    RegisterRule{0xB9, 0x00, Ignore, OnRead::Latch},  // Thermal Status 2,Host
    RegisterRule{0xBA, 0x00, Ignore, OnRead::Latch},  // Thermal Status 3,Host
    RegisterRule{0xBB, 0x00, Ignore, OnRead::Latch},  // Voltage Status 1,Host
    RegisterRule{0xBC, 0x00, Ignore, OnRead::Latch},  // Voltage Status 2,Host
    RegisterRule{0xBD, 0x00, Ignore, OnRead::Latch},  // Fan Status,Host
    RegisterRule{0xBE, 0x00, Ignore, OnRead::Latch},  // Digital Status,Host
    RegisterRule{0xBF, 0x00, GpioLevels},             // GPIO Status,Host
    RegisterRule{0xC0, 0x00, Ignore, OnRead::Latch},  // Thermal Status 1,BMC
    RegisterRule{0xC1, 0x00, Ignore, OnRead::Latch},  // Thermal Status 2,BMC
    RegisterRule{0xC3, 0x00, Ignore, OnRead::Latch},  // Voltage Status 1,BMC
    RegisterRule{0xC4, 0x00, Ignore, OnRead::Latch},  // Voltage Status 2,BMC
    RegisterRule{0xC5, 0x00, Ignore, OnRead::Latch},  // Fan Status,BMC
    RegisterRule{0xC6, 0x00, Ignore, OnRead::Latch},  // Digital Status,BMC
};

constexpr bool Rising() {
  for (std::size_t i = 1; i < kRules.size(); ++i) {
    if (kRules[i - 1].address >= kRules[i].address) return false;
  }
  return true;
}
static_assert(Rising());
// The chip has 176 register names, 17 of which are second names of an address.
static_assert(kRules.size() == 176 - 17);

constexpr std::array<std::uint8_t, 256> kRow = [] {
  std::array<std::uint8_t, 256> row{};
  row.fill(0xFF);
  for (std::size_t i = 0; i < kRules.size(); ++i) row[kRules[i].address] = static_cast<std::uint8_t>(i);
  return row;
}();

}  // namespace

std::span<const RegisterRule> RegisterRules() {
  return kRules;
}

const RegisterRule* RuleOf(std::uint8_t address) {
  const std::uint8_t row = kRow[address];
  return row == 0xFF ? nullptr : &kRules[row];
}

}  // namespace zth::simulator
