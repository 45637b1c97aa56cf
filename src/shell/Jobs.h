#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Services.h"

namespace zth::shell {

/// One row of the master timer's list.
struct Job {
  std::string name;
  std::function<bool()> condition;  ///< the job is tested only while this holds
  std::function<double()> period;   ///< minimum gap in seconds, from the job's end to its next start
  std::function<void()> action;
};

/// The jobs of the master timer, tested one after the other at each tick. A job is due when more than its period has
/// passed since it last ended; the stamps start at 0, so that each job runs at its first test. A job that was late runs
/// once, there is no catching up.
class JobList {
 public:
  explicit JobList(const platform::Clock& clock) : clock_(clock) {}

  void Add(Job job);

  /// Tests and runs all rows in their order. A failure of the link in one of them keeps the rest from running.
  void Tick();

 private:
  struct Row {
    Job job;
    double stamp = 0;  ///< when the job last ended, in seconds of the clock
  };

  const platform::Clock& clock_;
  std::vector<Row> rows_;
};

}  // namespace zth::shell
