#pragma once

#include <cstdint>

#include <QString>

#include "link/ChipId.h"
#include "windows/data/LogFiles.h"

/// State shared by the windows, the master timer and the start. For the user-interface thread only.
namespace zth::windows {

/// `Shared = {}` is the state before the program has started.
struct SharedState {
  /// True while the window is open: set at the end of its load step, cleared in its unload step. The master timer
  /// checks these before it uses a window.
  bool RegMapOpen = false;
  bool LimitsOpen = false;
  bool GpioOpen = false;
  bool GraphOpen = false;
  bool HeatersOpen = false;
  bool ManualOpen = false;
  bool DynTminOpen = false;
  bool AutoGraphOpen = false;

  /// The period of the graph job.
  std::int16_t GraphPeriodMs = 50;

  /// The log job: on or off, its period, the number of samples since it was started, and its file's full path. The
  /// count has 64 bits, so that it never overflows.
  bool LogActive = false;
  std::int32_t LogPeriodMs = 100;
  std::int64_t LogSampleCount = 0;
  QString LogFileName;
  LogFiles log;

  /// A recall is writing registers.
  bool RecallRunning = false;

  /// The outcome of the last save or recall and the file's path; shown again when its window is reopened.
  QString LastFileWork;

  /// The user is holding a slider of the manual control window.
  bool ManualSliderHeld = false;

  /// The dynamic Tmin demo is running; its single forced THERM2 event has happened.
  bool DemoRunning = false;
  bool DemoThermTripped = false;

  /// The chip that the demo was set up on. The demo pauses while another one is in use.
  link::ChipId DemoChip;
};

extern SharedState Shared;

}  // namespace zth::windows
