#include "base/Room.h"
