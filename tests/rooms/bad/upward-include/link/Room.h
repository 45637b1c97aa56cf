#include "chip/Room.h"
