#include "command/Condition.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/NumberText.h"
#include "command/Readings.h"

namespace zth::command {
namespace {

constexpr std::array<std::string_view, 7> kSigns{">", ">=", "<", "<=", "=", "!=", "in"};

Failure BadCondition() {
  return {kUsage, "This is no condition", "Give WHAT SIGN NUMBER with > >= < <= = != or WHAT in LOW..HIGH"};
}

/// A decimal number, or the number of a register in any of its forms.
double NumberIn(const std::string& text) {
  return base::IsDecimal(text) ? base::LeadingDecimal(text) : WholeOf(text);
}

}  // namespace

Condition::Condition(const std::vector<std::string>& words) {
  if (words.size() != 3 || std::ranges::find(kSigns, words[1]) == kSigns.end()) throw BadCondition();
  targets_ = {TargetOf(words[0])};
  if (targets_.front().kind == Kind::Group) throw BadCondition();
  sign_ = words[1];
  text_ = words[1] + " " + words[2];
  if (sign_ != "in") {
    low_ = NumberIn(words[2]);
    return;
  }
  const std::size_t dots = words[2].find("..");
  if (dots == std::string::npos) throw BadCondition();
  low_ = NumberIn(words[2].substr(0, dots));
  high_ = NumberIn(words[2].substr(dots + 2));
}

bool Condition::Holds(Session& session) {
  const Sample sample = session.Take(targets_).front();
  value_ = sample.value;
  unit_ = sample.row ? " " + std::string(UnitOfReading(*sample.row)) : "";
  if (sign_ == ">") return value_ > low_;
  if (sign_ == ">=") return value_ >= low_;
  if (sign_ == "<") return value_ < low_;
  if (sign_ == "<=") return value_ <= low_;
  if (sign_ == "=") return value_ == low_;
  if (sign_ == "!=") return value_ != low_;
  return value_ >= low_ && value_ <= high_;
}

std::string Condition::Words() const {
  return targets_.front().name + " is " + NumberText(value_) + unit_ + ", not " + text_;
}

}  // namespace zth::command
