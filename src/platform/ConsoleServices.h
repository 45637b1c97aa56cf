#pragma once

#include <memory>

#include "platform/Services.h"

namespace zth::platform {

/// The services of a program without a display. Boxes and file dialogs are answered as if they had been closed, and
/// nothing shows them; there is no clipboard and no browser. Create it after the QCoreApplication.
class ConsoleServices {
 public:
  ConsoleServices();
  ~ConsoleServices();

  Services& All() { return all_; }

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
  Services all_;
};

}  // namespace zth::platform
