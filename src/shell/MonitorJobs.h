#pragma once

#include <cstdint>

#include "platform/Services.h"
#include "shell/Jobs.h"
#include "windows/Desktop.h"

namespace zth::shell {

/// The measurement job: one group a run, in rotation.
class MeasurementJob {
 public:
  explicit MeasurementJob(platform::Services& services) : services_(services) {}
  void Run();

 private:
  platform::Services& services_;
  std::int16_t phase_ = 0;  ///< 0 to 5; the group read next, less 1
};

/// Fills the master timer's list in its fixed order.
void AddMonitorJobs(JobList& jobs, const windows::Context& context);

}  // namespace zth::shell
