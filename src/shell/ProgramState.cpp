#include "shell/ProgramState.h"

namespace zth::shell {

ProgramState Program;

}  // namespace zth::shell
