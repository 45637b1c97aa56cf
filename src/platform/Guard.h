#pragma once

#include <utility>

#include "platform/Services.h"

namespace zth::platform {

/// Wraps a handler so that no ProcessEnded crosses an event handler of Qt: the handler is given up where it was, and
/// since the link refuses every further transfer once the process has ended, nothing reaches the board behind it. What
/// the signal carries is dropped; a handler asks the control.
template <typename Handler>
auto Guarded(Handler handler) {
  return [handler = std::move(handler)]() mutable {
    try {
      handler();
    } catch (const ProcessEnded&) {  // the end has been recorded by whoever threw it
    }
  };
}

}  // namespace zth::platform
