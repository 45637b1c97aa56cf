#include "base/Room.h"
#include "tasks/Room.h"
