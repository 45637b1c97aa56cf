#include "base/Base.h"
