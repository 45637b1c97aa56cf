#pragma once

#include <memory>

#include "platform/Services.h"

namespace zth::platform {

/// Ignores SIGPIPE, so that writing to a pipe without a reader fails as an ordinary write error and does not end the
/// process. Call it first in main: libraries write to standard error, which may be such a pipe, and so does Qt while
/// the QApplication is created.
void IgnoreBrokenPipes();

/// The services of a real desktop. Create it after the QApplication and keep it until the program ends.
class DesktopServices {
 public:
  DesktopServices();
  ~DesktopServices();

  Services& All() { return all_; }

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
  Services all_;
};

}  // namespace zth::platform
