#include "simulator/FaultText.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/PinModel.h"
#include "simulator/Words.h"

namespace zth::simulator {
namespace {

using Rest = std::vector<std::string>;
using Problem = std::optional<std::string>;

constexpr double kLongestPlanSeconds = 1e6;

bool InRange(double value, double low, double high) {
  return value >= low && value <= high;
}

/// Matches words against a pattern in which # stands for a number, and adds the numbers to `numbers`.
bool Matches(const Rest& words, std::string_view pattern, std::vector<double>& numbers) {
  const std::vector<std::string> parts = Words(pattern);
  if (parts.size() != words.size()) return false;
  numbers.clear();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    long long whole = 0;
    double number = 0;
    if (parts[i] != "#") {
      if (parts[i] != words[i]) return false;
    } else if (ParseInteger(words[i], whole)) {
      numbers.push_back(static_cast<double>(whole));
    } else if (ParseDecimal(words[i], number)) {
      numbers.push_back(number);
    } else {
      return false;
    }
  }
  return true;
}

/// Removes the two words "<name> <value>" from the end, where a filter may be.
std::optional<std::string> TakeTail(Rest& words, std::string_view name) {
  if (words.size() < 2 || words[words.size() - 2] != name) return std::nullopt;
  std::string value = words.back();
  words.resize(words.size() - 2);
  return value;
}

std::optional<std::chrono::nanoseconds> Seconds(const std::string& word) {
  double seconds = 0;
  if (!ParseDecimal(word, seconds) || !InRange(seconds, 0, kLongestPlanSeconds)) return std::nullopt;
  return std::chrono::nanoseconds(std::llround(seconds * 1e9));
}

/// Removes "at 30" or "from 30 to 45" from the front.
Problem TakeTime(Rest& words, Fault& fault) {
  const bool at = words.size() >= 2 && words[0] == "at";
  const bool span = words.size() >= 4 && words[0] == "from" && words[2] == "to";
  if (!at && !span) return "a fault begins with \"at <seconds>\" or \"from <seconds> to <seconds>\"";
  const auto from = Seconds(words[1]);
  if (!from) return "'" + words[1] + "' is no time in seconds";
  fault.from = *from;
  if (span) {
    fault.until = Seconds(words[3]);
    if (!fault.until) return "'" + words[3] + "' is no time in seconds";
    if (*fault.until <= fault.from) return "the fault ends before it begins";
  }
  words.erase(words.begin(), words.begin() + (span ? 4 : 2));
  return std::nullopt;
}

Problem TakeFilters(Rest& words, Fault& fault) {
  if (const auto link = TakeTail(words, "on")) {
    if (*link != "usb" && *link != "smbus") return "'" + *link + "' is no link: say usb or smbus";
    fault.link = *link == "usb" ? Link::Usb : Link::Smbus;
  }
  const bool transfer = !words.empty() && words[0] == "transfer";
  for (bool found = transfer; found;) {
    found = false;
    for (const char* name : {"register", "request"}) {
      const auto text = TakeTail(words, name);
      if (!text) continue;
      long long number = 0;
      if (!ParseInteger(*text, number) || !InRange(static_cast<double>(number), 0, 255)) {
        return "'" + *text + "' is no " + name + " from 0 to 0xFF";
      }
      (std::string_view(name) == "register" ? fault.address : fault.request) = static_cast<int>(number);
      found = true;
    }
  }
  return std::nullopt;
}

std::optional<VoltagePin> PinByNumber(double number) {
  for (int n = 0; n < kVoltagePins; ++n) {
    if (RowOf(static_cast<VoltagePin>(n)).number == number) return static_cast<VoltagePin>(n);
  }
  return std::nullopt;
}

Problem ReadTransferFault(const Rest& words, Fault& fault) {
  std::vector<double> n;
  if (Matches(words, "transfer fails", n)) {
    fault.kind = FaultKind::TransferFails;
  } else if (Matches(words, "transfer fails once", n)) {
    fault.kind = FaultKind::TransferFails;
    fault.count = 1;
  } else if (Matches(words, "transfer fails # times", n)) {
    if (!InRange(n[0], 1, 1e6)) return "a transfer fails 1 time at least";
    fault.kind = FaultKind::TransferFails;
    fault.count = static_cast<int>(n[0]);
  } else if (Matches(words, "transfer slow # ms", n)) {
    if (!InRange(n[0], 1, 60000)) return "a transfer is slow by 1 to 60000 ms";
    fault.kind = FaultKind::TransferSlow;
    fault.milliseconds = static_cast<int>(n[0]);
  } else {
    return "say \"transfer fails\", \"fails once\", \"fails <n> times\" or \"slow <n> ms\"";
  }
  return std::nullopt;
}

Problem ReadRegisterFault(const Rest& words, Fault& fault) {
  std::vector<double> n;
  const bool stuck = Matches(words, "register # stuck at #", n);
  if (!stuck && !Matches(words, "register # bit # flipped", n)) {
    return "say \"register <address> stuck at <value>\" or \"register <address> bit <0 to 7> flipped\"";
  }
  if (!InRange(n[0], 0, 255)) return "a register's address is 0 to 0xFF";
  if (!InRange(n[1], 0, stuck ? 255 : 7)) return stuck ? "a register's value is 0 to 0xFF" : "a bit is 0 to 7";
  fault.kind = stuck ? FaultKind::RegisterStuck : FaultKind::BitFlipped;
  fault.address = static_cast<int>(n[0]);
  fault.value = n[1];
  return std::nullopt;
}

/// How a fault of the board is written: its words, its kind, the valid part numbers and the valid range of the number
/// after them, each with the error text for any other value. A row without a part has no part numbers.
struct BoardRow {
  std::string_view pattern;
  FaultKind kind;
  int first = 0, last = 0;  ///< part numbers
  std::string_view others{};
  double low = 0, high = 0;  ///< range of the number after the part
  std::string_view wrong{};
};

constexpr double kFastestDrift = 600;  // degrees a minute
constexpr std::string_view kFans = "there are fans 1 to 8";
constexpr std::string_view kTachsThere = "there are tachs 1 to 8";
constexpr std::string_view kSensors = "there are sensors 0 (Local) to 3";
constexpr std::string_view kDrifts = "a drift is -600 to 600 degrees a minute";

constexpr BoardRow kBoardRows[] = {
    {"fan # stalled", FaultKind::FanStalled, 1, kTachs, kFans},
    {"fan # at # %", FaultKind::FanWorn, 1, kTachs, kFans, 1, 100, "a worn fan turns at 1 to 100 % of its speed"},
    {"tach # noisy # %", FaultKind::TachNoisy, 1, kTachs, kTachsThere, 0, 90, "pulses are off by 0 to 90 %"},
    {"tach # misses # %", FaultKind::TachMisses, 1, kTachs, kTachsThere, 0, 100, "0 to 100 % of the pulses can miss"},
    {"heater # stuck at # %", FaultKind::HeaterStuck, 1, kHeaters, "there are heaters 1 and 2", 0, 100,
     "a heater runs at 0 to 100 %"},
    {"diode # open", FaultKind::DiodeOpen, 1, 3, "there are diodes 1 to 3"},
    {"sensor # drifts # degrees a minute", FaultKind::SensorDrifts, 0, 3, kSensors, -kFastestDrift, kFastestDrift,
     kDrifts},
    {"sensor # frozen", FaultKind::SensorFrozen, 0, 3, kSensors},
    {"therm # low", FaultKind::ThermLow, 1, 2, "there are THERM pins 1 and 2"},
    {"vr-hot # reported", FaultKind::VrHot, 1, 2, "there are regulators 1 and 2"},
    {"gpio # low", FaultKind::GpioLow, 1, kGpios, "there are GPIOs 1 to 8"},
    {"ambient at # degrees", FaultKind::AmbientAt, 0, 0, {}, -40, 100, "the air is of -40 to 100 degrees"},
    {"ambient drifts # degrees a minute", FaultKind::AmbientDrifts, 0, 0, {}, -kFastestDrift, kFastestDrift, kDrifts},
    {"vid #", FaultKind::VidCode, 0, 0, {}, 0, 0x3F, "a VID code is 0 to 0x3F"},
    {"pin 27 asserted", FaultKind::Pin27Asserted},
    {"adapter unplugged", FaultKind::AdapterUnplugged},
};

bool IsWhole(double number) {
  return number == std::floor(number);
}

Problem ReadBoardRow(const BoardRow& row, std::vector<double> numbers, Fault& fault) {
  fault.kind = row.kind;
  if (row.kind == FaultKind::AdapterUnplugged) fault.link = Link::Usb;
  if (!row.others.empty()) {
    if (!InRange(numbers[0], row.first, row.last) || !IsWhole(numbers[0])) return std::string(row.others);
    // Sensor 0 and diode 0 are Local, which has no diode that could open. Everything else counts from 1.
    const bool fromZero = row.kind == FaultKind::DiodeOpen || row.first == 0;
    fault.index = static_cast<int>(numbers[0]) - (fromZero ? 0 : 1);
    numbers.erase(numbers.begin());
  }
  if (numbers.empty() || row.wrong.empty()) return std::nullopt;
  const bool bits = row.kind == FaultKind::VidCode;
  if (!InRange(numbers[0], row.low, row.high) || (bits && !IsWhole(numbers[0]))) return std::string(row.wrong);
  fault.value = numbers[0];
  return std::nullopt;
}

Problem ReadBoardFault(const Rest& words, Fault& fault) {
  std::vector<double> n;
  for (const BoardRow& row : kBoardRows) {
    if (Matches(words, row.pattern, n)) return ReadBoardRow(row, n, fault);
  }
  if (!Matches(words, "supply pin # at # %", n)) return "this fault is not known";
  const auto pin = PinByNumber(n[0]);
  if (!pin) return "no supply is measured on that pin";
  if (!InRange(n[1], 0, 200)) return "a supply stands at 0 to 200 %";
  fault.kind = FaultKind::SupplyFactor;
  fault.pin = *pin;
  fault.value = n[1];
  return std::nullopt;
}

}  // namespace

std::variant<Fault, std::string> ParseFault(const std::vector<std::string>& words) {
  Rest rest = words;
  Fault fault;
  Problem problem = TakeTime(rest, fault);
  if (!problem) problem = TakeFilters(rest, fault);
  if (!problem && rest.empty()) problem = "what fails is missing";
  if (!problem) {
    problem = rest[0] == "transfer"   ? ReadTransferFault(rest, fault)
              : rest[0] == "register" ? ReadRegisterFault(rest, fault)
                                      : ReadBoardFault(rest, fault);
  }
  if (problem) return *problem;
  return fault;
}

}  // namespace zth::simulator
