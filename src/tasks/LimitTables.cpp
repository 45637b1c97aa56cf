#include "tasks/LimitTables.h"

#include <algorithm>
#include <array>

#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/Limits.h"
#include "chip/Measurements.h"
#include "chip/RegisterNames.h"

namespace zth::tasks {
namespace {

using Pins = chip::PinFunctionFlags;

/// True if a pin's flag has this value.
template <std::int16_t Pins::*Pin, std::int16_t Value>
bool PinIs(const Pins& pins) {
  return pins.*Pin == Value;
}

/// True if a pin's flag has this value and the diode pair that uses the pin is off.
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
    LimitChannel{"Local",   kAlways, 0, "Local Low Limit"_reg, "Local High Limit"_reg, 0, 0},
    LimitChannel{"Remote1", kD1,     1, "Remote 1 Low Limit"_reg, "Remote 1 High Limit"_reg, 0, 1},
    LimitChannel{"Remote2", kAlways, 2, "Remote 2 Low Limit"_reg, "Remote 2 High Limit"_reg, 0, 2},
    LimitChannel{"Remote3", kD3,     3, "Remote 3 Low Limit"_reg, "Remote 3 High Limit"_reg, 0, 3},
};

constexpr std::array kFanChannels{
    LimitChannel{"Fan1", PinIs<&Pins::Pin1, 1>,  0, kNoRegister, "Tach 1 Limit"_reg, 0, 0},
    LimitChannel{"Fan2", PinIs<&Pins::Pin2, 1>,  1, kNoRegister, "Tach 2 Limit"_reg, 0, 1},
    LimitChannel{"Fan3", PinIs<&Pins::Pin3, 1>,  2, kNoRegister, "Tach 3 Limit"_reg, 0, 2},
    LimitChannel{"Fan4", PinIs<&Pins::Pin4, 1>,  3, kNoRegister, "Tach 4 Limit"_reg, 0, 3},
    LimitChannel{"Fan5", PinIs<&Pins::Pin7, 1>,  4, kNoRegister, "Tach 5 Limit"_reg, 0, 4},
    LimitChannel{"Fan6", PinIs<&Pins::Pin8, 1>,  5, kNoRegister, "Tach 6 Limit"_reg, 0, 5},
    LimitChannel{"Fan7", PinIs<&Pins::Pin21, 1>, 6, kNoRegister, "Tach 7 Limit"_reg, 0, 6},
    LimitChannel{"Fan8", PinIs<&Pins::Pin22, 1>, 7, kNoRegister, "Tach 8 Limit"_reg, 0, 7},
};

// The inputs of pin 19 depend on the flag of pin 20. Pins 25 and 26 have a state without a voltage.
constexpr std::array<LimitChannel, 23> kVoltageChannels{{
    {"12V1 (pin7)",   PinIs<&Pins::Pin7, 0>,   0, "+12V1 Low Limit"_reg, "+12V1 High Limit"_reg, 12.0F, 0},
    {"12V2 (pin8)",   PinIs<&Pins::Pin8, 0>,   1, "+12V2 Low Limit"_reg, "+12V2 High Limit"_reg, 12.0F, 1},
    {"3.3V (pin13)",  PinIs<&Pins::Pin13, 0>,  2, "+3.3V Low Limit"_reg, "+3.3V High Limit"_reg, 3.3F, 2},
    {"2.5V (pin15)",  PinIsFree<&Pins::Pin15, 0, &Pins::D1>,  3, "Pin 15 Low Limit"_reg,
                                                                 "Pin 15 High Limit"_reg, 2.5F, 3},
    {"1.8V (pin15)",  PinIsFree<&Pins::Pin15, 1, &Pins::D1>,  4, "Pin 15 Low Limit"_reg,
                                                                 "Pin 15 High Limit"_reg, 1.8F, 3},
    {"1.25V (pin19)", PinIsFree<&Pins::Pin20, 0, &Pins::D3>,  5, "Pin 19 Low Limit"_reg,
                                                                 "Pin 19 High Limit"_reg, 1.25F, 4},
    {"0.9V (pin19)",  PinIsFree<&Pins::Pin20, 1, &Pins::D3>,  6, "Pin 19 Low Limit"_reg,
                                                                 "Pin 19 High Limit"_reg, 0.9F, 4},
    {"5V (pin21)",    PinIs<&Pins::Pin21, 0>,  7, "+5V Low Limit"_reg, "+5V High Limit"_reg, 5.0F, 5},
    {"12V3 (pin22)",  PinIs<&Pins::Pin22, 0>,  8, "+12V3 Low Limit"_reg, "+12V3 High Limit"_reg, 12.0F, 6},
    {"2.5V (pin23)",  PinIs<&Pins::Pin23, 0>, 12, "Pin 23 V Low Limit"_reg, "Pin 23 V High Limit"_reg, 2.5F, 7},
    {"1.8V (pin23)",  PinIs<&Pins::Pin23, 1>, 11, "Pin 23 V Low Limit"_reg, "Pin 23 V High Limit"_reg, 1.8F, 7},
    {"Vccp1 (pin23)", PinIs<&Pins::Pin23, 2>,  9, "Pin 23 V Low Limit"_reg, "Pin 23 V High Limit"_reg, 2.13F, 7},
    {"1.5V (pin23)",  PinIs<&Pins::Pin23, 3>, 10, "Pin 23 V Low Limit"_reg, "Pin 23 V High Limit"_reg, 1.5F, 7},
    {"2.5V (pin24)",  PinIs<&Pins::Pin24, 0>, 16, "Pin 24 V Low Limit"_reg, "Pin 24 V High Limit"_reg, 2.5F, 8},
    {"1.8V (pin24)",  PinIs<&Pins::Pin24, 1>, 15, "Pin 24 V Low Limit"_reg, "Pin 24 V High Limit"_reg, 1.8F, 8},
    {"Vccp2 (pin24)", PinIs<&Pins::Pin24, 2>, 13, "Pin 24 V Low Limit"_reg, "Pin 24 V High Limit"_reg, 2.13F, 8},
    {"1.5V (pin24)",  PinIs<&Pins::Pin24, 3>, 14, "Pin 24 V Low Limit"_reg, "Pin 24 V High Limit"_reg, 1.5F, 8},
    {"3.3V (pin25)",  PinIs<&Pins::Pin25, 0>, 18, "Pin 25 V Low Limit"_reg, "Pin 25 V High Limit"_reg, 3.3F, 9},
    {"1.2V (pin25)",  PinIs<&Pins::Pin25, 1>, 17, "Pin 25 V Low Limit"_reg, "Pin 25 V High Limit"_reg, 1.2F, 9},
    {"Vbatt (pin26)", PinIs<&Pins::Pin26, 0>, 20, "Pin 26 V Low Limit"_reg, "Pin 26 V High Limit"_reg, 4.0F, 10},
    {"1.2V (pin26)",  PinIs<&Pins::Pin26, 1>, 19, "Pin 26 V Low Limit"_reg, "Pin 26 V High Limit"_reg, 1.2F, 10},
    {"1.5V (pin28)",  PinIs<&Pins::Pin28, 1>, 21, "+1.5V2 (ICH) Low Limit"_reg, "1.5V2 (ICH) High Limit"_reg, 1.5F, 11},
    {"1.5V (pin29)",  PinIs<&Pins::Pin29, 1>, 22, "+1.5V1 (3GIO) Low Limit"_reg,
                                                  "1.5V1 (3GIO) High Limit"_reg, 1.5F, 12},
}};

constexpr std::array kThermTimerChannels{
    LimitChannel{"THERM1", PinIs<&Pins::Pin28, 2>, 0, kNoRegister, "THERM 1 Timer Limit"_reg, 0, 0},
    LimitChannel{"THERM2", PinIs<&Pins::Pin29, 2>, 1, kNoRegister, "THERM 2 Timer Limit"_reg, 0, 3},
};

constexpr std::array kThermPinChannels{
    LimitChannel{"Local THERM1",   kAlways, 0, kNoRegister, "Local THERM1 Limit"_reg, 0, 0},
    LimitChannel{"Remote1 THERM1", kAlways, 1, kNoRegister, "Remote 1 THERM1 Limit"_reg, 0, 1},
    LimitChannel{"Remote2 THERM1", kAlways, 2, kNoRegister, "Remote 2 THERM1 Limit"_reg, 0, 2},
    LimitChannel{"Remote3 THERM1", kAlways, 3, kNoRegister, "Remote 3 THERM1 Limit"_reg, 0, 3},
    LimitChannel{"Local THERM2",   kAlways, 0, kNoRegister, "Local THERM2 Limit"_reg, 0, 4},
    LimitChannel{"Remote1 THERM2", kAlways, 1, kNoRegister, "Remote 1 THERM2 Limit"_reg, 0, 5},
    LimitChannel{"Remote2 THERM2", kAlways, 2, kNoRegister, "Remote 2 THERM2 Limit"_reg, 0, 6},
    LimitChannel{"Remote3 THERM2", kAlways, 3, kNoRegister, "Remote 3 THERM2 Limit"_reg, 0, 7},
};

constexpr std::array kTemperatureRows{
    AlertRow{"Local Temp",    "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 1, kAlways},
    AlertRow{"Remote 1 Temp", "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 2, kD1},
    AlertRow{"Remote 2 Temp", "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 3, kAlways},
    AlertRow{"Remote 3 Temp", "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 4, kD3},
    AlertRow{"Diode1 Error",  "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 5, kD1},
    AlertRow{"Diode2 Error",  "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 6, kAlways},
    AlertRow{"Diode3 Error",  "Thermal Mask 1"_reg, "Thermal Status 1,BMC"_reg, 7, kD3},
};

constexpr std::array kFanRows{
    AlertRow{"Fan1", "Fan Mask"_reg, "Fan Status,BMC"_reg, 0, PinIs<&Pins::Pin1, 1>},
    AlertRow{"Fan2", "Fan Mask"_reg, "Fan Status,BMC"_reg, 1, PinIs<&Pins::Pin2, 1>},
    AlertRow{"Fan3", "Fan Mask"_reg, "Fan Status,BMC"_reg, 2, PinIs<&Pins::Pin3, 1>},
    AlertRow{"Fan4", "Fan Mask"_reg, "Fan Status,BMC"_reg, 3, PinIs<&Pins::Pin4, 1>},
    AlertRow{"Fan5", "Fan Mask"_reg, "Fan Status,BMC"_reg, 4, PinIs<&Pins::Pin7, 1>},
    AlertRow{"Fan6", "Fan Mask"_reg, "Fan Status,BMC"_reg, 5, PinIs<&Pins::Pin8, 1>},
    AlertRow{"Fan7", "Fan Mask"_reg, "Fan Status,BMC"_reg, 6, PinIs<&Pins::Pin21, 1>},
    AlertRow{"Fan8", "Fan Mask"_reg, "Fan Status,BMC"_reg, 7, PinIs<&Pins::Pin22, 1>},
};

// The order of the bits differs from the order of the rows.
constexpr std::array kVoltageRows{
    AlertRow{"12V1 (pin7)",   "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 0, nullptr},
    AlertRow{"12V2 (pin8)",   "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 1, nullptr},
    AlertRow{"3.3V (pin13)",  "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 3, nullptr},
    AlertRow{"Pin15",         "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 4, nullptr},
    AlertRow{"Pin19",         "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 5, nullptr},
    AlertRow{"5V (pin21)",    "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 6, nullptr},
    AlertRow{"12V3  (pin22)", "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 2, nullptr},
    AlertRow{"Pin23",         "Voltage Mask 1"_reg, "Voltage Status 1,BMC"_reg, 7, nullptr},
    AlertRow{"Pin24",         "Voltage Mask 2"_reg, "Voltage Status 2,BMC"_reg, 3, nullptr},
    AlertRow{"Pin25",         "Voltage Mask 2"_reg, "Voltage Status 2,BMC"_reg, 4, nullptr},
    AlertRow{"Pin26",         "Voltage Mask 2"_reg, "Voltage Status 2,BMC"_reg, 5, nullptr},
    AlertRow{"1.5V2 (pin28)", "Voltage Mask 2"_reg, "Voltage Status 2,BMC"_reg, 6, nullptr},
    AlertRow{"1.5V1 (pin29)", "Voltage Mask 2"_reg, "Voltage Status 2,BMC"_reg, 7, nullptr},
};

constexpr std::array kThermRows{
    AlertRow{"THERM1% Over Limit", "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 0, nullptr},
    AlertRow{"THERM1% Assert",     "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 1, nullptr},
    AlertRow{"THERM1% State",      "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 2, nullptr},
    AlertRow{"THERM2% Over Limit", "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 3, nullptr},
    AlertRow{"THERM2% Assert",     "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 4, nullptr},
    AlertRow{"THERM2% State",      "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 5, nullptr},
};

constexpr std::array kThermPinRows{
    AlertRow{"Local THERM1",   kNoRegister, "Thermal Status 3,Host"_reg, 0, nullptr},
    AlertRow{"Remote1 THERM1", kNoRegister, "Thermal Status 3,Host"_reg, 1, nullptr},
    AlertRow{"Remote2 THERM1", kNoRegister, "Thermal Status 3,Host"_reg, 2, nullptr},
    AlertRow{"Remote3 THERM1", kNoRegister, "Thermal Status 3,Host"_reg, 3, nullptr},
    AlertRow{"Local THERM2",   kNoRegister, "Thermal Status 3,Host"_reg, 4, nullptr},
    AlertRow{"Remote1 THERM2", kNoRegister, "Thermal Status 3,Host"_reg, 5, nullptr},
    AlertRow{"Remote2 THERM2", kNoRegister, "Thermal Status 3,Host"_reg, 6, nullptr},
    AlertRow{"Remote3 THERM2", kNoRegister, "Thermal Status 3,Host"_reg, 7, nullptr},
};

constexpr std::array kDigitalRows{
    AlertRow{"Fan2Max",           "Digital Mask"_reg, "Digital Status,BMC"_reg, 3, nullptr},
    AlertRow{"SCSI Term1",        "Digital Mask"_reg, "Digital Status,BMC"_reg, 4, nullptr},
    AlertRow{"SCSI Term2",        "Digital Mask"_reg, "Digital Status,BMC"_reg, 5, nullptr},
    AlertRow{"VID Comparison",    "Digital Mask"_reg, "Digital Status,BMC"_reg, 6, nullptr},
    AlertRow{"Chassis Intrusion", "Digital Mask"_reg, "Digital Status,BMC"_reg, 7, nullptr},
    AlertRow{"VRD1",              "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 6, nullptr},
    AlertRow{"VRD2",              "Thermal Mask 2"_reg, "Thermal Status 2,BMC"_reg, 7, nullptr},
};
// clang-format on

double ShowTemperature(std::uint8_t raw, const LimitChannel& /*channel*/) {
  return chip::DegreesFromByte(raw);
}
std::uint8_t EncodeTemperature(double degrees, const LimitChannel& /*channel*/) {
  return chip::TemperatureLimitFromDegrees(degrees);
}
float TemperatureReading(std::size_t index) {
  return chip::Model.Measurements.Temperature.at(index);
}

double ShowFan(std::uint8_t raw, const LimitChannel& /*channel*/) {
  return static_cast<double>(chip::TachLimitToRpm(raw, chip::Model.TachClock));
}
std::uint8_t EncodeFan(double rpm, const LimitChannel& /*channel*/) {
  return chip::RpmToTachLimit(rpm, chip::Model.TachClock);
}
float FanReading(std::size_t index) {
  return static_cast<float>(chip::Model.Measurements.TachRpm.at(index));
}

double ShowVoltage(std::uint8_t raw, const LimitChannel& channel) {
  return chip::VoltageRawToVolts(raw, channel.nominal);
}
std::uint8_t EncodeVoltage(double volts, const LimitChannel& channel) {
  return chip::VoltsToVoltageRaw(volts, channel.nominal);
}
float VoltageReading(std::size_t index) {
  return chip::Model.Measurements.Voltage.at(index);
}

double ShowThermTimer(std::uint8_t raw, const LimitChannel& /*channel*/) {
  return chip::PercentFromByte(raw);
}
std::uint8_t EncodeThermTimer(double percent, const LimitChannel& /*channel*/) {
  return chip::ByteFromPercent(percent);
}
float ThermTimerReading(std::size_t index) {
  return chip::Model.Measurements.ThermPercent.at(index);
}

constexpr double kLowestDegrees = -64;
constexpr double kHighestDegrees = 191;
constexpr double kStartVolts = 15;  // until a channel provides the scale
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
    .group = chip::kTemperatureGroup,
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
    .group = chip::kTachGroup,
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
    .group = chip::kVoltageGroup,
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
    .group = chip::kThermGroup,
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
    .group = chip::kTemperatureGroup,
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

}  // namespace zth::tasks
