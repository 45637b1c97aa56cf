#include "tests/accessibility/AccessGround.h"
