#pragma once

#include <memory>

#include "platform/Services.h"

namespace zth::platform {

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
