#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "windows/Bindings.h"

/// The controls of the pin configuration, in rows that compare with the chip's data sheet.
namespace zth::windows {

/// Which box of the window a list stands in.
enum class PinBox : std::uint8_t { Vid, Diodes, Alarms, Inputs };

struct Pin {
  Binding row;
  int label;  ///< index into lblPin
  PinBox box;
  std::string_view group = {};  ///< the list that takes the pin away while it shows its first item
};

inline constexpr char kVidGroup[] = "cmbPins1234_31_32";
inline constexpr char kDiode1Group[] = "cmbPins1516";
inline constexpr char kDiode3Group[] = "cmbPins1920";

namespace items {
inline constexpr std::array kVid{"VIDs Enabled", "VIDs Disabled"};
inline constexpr std::array kPins1516{"D1+, D1-", "Vin, SCSI"};
inline constexpr std::array kPins1920{"D3+, D3-", "SCSI, Vin"};
inline constexpr std::array kPin1{"GPIO1", "Tach1 I/P"};
inline constexpr std::array kPin2{"GPIO2", "Tach2 I/P"};
inline constexpr std::array kPin3{"GPIO3", "Tach3 I/P"};
inline constexpr std::array kPin4{"GPIO4", "Tach4 I/P"};
inline constexpr std::array kPin7{"+12V1", "Tach5 I/P"};
inline constexpr std::array kPin8{"+12V2", "Tach6 I/P"};
inline constexpr std::array kPin13{"+3.3V", "PWM4"};
inline constexpr std::array kPin15{"+2.5V", "+1.8V"};
inline constexpr std::array kPin20{"+1.25V", "+0.9V"};
inline constexpr std::array kPin21{"+5V", "Tach 7"};
inline constexpr std::array kPin22{"+12V3", "Tach 8"};
inline constexpr std::array kPin23{"+Vccp1", "+2.5V", "+1.8V", "+1.5V"};
inline constexpr std::array kPin24{"+Vccp2", "+2.5V", "+1.8V", "+1.5V"};
// Twice the same text where the chip treats two values of a field alike: one item for each value.
inline constexpr std::array kPin25{"+3.3V", "+1.2V1 Gbit", "VR_Hot1", "VR_Hot1"};
inline constexpr std::array kPin26{"Vbatt", "+1.2V2(FSB_Vtt)", "VR_Hot2", "VR_Hot2"};
inline constexpr std::array kPin27{"FAN1MAX", "Chassis Intrusion"};
inline constexpr std::array kPin28{"GPIO 7", "+1.5V2 (ICH)", "THERM 1", "THERM 1"};
inline constexpr std::array kPin29{"GPIO 8", "+1.5V1 (3GIO)", "THERM 2", "THERM 2"};
inline constexpr std::array kPin31{"GPIO 5", "PWM 1"};
inline constexpr std::array kPin32{"GPIO 6", "PWM 2"};
}  // namespace items

// Mnemonics go to the groups and to the pins of one digit; there are not enough characters for the rest.
// clang-format off
inline constexpr std::array kPins{
    Pin{List(kVidGroup,    "VI&D Enable", At("Pin Config 1", "VID"), items::kVid, Sense::Inverted), 10, PinBox::Vid},
    Pin{List(kDiode1Group, "Pins 1&5/16", At("Pin Config 1", "D1"), items::kPins1516, Sense::Inverted),
        8, PinBox::Diodes},
    Pin{List(kDiode3Group, "Pins 1&9/20", At("Pin Config 1", "D3"), items::kPins1920, Sense::Inverted),
        9, PinBox::Diodes},
    Pin{List("cmbPin1",    "Pin&1",       At("Pin Config 1", "P1"), items::kPin1), 0, PinBox::Vid, kVidGroup},
    Pin{List("cmbPin2",    "Pin&2",       At("Pin Config 1", "P2"), items::kPin2), 1, PinBox::Vid, kVidGroup},
    Pin{List("cmbPin3",    "Pin&3",       At("Pin Config 1", "P3"), items::kPin3), 2, PinBox::Vid, kVidGroup},
    Pin{List("cmbPin4",    "Pin&4",       At("Pin Config 1", "P4"), items::kPin4), 3, PinBox::Vid, kVidGroup},
    Pin{List("cmbPin7",    "Pin&7",       At("Pin Config 1", "P7"), items::kPin7), 4, PinBox::Inputs},
    Pin{List("cmbPin8",    "Pin&8",       At("Pin Config 2", "P8"), items::kPin8), 5, PinBox::Inputs},
    Pin{List("cmbPin13",   "Pin13",       At("Pin Config 2", "P13"), items::kPin13), 6, PinBox::Alarms},
    Pin{List("cmbPin15",   "Pin15",       At("Pin Config 2", "P15"), items::kPin15), 7, PinBox::Diodes, kDiode1Group},
    Pin{List("cmbPin20",   "Pin 19",      At("Pin Config 2", "P20"), items::kPin20), 12, PinBox::Diodes, kDiode3Group},
    Pin{List("cmbPin21",   "Pin 21",      At("Pin Config 2", "P21"), items::kPin21), 13, PinBox::Inputs},
    Pin{List("cmbPin22",   "Pin 22",      At("Pin Config 2", "P22"), items::kPin22), 14, PinBox::Inputs},
    Pin{List("cmbPin23",   "Pin 23",      At("Pin Config 2", "P23"), items::kPin23), 15, PinBox::Inputs},
    Pin{List("cmbPin24",   "Pin 24",      At("Pin Config 3", "P24"), items::kPin24), 16, PinBox::Inputs},
    Pin{List("cmbPin25",   "Pin 25",      At("Pin Config 3", "P25"), items::kPin25), 17, PinBox::Inputs},
    Pin{List("cmbPin26",   "Pin 26",      At("Pin Config 3", "P26"), items::kPin26), 18, PinBox::Inputs},
    Pin{List("cmbPin27",   "Pin 27",      At("Pin Config 3", "P27"), items::kPin27), 19, PinBox::Alarms},
    Pin{List("cmbPin28",   "Pin 28",      At("Pin Config 4", "P28"), items::kPin28), 20, PinBox::Alarms},
    Pin{List("cmbPin29",   "Pin 29",      At("Pin Config 4", "P29"), items::kPin29), 21, PinBox::Alarms},
    Pin{List("cmbPin31",   "Pin 31",      At("Pin Config 4", "P31"), items::kPin31), 22, PinBox::Vid, kVidGroup},
    Pin{List("cmbPin32",   "Pin 32",      At("Pin Config 4", "P32"), items::kPin32), 23, PinBox::Vid, kVidGroup},
};

inline constexpr std::array kEasyRows{
    Check({"optEasy", 0}, "Easy Option&%1", At("Easy Config", "Op1")),
    Check({"optEasy", 1}, "Easy Option&%1", At("Easy Config", "Op2")),
    Check({"optEasy", 2}, "Easy Option&%1", At("Easy Config", "Op3")),
    Check({"optEasy", 3}, "Easy Option&%1", At("Easy Config", "Op4")),
    Check({"optEasy", 4}, "Easy Option&%1", At("Easy Config", "Op5")),
};

/// What each Easy option sets up; nulls behind the last line.
inline constexpr std::array<std::array<const char*, 8>, kEasyRows.size()> kEasyDetails{{
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

inline constexpr auto kPinRows =
    std::apply([](const auto&... pins) { return std::array{pins.row...}; }, std::tuple_cat(kPins));
inline constexpr auto kPinConfigRows = Joined(kPinRows, kEasyRows);

inline constexpr std::array kPinReads{Read("Pin Config 1"_reg, 5)};
inline constexpr std::array kPinWrites{Whole("Pin Config 1"_reg), Whole("Pin Config 2"_reg), Whole("Pin Config 3"_reg),
                                       Whole("Pin Config 4"_reg)};
inline constexpr std::array kEasyWrites{Whole("Easy Config"_reg)};
static_assert(IsSound(kPinConfigRows, kPinReads, Joined(kPinWrites, kEasyWrites)));

}  // namespace zth::windows
