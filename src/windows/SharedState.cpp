#include "windows/SharedState.h"

#include "windows/data/LogJob.h"

namespace zth::windows {

bool RegMapOpen = false;
bool LimitsOpen = false;
bool GpioOpen = false;
bool GraphOpen = false;
bool HeatersOpen = false;
bool ManualOpen = false;
bool DynTminOpen = false;
bool AutoGraphOpen = false;

std::int16_t GraphPeriodMs = 50;

bool LogActive = false;
std::int32_t LogPeriodMs = 100;
std::int64_t LogSampleCount = 0;
QString LogFileName;

bool RecallRunning = false;
QString LastFileWork;

bool ManualSliderHeld = false;
bool DemoRunning = false;
bool DemoThermTripped = false;
link::ChipId DemoChip;

void ResetSharedState() {
  for (bool* flag : {&RegMapOpen, &LimitsOpen, &GpioOpen, &GraphOpen, &HeatersOpen, &ManualOpen, &DynTminOpen,
                     &AutoGraphOpen, &LogActive, &ManualSliderHeld, &DemoRunning, &DemoThermTripped, &RecallRunning}) {
    *flag = false;
  }
  GraphPeriodMs = 50;
  LogPeriodMs = 100;
  LogSampleCount = 0;
  LogFileName.clear();
  LastFileWork.clear();
  DemoChip = {};
  ResetLog();
}

}  // namespace zth::windows
