#include "shell/MonitorJobs.h"

#include <memory>

#include "chip/Measurements.h"
#include "windows/SharedState.h"
#include "windows/config/frmGPIO.h"
#include "windows/data/LogJob.h"
#include "windows/data/frmGraph.h"

namespace zth::shell {

void MeasurementJob::Run() {
  constexpr std::int16_t kGroups = 6;
  chip::ReadMeasurementGroup(static_cast<std::int16_t>(phase_ + 1));
  phase_ = static_cast<std::int16_t>((phase_ + 1) % kGroups);
}

void AddMonitorJobs(JobList& jobs, const windows::Context& context) {
  jobs.Add({"measurement", [] { return chip::PollEnabled; }, [] { return chip::PollPeriodMs / 1000.0; },
            [job = std::make_shared<MeasurementJob>()] { job->Run(); }});

  // job 2
  jobs.Add({"graphs", [] { return windows::GraphOpen; }, [] { return windows::GraphPeriodMs / 1000.0; },
            [&desktop = context.desktop] {
              auto* graph = qobject_cast<windows::frmGraph*>(desktop.FindWindow("frmGraph"));
              if (graph != nullptr) windows::FeedGraphs(graph->Charts());
            }});

  // job 9
  jobs.Add({"GPIO", [] { return windows::GpioOpen; }, [] { return 0.5; },
            [&desktop = context.desktop] {
              auto* gpio = qobject_cast<windows::frmGPIO*>(desktop.FindWindow("frmGPIO"));
              if (gpio != nullptr) gpio->UpdateGPIOStatus();
            }});

  // job 10
  jobs.Add({"log", windows::LogHasWork, windows::LogPeriodSeconds, [context] { windows::RunLogJob(context); }});
}

}  // namespace zth::shell
