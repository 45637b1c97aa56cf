#include "shell/MonitorJobs.h"

#include <memory>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "link/Asker.h"
#include "windows/ChildWindow.h"
#include "windows/SharedState.h"
#include "windows/board/frmHeaters.h"
#include "windows/config/frmGPIO.h"
#include "windows/data/LogJob.h"
#include "windows/data/frmGraph.h"
#include "windows/fancontrol/Demo.h"
#include "windows/fancontrol/frmAutoGraph.h"
#include "windows/fancontrol/frmDynamicTmin.h"
#include "windows/fancontrol/frmManualControl.h"
#include "windows/limits/frmLimits.h"
#include "windows/regmap/frmRegMap.h"

namespace zth::shell {
namespace {

/// A job that calls a window, which is open while the job's condition is true.
template <typename Window>
std::function<void()> OnWindow(const windows::Context& context, const char* name, void (*action)(Window&)) {
  return [&desktop = context.desktop, name, action] {
    const link::Asker asker(link::Asker::Kind::Job, [name] { return std::string("monitor ") + name; });
    if (auto* window = qobject_cast<Window*>(desktop.FindWindow(name))) action(*window);
  };
}

std::function<double()> Every(double seconds) {
  return [seconds] { return seconds; };
}

void RefreshManualControl(windows::frmManualControl& window) {
  window.RefreshManualControlStates();
  if (!windows::Shared.ManualSliderHeld) window.RefreshManualControlSliders();
}

}  // namespace

void MeasurementJob::Run() {
  const link::Asker asker(link::Asker::Kind::Job, [] { return "monitor"; });
  constexpr std::int16_t kGroups = 6;
  chip::Model.Freshness.now = services_.clock.Now();
  chip::ReadMeasurementGroup(static_cast<std::int16_t>(phase_ + 1));
  windows::AdjustForDemo(phase_, services_);
  phase_ = static_cast<std::int16_t>((phase_ + 1) % kGroups);
}

void AddMonitorJobs(JobList& jobs, const windows::Context& context) {
  jobs.Add({"measurement", [] { return chip::Model.PollEnabled; }, [] { return chip::Model.PollPeriodMs / 1000.0; },
            [job = std::make_shared<MeasurementJob>(context.services)] { job->Run(); }});
  jobs.Add(
      {"graphs", [] { return windows::Shared.GraphOpen; }, [] { return windows::Shared.GraphPeriodMs / 1000.0; },
       OnWindow<windows::frmGraph>(context, "frmGraph", [](auto& window) { windows::FeedGraphs(window.Charts()); })});
  const windows::Desktop& desktop = context.desktop;
  const auto readsContinuously = [&desktop] {
    const auto* regMap = qobject_cast<windows::frmRegMap*>(desktop.FindWindow("frmRegMap"));
    return windows::Shared.RegMapOpen && regMap != nullptr && regMap->ContinuousRead();
  };
  jobs.Add({"register map", readsContinuously, Every(1.0),
            OnWindow<windows::frmRegMap>(context, "frmRegMap", [](auto& window) { window.RepeatRead(); })});
  jobs.Add({"heaters", [] { return windows::Shared.HeatersOpen; }, Every(1.0),
            OnWindow<windows::frmHeaters>(context, "frmHeaters", [](auto& window) { window.RefreshTemperatures(); })});
  jobs.Add({"limits", [] { return windows::Shared.LimitsOpen; }, Every(0.5),
            OnWindow<windows::frmLimits>(context, "frmLimits", [](auto& window) { window.Refresh(); })});
  jobs.Add({"manual control", [] { return windows::Shared.ManualOpen; }, Every(1.0),
            OnWindow<windows::frmManualControl>(context, "frmManualControl", RefreshManualControl)});
  jobs.Add({"automatic control", [] { return windows::Shared.AutoGraphOpen; }, Every(0.3),
            OnWindow<windows::frmAutoGraph>(context, "frmAutoGraph", [](auto& window) { window.PlotAFCTemps(); })});
  jobs.Add({"dynamic Tmin", [] { return windows::Shared.DynTminOpen; }, Every(0.1),
            OnWindow<windows::frmDynamicTmin>(context, "frmDynamicTmin",
                                              [](auto& window) { window.UpdateDynTminGraph(); })});
  jobs.Add({"GPIO", [] { return windows::Shared.GpioOpen; }, Every(0.5),
            OnWindow<windows::frmGPIO>(context, "frmGPIO", [](auto& window) { window.UpdateGPIOStatus(); })});
  jobs.Add({"log", windows::LogHasWork, windows::LogPeriodSeconds, [context] { windows::RunLogJob(context); }});
}

}  // namespace zth::shell
