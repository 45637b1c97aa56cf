#pragma once

#include <string>
#include <vector>

#include <QString>

#include "tasks/RegisterImage.h"
#include "tasks/WriteImage.h"
#include "windows/Desktop.h"

namespace zth::windows {

/// What has become of a write.
struct Written {
  QString told;
  std::vector<std::string> left;  ///< what was not written, or not taken, with the reason
};

/// Writes registers and fields of a configuration to the chip in use, after a question that lists what will change and
/// what cannot be written. `from`: the configuration's name. `now`: what is known of the chip. Without a yes, and if
/// the chip in use has changed by then, nothing is written. `asker` may be closed meanwhile: then nothing is written
/// either.
Written WriteToChip(const Context& context, QWidget& asker, const tasks::RegisterImage& image, const QString& from,
                    const std::vector<tasks::Wanted>& wanted, const tasks::RegisterImage& now);

}  // namespace zth::windows
