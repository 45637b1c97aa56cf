#include "windows/limits/LimitTables.h"

#include <algorithm>
#include <array>

#include "chip/Conversions.h"
#include "chip/Limits.h"
#include "chip/Measurements.h"

namespace zth::windows {
namespace {

using Pins = chip::PinFunctionFlags;

/// A pin's flag has a value.
template <std::int16_t Pins::*Pin, std::int16_t Value>
bool PinIs(const Pins& pins) {
  return pins.*Pin == Value;
}

/// A pin's flag has a value and the diode pair that takes the pin is off.
template <std::int16_t Pins::*Pin, std::int16_t Value, bool Pins::*Diode>
bool PinIsFree(const Pins& pins) {
  return pins.*Pin == Value && !(pins.*Diode);
}

template <bool Pins::*Diode>
bool DiodeIs(const Pins& pins) {
  return pins.*Diode;
}

constexpr PinCondition kAlways = nullptr;
constexpr PinCondition kD1 = DiodeIs<&Pins::D1>;
constexpr PinCondition kD3 = DiodeIs<&Pins::D3>;

// clang-format off
constexpr std::array kTemperatureChannels{
    LimitChannel{"Local",   kAlways, 0, 0x44, 0x48, 0, kNoRow},
    LimitChannel{"Remote1", kD1,     1, 0x45, 0x49, 0, kNoRow},
    LimitChannel{"Remote2", kAlways, 2, 0x46, 0x4A, 0, kNoRow},
    LimitChannel{"Remote3", kD3,     3, 0x47, 0x4B, 0, kNoRow},
};

constexpr std::array kFanChannels{
    LimitChannel{"Fan1", PinIs<&Pins::Pin1, 1>,  0, kNoRegister, 0x78, 0, 0},
    LimitChannel{"Fan2", PinIs<&Pins::Pin2, 1>,  1, kNoRegister, 0x79, 0, 1},
    LimitChannel{"Fan3", PinIs<&Pins::Pin3, 1>,  2, kNoRegister, 0x7A, 0, 2},
    LimitChannel{"Fan4", PinIs<&Pins::Pin4, 1>,  3, kNoRegister, 0x7B, 0, 3},
    LimitChannel{"Fan5", PinIs<&Pins::Pin7, 1>,  4, kNoRegister, 0x7C, 0, 4},
    LimitChannel{"Fan6", PinIs<&Pins::Pin8, 1>,  5, kNoRegister, 0x7D, 0, 5},
    LimitChannel{"Fan7", PinIs<&Pins::Pin21, 1>, 6, kNoRegister, 0x7E, 0, 6},
    LimitChannel{"Fan8", PinIs<&Pins::Pin22, 1>, 7, kNoRegister, 0x7F, 0, 7},
};

// The inputs of pin 19 follow the flag of pin 20. Pins 25 and 26 have a state without a voltage.
constexpr std::array kVoltageChannels{
    LimitChannel{"12V1 (pin7)",   PinIs<&Pins::Pin7, 0>,                    0, 0x6D, 0x7C, 12.0F, 0},
    LimitChannel{"12V2 (pin8)",   PinIs<&Pins::Pin8, 0>,                    1, 0x6E, 0x7D, 12.0F, 1},
    LimitChannel{"3.3V (pin13)",  PinIs<&Pins::Pin13, 0>,                   2, 0x70, 0x68, 3.3F,  2},
    LimitChannel{"2.5V (pin15)",  PinIsFree<&Pins::Pin15, 0, &Pins::D1>,    3, 0x45, 0x49, 2.5F,  3},
    LimitChannel{"1.8V (pin15)",  PinIsFree<&Pins::Pin15, 1, &Pins::D1>,    4, 0x45, 0x49, 1.8F,  3},
    LimitChannel{"1.25V (pin19)", PinIsFree<&Pins::Pin20, 0, &Pins::D3>,    5, 0x47, 0x4B, 1.25F, 4},
    LimitChannel{"0.9V (pin19)",  PinIsFree<&Pins::Pin20, 1, &Pins::D3>,    6, 0x47, 0x4B, 0.9F,  4},
    LimitChannel{"5V (pin21)",    PinIs<&Pins::Pin21, 0>,                   7, 0x71, 0x7E, 5.0F,  5},
    LimitChannel{"12V3 (pin22)",  PinIs<&Pins::Pin22, 0>,                   8, 0x6F, 0x7F, 12.0F, 6},
    LimitChannel{"2.5V (pin23)",  PinIs<&Pins::Pin23, 0>,                  12, 0x72, 0x69, 2.5F,  7},
    LimitChannel{"1.8V (pin23)",  PinIs<&Pins::Pin23, 1>,                  11, 0x72, 0x69, 1.8F,  7},
    LimitChannel{"Vccp1 (pin23)", PinIs<&Pins::Pin23, 2>,                   9, 0x72, 0x69, 2.13F, 7},
    LimitChannel{"1.5V (pin23)",  PinIs<&Pins::Pin23, 3>,                  10, 0x72, 0x69, 1.5F,  7},
    LimitChannel{"2.5V (pin24)",  PinIs<&Pins::Pin24, 0>,                  16, 0x73, 0x6A, 2.5F,  8},
    LimitChannel{"1.8V (pin24)",  PinIs<&Pins::Pin24, 1>,                  15, 0x73, 0x6A, 1.8F,  8},
    LimitChannel{"Vccp2 (pin24)", PinIs<&Pins::Pin24, 2>,                  13, 0x73, 0x6A, 2.13F, 8},
    LimitChannel{"1.5V (pin24)",  PinIs<&Pins::Pin24, 3>,                  14, 0x73, 0x6A, 1.5F,  8},
    LimitChannel{"3.3V (pin25)",  PinIs<&Pins::Pin25, 0>,                  18, 0x74, 0x6B, 3.3F,  9},
    LimitChannel{"1.2V (pin25)",  PinIs<&Pins::Pin25, 1>,                  17, 0x74, 0x6B, 1.2F,  9},
    LimitChannel{"Vbatt (pin26)", PinIs<&Pins::Pin26, 0>,                  20, 0x75, 0x6C, 4.0F, 10},
    LimitChannel{"1.2V (pin26)",  PinIs<&Pins::Pin26, 1>,                  19, 0x75, 0x6C, 1.2F, 10},
    LimitChannel{"1.5V (pin28)",  PinIs<&Pins::Pin28, 1>,                  21, 0x76, 0x4C, 1.5F, 11},
    LimitChannel{"1.5V (pin29)",  PinIs<&Pins::Pin29, 1>,                  22, 0x77, 0x50, 1.5F, 12},
};

constexpr std::array kThermTimerChannels{
    LimitChannel{"THERM1", PinIs<&Pins::Pin28, 2>, 0, kNoRegister, 0x80, 0, kNoRow},
    LimitChannel{"THERM2", PinIs<&Pins::Pin29, 2>, 1, kNoRegister, 0x81, 0, kNoRow},
};

constexpr std::array kThermPinChannels{
    LimitChannel{"Local THERM1",   kAlways, 0, kNoRegister, 0x4C, 0, kNoRow},
    LimitChannel{"Remote1 THERM1", kAlways, 1, kNoRegister, 0x4D, 0, kNoRow},
    LimitChannel{"Remote2 THERM1", kAlways, 2, kNoRegister, 0x4E, 0, kNoRow},
    LimitChannel{"Remote3 THERM1", kAlways, 3, kNoRegister, 0x4F, 0, kNoRow},
    LimitChannel{"Local THERM2",   kAlways, 0, kNoRegister, 0x50, 0, kNoRow},
    LimitChannel{"Remote1 THERM2", kAlways, 1, kNoRegister, 0x51, 0, kNoRow},
    LimitChannel{"Remote2 THERM2", kAlways, 2, kNoRegister, 0x52, 0, kNoRow},
    LimitChannel{"Remote3 THERM2", kAlways, 3, kNoRegister, 0x53, 0, kNoRow},
};

constexpr std::array kTemperatureRows{
    AlertRow{"Local Temp",    0x30, 0xC0, 1, kAlways},
    AlertRow{"Remote 1 Temp", 0x30, 0xC0, 2, kD1},
    AlertRow{"Remote 2 Temp", 0x30, 0xC0, 3, kAlways},
    AlertRow{"Remote 3 Temp", 0x30, 0xC0, 4, kD3},
    AlertRow{"Diode1 Error",  0x30, 0xC0, 5, kD1},
    AlertRow{"Diode2 Error",  0x30, 0xC0, 6, kAlways},
    AlertRow{"Diode3 Error",  0x30, 0xC0, 7, kD3},
};

constexpr std::array kFanRows{
    AlertRow{"Fan1", 0x34, 0xC5, 0, PinIs<&Pins::Pin1, 1>},  AlertRow{"Fan2", 0x34, 0xC5, 1, PinIs<&Pins::Pin2, 1>},
    AlertRow{"Fan3", 0x34, 0xC5, 2, PinIs<&Pins::Pin3, 1>},  AlertRow{"Fan4", 0x34, 0xC5, 3, PinIs<&Pins::Pin4, 1>},
    AlertRow{"Fan5", 0x34, 0xC5, 4, PinIs<&Pins::Pin7, 1>},  AlertRow{"Fan6", 0x34, 0xC5, 5, PinIs<&Pins::Pin8, 1>},
    AlertRow{"Fan7", 0x34, 0xC5, 6, PinIs<&Pins::Pin21, 1>}, AlertRow{"Fan8", 0x34, 0xC5, 7, PinIs<&Pins::Pin22, 1>},
};

// The bits do not follow the order of the rows.
constexpr std::array kVoltageRows{
    AlertRow{"12V1 (pin7)",   0x32, 0xC3, 0, nullptr},
    AlertRow{"12V2 (pin8)",   0x32, 0xC3, 1, nullptr},
    AlertRow{"3.3V (pin13)",  0x32, 0xC3, 3, nullptr},
    AlertRow{"Pin15",         0x32, 0xC3, 4, nullptr},
    AlertRow{"Pin19",         0x32, 0xC3, 5, nullptr},
    AlertRow{"5V (pin21)",    0x32, 0xC3, 6, nullptr},
    AlertRow{"12V3  (pin22)", 0x32, 0xC3, 2, nullptr},
    AlertRow{"Pin23",         0x32, 0xC3, 7, nullptr},
    AlertRow{"Pin24",         0x33, 0xC4, 3, nullptr},
    AlertRow{"Pin25",         0x33, 0xC4, 4, nullptr},
    AlertRow{"Pin26",         0x33, 0xC4, 5, nullptr},
    AlertRow{"1.5V2 (pin28)", 0x33, 0xC4, 6, nullptr},
    AlertRow{"1.5V1 (pin29)", 0x33, 0xC4, 7, nullptr},
};

constexpr std::array kThermRows{
    AlertRow{"THERM1% Over Limit", 0x31, 0xC1, 0, nullptr},
    AlertRow{"THERM1% Assert",     0x31, 0xC1, 1, nullptr},
    AlertRow{"THERM1% State",      0x31, 0xC1, 2, nullptr},
    AlertRow{"THERM2% Over Limit", 0x31, 0xC1, 3, nullptr},
    AlertRow{"THERM2% Assert",     0x31, 0xC1, 4, nullptr},
    AlertRow{"THERM2% State",      0x31, 0xC1, 5, nullptr},
};

constexpr std::array kThermPinRows{
    AlertRow{"Local THERM1",   kNoRegister, 0xBA, 0, nullptr},
    AlertRow{"Remote1 THERM1", kNoRegister, 0xBA, 1, nullptr},
    AlertRow{"Remote2 THERM1", kNoRegister, 0xBA, 2, nullptr},
    AlertRow{"Remote3 THERM1", kNoRegister, 0xBA, 3, nullptr},
    AlertRow{"Local THERM2",   kNoRegister, 0xBA, 4, nullptr},
    AlertRow{"Remote1 THERM2", kNoRegister, 0xBA, 5, nullptr},
    AlertRow{"Remote2 THERM2", kNoRegister, 0xBA, 6, nullptr},
    AlertRow{"Remote3 THERM2", kNoRegister, 0xBA, 7, nullptr},
};

constexpr std::array kDigitalRows{
    AlertRow{"Fan2Max",           0x35, 0xC6, 3, nullptr},
    AlertRow{"SCSI Term1",        0x35, 0xC6, 4, nullptr},
    AlertRow{"SCSI Term2",        0x35, 0xC6, 5, nullptr},
    AlertRow{"VID Comparison",    0x35, 0xC6, 6, nullptr},
    AlertRow{"Chassis Intrusion", 0x35, 0xC6, 7, nullptr},
    AlertRow{"VRD1",              0x31, 0xC1, 6, nullptr},
    AlertRow{"VRD2",              0x31, 0xC1, 7, nullptr},
};
// clang-format on

double ShowTemperature(std::uint8_t raw, const LimitChannel& /*channel*/) {
  return chip::DegreesFromByte(raw);
}
std::uint8_t EncodeTemperature(double degrees, const LimitChannel& /*channel*/) {
  return chip::TemperatureLimitFromDegrees(degrees);
}
float TemperatureReading(std::size_t index) {
  return chip::Measurements.Temperature.at(index);
}

double ShowFan(std::uint8_t raw, const LimitChannel& /*channel*/) {
  return static_cast<double>(chip::TachLimitToRpm(raw, chip::TachClock));
}
std::uint8_t EncodeFan(double rpm, const LimitChannel& /*channel*/) {
  return chip::RpmToTachLimit(rpm, chip::TachClock);
}
float FanReading(std::size_t index) {
  return static_cast<float>(chip::Measurements.TachRpm.at(index));
}

double ShowVoltage(std::uint8_t raw, const LimitChannel& channel) {
  return chip::VoltageRawToVolts(raw, channel.nominal);
}
std::uint8_t EncodeVoltage(double volts, const LimitChannel& channel) {
  return chip::VoltsToVoltageRaw(volts, channel.nominal);
}
float VoltageReading(std::size_t index) {
  return chip::Measurements.Voltage.at(index);
}

double ShowThermTimer(std::uint8_t raw, const LimitChannel& /*channel*/) {
  return chip::ThermLimitToPercent(raw);
}
std::uint8_t EncodeThermTimer(double percent, const LimitChannel& /*channel*/) {
  return chip::PercentToThermLimit(percent);
}
float ThermTimerReading(std::size_t index) {
  return chip::Measurements.ThermPercent.at(index);
}

constexpr double kLowestDegrees = -64;
constexpr double kHighestDegrees = 191;
constexpr double kStartVolts = 15;  // until a channel gives the scale
constexpr const char* kDegreesC = "\u00B0C";

}  // namespace

const GaugeTab kTemperatureGauge{
    .list = "cmbTemp",
    .gauge = "ggeTemp",
    .subject = "Temperature",
    .scaleMin = kLowestDegrees,
    .scaleMax = kHighestDegrees,
    .lowAndHigh = true,
    .channels = kTemperatureChannels,
    .show = ShowTemperature,
    .encode = EncodeTemperature,
    .reading = TemperatureReading,
    .unit = kDegreesC,
};

const GaugeTab kFanGauge{
    .list = "cmbFan",
    .gauge = "ggeFan",
    .subject = "Fan",
    .scaleMax = static_cast<double>(chip::kTopRpm),
    .channels = kFanChannels,
    .show = ShowFan,
    .encode = EncodeFan,
    .reading = FanReading,
    .unit = "rpm",
};

const GaugeTab kVoltageGauge{
    .list = "cmbVolt",
    .gauge = "ggeVolt",
    .subject = "Voltage",
    .scaleMax = kStartVolts,
    .lowAndHigh = true,
    .scaleFollowsChannel = true,
    .channels = kVoltageChannels,
    .show = ShowVoltage,
    .encode = EncodeVoltage,
    .reading = VoltageReading,
    .unit = "V",
};

const GaugeTab kThermTimerGauge{
    .list = "cmbThermTimer",
    .gauge = "ggeThermTimer",
    .subject = "THERM on-time",
    .scaleMax = 100,
    .channels = kThermTimerChannels,
    .show = ShowThermTimer,
    .encode = EncodeThermTimer,
    .reading = ThermTimerReading,
    .unit = "%",
    .emptyCaption = "Disabled",
};

const GaugeTab kThermPinGauge{
    .list = "cmbTHERMPin",
    .gauge = "ggeTHERMPin",
    .subject = "THERM limit",
    .scaleMin = kLowestDegrees,
    .scaleMax = kHighestDegrees,
    .startItem = 1,
    .channels = kThermPinChannels,
    .show = ShowTemperature,
    .encode = EncodeTemperature,
    .reading = TemperatureReading,
    .unit = kDegreesC,
};

const AlertTab kTemperatureAlerts{"lblTemp",      0,           "chkTempMask", "tglTempAlert",
                                  {6, "Channel"}, {1, "Mask"}, {5, "Status"}, kTemperatureRows};

const AlertTab kFanAlerts{"lblFan",       0,           "chkFanMask",  "tglFanAlert",
                          {4, "Channel"}, {2, "Mask"}, {3, "Status"}, kFanRows};

const AlertTab kVoltageAlerts{"lblVolt",      0,           "chkVoltMask", "tglVoltAlert",
                              {8, "Channel"}, {0, "Mask"}, {7, "Status"}, kVoltageRows};

const AlertTab kThermAlerts{"lblTherm",     0,         "chkTHERMMask", "tglTHERMAlert", {9, "Interrupt"}, {11, "Mask"},
                            {10, "Status"}, kThermRows};

const AlertTab kThermPinAlerts{"lblTherm",        6,  nullptr,        "tglTHERMPinAlert",
                               {14, "Interrupt"}, {}, {13, "Status"}, kThermPinRows};

const AlertTab kDigitalAlerts{"lblTherm",        14,           "chkDigMask",   "tglDigAlert",
                              {16, "Interrupt"}, {12, "Mask"}, {15, "Status"}, kDigitalRows};

}  // namespace zth::windows
