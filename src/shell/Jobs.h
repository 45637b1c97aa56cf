#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Services.h"

namespace zth::shell {

/// One row of the master timer's list.
struct Job {
  std::string name;
  std::function<bool()> condition;  ///< the job is considered only while this is true
  std::function<double()> period;   ///< minimum gap in seconds between the job's end and its next start
  std::function<void()> action;
};

/// The jobs of the master timer, checked in order at each tick. A job is due when more than its period has passed since
/// it last ended. Stamps start at 0, so each job runs at its first check. A late job runs once and does not catch up.
class JobList {
 public:
  explicit JobList(const platform::Clock& clock) : clock_(clock) {}

  void Add(Job job);

  /// Checks all rows in order and runs those that are due. If the link fails in one of them, the rest do not run.
  void Tick();

 private:
  struct Row {
    Job job;
    double stamp = 0;  ///< clock time in seconds when the job last ended
  };

  const platform::Clock& clock_;
  std::vector<Row> rows_;
};

}  // namespace zth::shell
