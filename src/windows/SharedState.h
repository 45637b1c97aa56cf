#pragma once

#include <cstdint>

#include <QString>

#include "link/ChipId.h"

/// What the windows, the master timer and the start share. All of it belongs to the user-interface thread.
namespace zth::windows {

/// The window is open: set at the end of its load step, cleared in its unload step. The master timer asks these before
/// it touches a window.
extern bool RegMapOpen;
extern bool LimitsOpen;
extern bool GpioOpen;
extern bool GraphOpen;
extern bool HeatersOpen;
extern bool ManualOpen;
extern bool DynTminOpen;
extern bool AutoGraphOpen;

/// Period of the graph job.
extern std::int16_t GraphPeriodMs;

/// The log job: on or off, its period, the samples since it was started, and its file's full path. The count has 64
/// bits, so that no log is too long for it.
extern bool LogActive;
extern std::int32_t LogPeriodMs;
extern std::int64_t LogSampleCount;
extern QString LogFileName;

/// A recall writes its registers.
extern bool RecallRunning;

/// What the last save or recall has come to, and where: told again when its window is opened anew.
extern QString LastFileWork;

/// The user holds a slider of the manual control down.
extern bool ManualSliderHeld;

/// The dynamic Tmin demo is running; its one forced THERM2 event is spent.
extern bool DemoRunning;
extern bool DemoThermTripped;

/// The chip that the demo has set up. While another one is in use the demo waits.
extern link::ChipId DemoChip;

/// Puts all of it back to the state of a program that has not started.
void ResetSharedState();

}  // namespace zth::windows
