#pragma once

#include <cstdint>
#include <functional>
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

/// Called with each value that is read from the chip meanwhile.
using ReadBack = std::function<void(std::uint8_t reg, std::uint8_t value)>;

/// Writes registers and fields of a configuration to the chip in use, after a question that says what cannot be
/// written. `from`: the configuration's name. Without a yes, and if the chip in use has changed by then, nothing is
/// written. `asker` may be closed meanwhile: then nothing is written either.
Written WriteToChip(const Context& context, QWidget& asker, const tasks::RegisterImage& image, const QString& from,
                    const std::vector<tasks::Wanted>& wanted, const ReadBack& readBack);

}  // namespace zth::windows
