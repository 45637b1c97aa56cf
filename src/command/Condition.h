#pragma once

#include <string>
#include <vector>

#include "command/Session.h"

namespace zth::command {

/// "Tach2 > 1000", "Remote1 in 20..40": one value against a number or a range.
class Condition {
 public:
  /// Throws Failure if the words are no condition.
  explicit Condition(const std::vector<std::string>& words);

  /// Reads the value.
  bool Holds(Session& session);

  /// "Tach2 is 900 rpm, not > 1000" for the value read last.
  std::string Words() const;

 private:
  std::vector<Target> targets_;
  std::string sign_;
  double low_ = 0;  ///< the number, or the lower end of the range
  double high_ = 0;
  std::string text_;  ///< sign and numbers as they were given
  double value_ = 0;  ///< read last
  std::string unit_;
};

}  // namespace zth::command
