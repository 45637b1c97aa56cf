#pragma once

#include <utility>

#include "platform/Services.h"

namespace zth::platform {

/// Wraps a handler so that ProcessEnded does not propagate through Qt's event handling. The handler is abandoned where
/// it threw. Nothing reaches the board afterwards, because the link refuses all transfers once the process has ended.
/// The signal's arguments are dropped; a handler reads the control instead.
template <typename Handler>
auto Guarded(Handler handler) {
  return [handler = std::move(handler)]() mutable {
    try {
      handler();
    } catch (const ProcessEnded&) {  // whoever threw it has recorded the end
    }
  };
}

}  // namespace zth::platform
