#include "chip/RegisterGroups.h"

#include <algorithm>
#include <string_view>

#include "chip/RegisterRows.h"

namespace zth::chip {

// clang-format off
const std::array<RegisterGroup, 21> kRegisterGroups{{
    {"General",
     "Configuration",
     {"Configuration 0", "Configuration 1", "Configuration 2", "Configuration 3", "Tach Configuration",
      "THERM Configuration", "Conf_Therm1", "Conf_Therm2", "EDO Enable"}},
    {"General",
     "Pin Configuration",
     {"Pin Config 1", "Pin Config 2", "Pin Config 3", "Pin Config 4", "Easy Config"}},
    {"General",
     "Status",
     {"Thermal Status 1,BMC", "Thermal Status 2,BMC", "Thermal Status 3,Host", "Voltage Status 1,BMC",
      "Voltage Status 2,BMC", "Fan Status,BMC", "Digital Status,BMC", "Thermal Mask 1", "Thermal Mask 2",
      "Voltage Mask 1", "Voltage Mask 2", "Fan Mask", "Digital Mask", "GPIO Mask", "EDO Mask 1", "EDO Mask 2"}},
    {"General",
     "ID/Revision",
     {"Device ID", "Company ID", "Revision Number"}},
    {"Temperature",
     "Values",
     {"Local Temp LSBs", "Local Temp MSB", "Remote 1 Temp LSBs", "Remote 1 Temp MSB", "Remote 2 Temp LSBs",
      "Remote 2 Temp MSB", "Remote 3 Temp LSBs", "Remote 3 Temp MSB"}},
    {"Temperature",
     "Limits",
     {"Local Low Limit", "Remote 1 Low Limit", "Remote 2 Low Limit", "Remote 3 Low Limit", "Local High Limit",
      "Remote 1 High Limit", "Remote 2 High Limit", "Remote 3 High Limit"}},
    {"Temperature",
     "Offsets",
     {"Local Offset", "Remote 1 Offset", "Remote 2 Offset", "Remote 3 Offset"}},
    {"Fan",
     "Fan Control",
     {"Tach Enable", "Enhance Acoustics 1", "Enhance Acoustics 2", "Free Wheel Test", "Fans Present",
      "Free Wheel Test En"}},
    {"Fan",
     "PWM",
     {"PWM 1 Value", "PWM 2 Value", "PWM 3 Value", "PWM 4 Value", "PWM1 Config", "PWM2 Config", "PWM3 Config",
      "PWM4 Config", "PWM 1&2 Freq", "PWM 3&4 Freq", "PWM1 Min", "PWM2 Min", "PWM3 Min", "PWM4 Min",
      "PWM 1-4 Max"}},
    {"Fan",
     "Tmin",
     {"Tmin_Cal1", "Tmin_Cal2", "Local Tmin", "Remote 1 Tmin", "Remote 2 Tmin", "Remote 3 Tmin"}},
    {"Fan",
     "Trange/Hys",
     {"Local Trange/Hys", "Remote 1 Trans/Hys", "Remote 2 Trans/Hys", "Remote 3 Trans/Hys"}},
    {"Fan",
     "Operating Point",
     {"Remote 1 Operating Point", "Remote 2 Operating Point", "Operating Point Hyst"}},
    {"Fan",
     "THERM Limits",
     {"Local THERM1 Limit", "Remote 1 THERM1 Limit", "Remote 2 THERM1 Limit", "Remote 3 THERM1 Limit",
      "Local THERM2 Limit", "Remote 1 THERM2 Limit", "Remote 2 THERM2 Limit", "Remote 3 THERM2 Limit",
      "Local/Remote 1 Hyst", "Remote 2 / Remote 3 Hyst"}},
    {"Fan",
     "Tach",
     {"Tach 1 Limit", "Tach 2 Limit", "Tach 3 Limit", "Tach 4 Limit", "Tach 5 Limit", "Tach 6 Limit",
      "Tach 7 Limit", "Tach 8 Limit", "Tach 1 LSB's", "Tach 1 MSB's", "Tach 2 LSB's", "Tach 2 MSB's",
      "Tach 3 LSB's", "Tach 3 MSB's", "Tach 4 LSB's", "Tach 4 MSB", "Tach 5 LSB", "Tach 5 MSB", "Tach 6 LSB",
      "Tach 6 MSB", "Tach 7 LSB", "Tach 7 MSB", "Tach 8 LSB", "Tach 8 MSB"}},
    {"Voltage",
     "Voltage Control",
     {"Attenuators 1 En", "Attenuators 2 En", "VID"}},
    {"Voltage",
     "Voltage Limits",
     {"+3.3V High Limit", "Pin 23 V High Limit", "Pin 24 V High Limit", "Pin 15 Low Limit", "Pin 19 Low Limit",
      "Pin 15 High Limit", "Pin 19 High Limit", "1.5V2 (ICH) High Limit", "1.5V1 (3GIO) High Limit",
      "Pin 25 V High Limit", "Pin 26 V High Limit", "+12V1 Low Limit", "+12V2 Low Limit", "+12V3 Low Limit",
      "+3.3V Low Limit", "+5V Low Limit", "Pin 23 V Low Limit", "Pin 24 V Low Limit", "Pin 25 V Low Limit",
      "Pin 26 V Low Limit", "+1.5V2 (ICH) Low Limit", "+1.5V1 (3GIO) Low Limit", "+12V1 High Limit",
      "+12V2 High Limit", "+5V High Limit", "+12V3 High Limit"}},
    {"Voltage",
     "Voltage Values",
     {"Pin 23 Voltage", "Pin 24 Voltage", "Pin 25 Voltage", "Pin 26 Voltage", "+1.5V1 (3GIO) Voltage",
      "+1.5V2 (ICH) Voltage", "+3.3V Voltage", "Pin 15 Voltage", "Pin 19 Voltage", "+12V1 Voltage",
      "+12V2 Voltage", "+5V Voltage", "+12V3 Voltage"}},
    {"GPIO",
     "Behaviour",
     {"GPIO1_Bhvr", "GPIO2_Bhvr"}},
    {"GPIO",
     "GPIO  Values",
     {"GPIO Status,Host"}},
    {"THERM Timer",
     "Timer Limits",
     {"THERM 1 Timer Limit", "THERM 2 Timer Limit"}},
    {"THERM Timer",
     "Timer Values",
     {"THERM 1% Ontime", "THERM 2% Ontime"}},
}};
// clang-format on

std::string TextOf(const RegisterGroup& group) {
  std::string text = std::string(group.root) + ", " + group.name;
  for (auto two = text.find("  "); two != std::string::npos; two = text.find("  ")) text.erase(two, 1);
  return text;
}

std::vector<std::string> GroupsOf(std::uint8_t reg) {
  std::vector<std::string> groups;
  for (const RegisterRow& row : kRegisterRows) {
    if (row.address != reg) continue;
    for (const RegisterGroup& group : kRegisterGroups) {
      const bool has = std::ranges::any_of(group.registers, [&row](std::string_view name) { return name == row.name; });
      if (has && std::ranges::find(groups, TextOf(group)) == groups.end()) groups.push_back(TextOf(group));
    }
  }
  return groups;
}

}  // namespace zth::chip
