#pragma once

#include <QString>

#include "platform/Services.h"

namespace zth::tasks {

/// Where the start has looked so far, what it found and how to help.
QString StartDetails(platform::Services& services);

}  // namespace zth::tasks
