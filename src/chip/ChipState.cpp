#include "chip/ChipState.h"

namespace zth::chip {

ChipState Model;

}  // namespace zth::chip
