#pragma once

#include <cstdint>

#include "platform/Services.h"
#include "shell/Jobs.h"
#include "windows/Desktop.h"

namespace zth::shell {

/// The measurement job: reads one group per run, in rotation.
class MeasurementJob {
 public:
  explicit MeasurementJob(platform::Services& services) : services_(services) {}
  void Run();

 private:
  platform::Services& services_;
  std::int16_t phase_ = 0;  ///< 0 to 5; the next group to read, minus 1
};

/// Fills the master timer's list in its fixed order.
void AddMonitorJobs(JobList& jobs, const windows::Context& context);

}  // namespace zth::shell
