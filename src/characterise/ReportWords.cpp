#include "characterise/ReportWords.h"

#include <array>

#include "chip/FanCurve.h"

namespace zth::characterise {
namespace {

constexpr std::array kPhases{"prepare", "fans", "heat", "controller", "put back"};
constexpr std::array kStates{"good", "dead", "noisy", "does not follow", "never stops"};
constexpr std::array kEndings{"running",         "done",        "cancelled", "temperature limit", "time limit",
                              "transfer failed", "no readings", "refused",   "other chip",        "closed"};
constexpr std::array kFates{"in use", "restored", "off", "foreign", "not verified", "unknown"};

}  // namespace

const char* PhaseName(Phase phase) {
  return kPhases.at(static_cast<std::size_t>(phase));
}
const char* StateName(TachState state) {
  return kStates.at(static_cast<std::size_t>(state));
}
const char* EndingName(Ending ending) {
  return kEndings.at(static_cast<std::size_t>(ending));
}
const char* FateName(Fate fate) {
  return kFates.at(static_cast<std::size_t>(fate));
}

std::string TrangeText(int trange) {
  const bool isOne = trange >= 0 && trange < static_cast<int>(chip::kTrangeItems.size());
  return isOne ? chip::kTrangeItems.at(static_cast<std::size_t>(trange)) : "-";
}

}  // namespace zth::characterise
