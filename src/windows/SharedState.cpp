#include "windows/SharedState.h"

namespace zth::windows {

SharedState Shared;

}  // namespace zth::windows
