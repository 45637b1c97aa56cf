#pragma once

#include <array>
#include <cstdint>

#include "base/BitField.h"

/// The lists of the individual pin configuration, in rows that compare with the chip's data sheet.
namespace zth::windows {

inline constexpr std::uint8_t kPinConfig1 = 0x10;
inline constexpr std::uint8_t kPinConfig4 = 0x13;
inline constexpr std::uint8_t kEasyConfig = 0x14;

/// Which box of the window a list stands in.
enum class PinBox : std::uint8_t { Vid, Diodes, Alarms, Inputs };

/// Whether a field holds the position of the item that shows, or one bit that is 1 for the first item.
enum class ListOrder : std::uint8_t { ByPosition, FirstIsOne };

struct PinList {
  const char* control;
  int label;  ///< index into lblPin
  const char* caption;
  std::uint8_t reg;
  base::BitField bits;
  std::array<const char*, 4> items;  ///< as many as the field has values, null behind them
  PinBox box;
  const char* group = nullptr;  ///< the list that takes the pin away while it shows its first item
  ListOrder order = ListOrder::ByPosition;
};

inline constexpr char kVidGroup[] = "cmbPins1234_31_32";
inline constexpr char kPins1516[] = "cmbPins1516";
inline constexpr char kPins1920[] = "cmbPins1920";

// Twice the same text where the chip treats two values of a field alike: the list keeps one item for each value.
// Mnemonics go to the groups and to the pins of one digit; there are not enough characters for the rest.
// clang-format off
inline constexpr std::array<PinList, 23> kPinLists{{
    {kVidGroup, 10, "&VID Enable", 0x10, {7, 1}, {"VIDs Enabled", "VIDs Disabled"}, PinBox::Vid, nullptr, ListOrder::FirstIsOne},
    {kPins1516, 8, "Pins 1&5/16", 0x10, {6, 1}, {"D1+, D1-", "Vin, SCSI"}, PinBox::Diodes, nullptr, ListOrder::FirstIsOne},
    {kPins1920, 9, "Pins 1&9/20", 0x10, {5, 1}, {"D3+, D3-", "SCSI, Vin"}, PinBox::Diodes, nullptr, ListOrder::FirstIsOne},
    {"cmbPin1", 0, "Pin&1", 0x10, {4, 1}, {"GPIO1", "Tach1 I/P"}, PinBox::Vid, kVidGroup},
    {"cmbPin2", 1, "Pin&2", 0x10, {3, 1}, {"GPIO2", "Tach2 I/P"}, PinBox::Vid, kVidGroup},
    {"cmbPin3", 2, "Pin&3", 0x10, {2, 1}, {"GPIO3", "Tach3 I/P"}, PinBox::Vid, kVidGroup},
    {"cmbPin4", 3, "Pin&4", 0x10, {1, 1}, {"GPIO4", "Tach4 I/P"}, PinBox::Vid, kVidGroup},
    {"cmbPin7", 4, "Pin&7", 0x10, {0, 1}, {"+12V1", "Tach5 I/P"}, PinBox::Inputs},
    {"cmbPin8", 5, "Pin&8", 0x11, {7, 1}, {"+12V2", "Tach6 I/P"}, PinBox::Inputs},
    {"cmbPin13", 6, "Pin13", 0x11, {6, 1}, {"+3.3V", "PWM4"}, PinBox::Alarms},
    {"cmbPin15", 7, "Pin15", 0x11, {5, 1}, {"+2.5V", "+1.8V"}, PinBox::Diodes, kPins1516},
    {"cmbPin20", 12, "Pin 19", 0x11, {4, 1}, {"+1.25V", "+0.9V"}, PinBox::Diodes, kPins1920},
    {"cmbPin21", 13, "Pin 21", 0x11, {3, 1}, {"+5V", "Tach 7"}, PinBox::Inputs},
    {"cmbPin22", 14, "Pin 22", 0x11, {2, 1}, {"+12V3", "Tach 8"}, PinBox::Inputs},
    {"cmbPin23", 15, "Pin 23", 0x11, {0, 2}, {"+Vccp1", "+2.5V", "+1.8V", "+1.5V"}, PinBox::Inputs},
    {"cmbPin24", 16, "Pin 24", 0x12, {6, 2}, {"+Vccp2", "+2.5V", "+1.8V", "+1.5V"}, PinBox::Inputs},
    {"cmbPin25", 17, "Pin 25", 0x12, {4, 2}, {"+3.3V", "+1.2V1 Gbit", "VR_Hot1", "VR_Hot1"}, PinBox::Inputs},
    {"cmbPin26", 18, "Pin 26", 0x12, {2, 2}, {"Vbatt", "+1.2V2(FSB_Vtt)", "VR_Hot2", "VR_Hot2"}, PinBox::Inputs},
    {"cmbPin27", 19, "Pin 27", 0x12, {1, 1}, {"FAN1MAX", "Chassis Intrusion"}, PinBox::Alarms},
    {"cmbPin28", 20, "Pin 28", 0x13, {6, 2}, {"GPIO 7", "+1.5V2 (ICH)", "THERM 1", "THERM 1"}, PinBox::Alarms},
    {"cmbPin29", 21, "Pin 29", 0x13, {4, 2}, {"GPIO 8", "+1.5V1 (3GIO)", "THERM 2", "THERM 2"}, PinBox::Alarms},
    {"cmbPin31", 22, "Pin 31", 0x13, {3, 1}, {"GPIO 5", "PWM 1"}, PinBox::Vid, kVidGroup},
    {"cmbPin32", 23, "Pin 32", 0x13, {2, 1}, {"GPIO 6", "PWM 2"}, PinBox::Vid, kVidGroup},
}};

inline constexpr int kEasyOptions = 5;

/// What the chip's Easy options set up; nulls behind the last line.
inline constexpr std::array<std::array<const char*, 8>, kEasyOptions> kEasyDetails{{
    {"4 Thermal Channels (3 Remote + Local)", "4 PWM Drive Channels", "8 Tach Inputs", "4 Voltage Inputs",
     "2 THERM I/O pins", "Chassis Intrusion Detection"},
    {"4 Thermal Channels (3 Remote + Local)", "4 PWM Drive Channels", "8 Tach Inputs", "2 Vccp Inputs", "2 VRD Inputs",
     "2 THERM I/O pins", "Fan2Max function"},
    {"2 Thermal Channels (Remote + Local)", "3 PWM Drive Channels", "4 Tach Inputs", "15 Voltage Inputs",
     "2 SCSI Termination Inputs", "Chassis Intrusion Detecttion"},
    {"3 Thermal Channels (2 Remote + Local)", "4 PWM Drive Channels", "6 Tach Inputs", "7 Voltage Inputs",
     "THERM I/O pin", "SCSI Termination Input", "Fan2Max function", "VR_Hot Input"},
    {"3 Thermal Channels (2 Remote + Local)", "3 PWM Drive Channels", "6 Tach Inputs", "7 Voltage Inputs",
     "THERM I/O pin", "SCSI Termination Input", "Fan2Max function", "VR_Hot Input"},
}};
// clang-format on

/// No two lists share a bit: an error of typing in the rows fails the build.
constexpr bool PinListsAreDisjoint() {
  std::array<unsigned, 256> taken{};
  for (const PinList& list : kPinLists) {
    if ((taken[list.reg] & base::Mask(list.bits)) != 0) return false;
    taken[list.reg] |= base::Mask(list.bits);
  }
  return taken[0x10] == 0xFF && taken[0x11] == 0xFF && taken[0x12] == 0xFE && taken[0x13] == 0xFC;
}
static_assert(PinListsAreDisjoint());

}  // namespace zth::windows
