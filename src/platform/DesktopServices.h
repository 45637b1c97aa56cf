#pragma once

#include <memory>

#include "platform/Services.h"

namespace zth::platform {

/// Keeps a pipe whose reader has gone from ending the process: the write fails, as any other does. First of all in
/// main: libraries speak on the standard error stream, which may be such a pipe, and so does Qt as the QApplication is
/// made.
void IgnoreBrokenPipes();

/// The services of a real desktop. Make it after the QApplication and keep it to the end of the program.
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
