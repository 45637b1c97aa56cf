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

/// Compares words with a pattern in which # stands for a number; the numbers found go to `numbers`.
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

/// Takes two words "<name> <value>" off the end, wherever a filter may stand.
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

/// "at 30" or "from 30 to 45", at the front.
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

/// A fault of one numbered part: the words, its kind, the highest number, and what to say of another one.
struct PartRow {
  std::string_view pattern;
  FaultKind kind;
  int last;
  std::string_view others;
};

constexpr PartRow kParts[] = {
    {"fan # stalled", FaultKind::FanStalled, kTachs, "there are fans 1 to 8"},
    {"heater # stuck at # %", FaultKind::HeaterStuck, kHeaters, "there are heaters 1 and 2"},
    {"diode # open", FaultKind::DiodeOpen, 3, "there are diodes 1 to 3"},
    {"therm # low", FaultKind::ThermLow, 2, "there are THERM pins 1 and 2"},
    {"vr-hot # reported", FaultKind::VrHot, 2, "there are regulators 1 and 2"},
    {"gpio # low", FaultKind::GpioLow, kGpios, "there are GPIOs 1 to 8"},
};

Problem ReadPartFault(const PartRow& part, const std::vector<double>& numbers, Fault& fault) {
  if (!InRange(numbers[0], 1, part.last)) return std::string(part.others);
  fault.kind = part.kind;
  const bool countsLocal = part.kind == FaultKind::DiodeOpen;  // diode 1 is that of Remote 1
  fault.index = static_cast<int>(numbers[0]) - (countsLocal ? 0 : 1);
  if (numbers.size() < 2) return std::nullopt;
  if (!InRange(numbers[1], 0, 100)) return "a heater runs at 0 to 100 %";
  fault.value = numbers[1];
  return std::nullopt;
}

Problem ReadBoardFault(const Rest& words, Fault& fault) {
  std::vector<double> n;
  for (const PartRow& part : kParts) {
    if (Matches(words, part.pattern, n)) return ReadPartFault(part, n, fault);
  }
  if (Matches(words, "supply pin # at # %", n)) {
    const auto pin = PinByNumber(n[0]);
    if (!pin) return "no supply is measured on that pin";
    if (!InRange(n[1], 0, 200)) return "a supply stands at 0 to 200 %";
    fault.kind = FaultKind::SupplyFactor;
    fault.pin = *pin;
    fault.value = n[1];
  } else if (Matches(words, "pin 27 asserted", n)) {
    fault.kind = FaultKind::Pin27Asserted;
  } else if (Matches(words, "adapter unplugged", n)) {
    fault.kind = FaultKind::AdapterUnplugged;
    fault.link = Link::Usb;
  } else {
    return "this fault is not known";
  }
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
