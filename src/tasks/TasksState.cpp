#include "tasks/TasksState.h"

namespace zth::tasks {

TasksState Work;

}  // namespace zth::tasks
