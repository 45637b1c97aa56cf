#pragma once

#include <string>

namespace zth::command {

/// How the command ends.
enum Status : int {
  kDone = 0,
  kDiffers = 1,      ///< two configurations differ, or an assertion does not hold
  kUsage = 2,        ///< the command line, a name, a value or a file is wrong; nothing was transferred
  kNoHardware = 3,   ///< no adapter, no host or no chip
  kLinkFailed = 4,   ///< a transfer failed
  kNotVerified = 5,  ///< a register does not hold what was written
  kEnded = 130,      ///< a signal has ended it between two transfers
};

/// Thrown where a command cannot go on. Shown as one line.
struct Failure {
  Status status = kUsage;
  std::string what;    ///< a sentence without its full stop
  std::string remedy;  ///< likewise
};

}  // namespace zth::command
