#pragma once

#include <cstdint>

#include <QString>

#include "link/ChipId.h"
#include "windows/data/LogFiles.h"

/// What the windows, the master timer and the start share. All of it belongs to the user-interface thread.
namespace zth::windows {

/// `Shared = {}` is the state of a program that has not started.
struct SharedState {
  /// The window is open: set at the end of its load step, cleared in its unload step. The master timer asks these
  /// before it touches a window.
  bool RegMapOpen = false;
  bool LimitsOpen = false;
  bool GpioOpen = false;
  bool GraphOpen = false;
  bool HeatersOpen = false;
  bool ManualOpen = false;
  bool DynTminOpen = false;
  bool AutoGraphOpen = false;

  /// Period of the graph job.
  std::int16_t GraphPeriodMs = 50;

  /// The log job: on or off, its period, the samples since it was started, and its file's full path. The count has 64
  /// bits, so that no log is too long for it.
  bool LogActive = false;
  std::int32_t LogPeriodMs = 100;
  std::int64_t LogSampleCount = 0;
  QString LogFileName;
  LogFiles log;

  /// A recall writes its registers.
  bool RecallRunning = false;

  /// What the last save or recall has come to, and where: told again when its window is opened anew.
  QString LastFileWork;

  /// The user holds a slider of the manual control down.
  bool ManualSliderHeld = false;

  /// The dynamic Tmin demo is running; its one forced THERM2 event is spent.
  bool DemoRunning = false;
  bool DemoThermTripped = false;

  /// The chip that the demo has set up. While another one is in use the demo waits.
  link::ChipId DemoChip;
};

extern SharedState Shared;

}  // namespace zth::windows
