#include "Room.h"
