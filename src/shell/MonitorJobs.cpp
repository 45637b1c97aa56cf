#include "shell/MonitorJobs.h"

#include <memory>

#include "chip/Measurements.h"
#include "windows/SharedState.h"
#include "windows/limits/frmLimits.h"
#include "windows/regmap/frmRegMap.h"

namespace zth::shell {
namespace {

/// A fixed period.
std::function<double()> Every(double seconds) {
  return [seconds] { return seconds; };
}

/// The open window of that class, or null.
template <typename Window>
Window* Opened(const windows::Desktop& desktop, const char* name) {
  return qobject_cast<Window*>(desktop.FindWindow(name));
}

}  // namespace

void MeasurementJob::Run() {
  constexpr std::int16_t kGroups = 6;
  chip::ReadMeasurementGroup(static_cast<std::int16_t>(phase_ + 1));
  phase_ = static_cast<std::int16_t>((phase_ + 1) % kGroups);
}

void AddMonitorJobs(JobList& jobs, const windows::Context& context) {
  const windows::Desktop& desktop = context.desktop;

  // job 1
  jobs.Add({"measurement", [] { return chip::PollEnabled; }, [] { return chip::PollPeriodMs / 1000.0; },
            [job = std::make_shared<MeasurementJob>()] { job->Run(); }});

  // job 3
  const auto regMap = [&desktop] { return Opened<windows::frmRegMap>(desktop, "frmRegMap"); };
  jobs.Add({"register map",
            [regMap] { return windows::RegMapOpen && regMap() != nullptr && regMap()->ContinuousRead(); }, Every(1.0),
            [regMap] { regMap()->cmdRead_Click(); }});

  // job 5
  const auto limits = [&desktop] { return Opened<windows::frmLimits>(desktop, "frmLimits"); };
  jobs.Add({"limits", [limits] { return windows::LimitsOpen && limits() != nullptr; }, Every(0.5),
            [limits] { limits()->Refresh(); }});
}

}  // namespace zth::shell
