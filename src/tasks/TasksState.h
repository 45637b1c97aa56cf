#pragma once

#include <memory>

#include "tasks/Journal.h"
#include "tasks/Recorder.h"
#include "tasks/StartState.h"
#include "tasks/Traffic.h"

namespace zth::tasks {

/// The room's state. `Work = {}` is the state before the program has started.
struct TasksState {
  std::unique_ptr<Traffic> traffic = std::make_unique<Traffic>();
  std::unique_ptr<Journal> journal = std::make_unique<Journal>(*traffic);
  std::unique_ptr<Recorder> recorder;  ///< null if nothing is recorded
  StartState start;
};

extern TasksState Work;

}  // namespace zth::tasks
