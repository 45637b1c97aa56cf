#pragma once

#include <utility>

#include "platform/Services.h"

namespace zth::platform {

/// Wraps a handler so that no ProcessEnded crosses an event handler of Qt: the handler is given up where it was, and
/// since the link refuses every further transfer once the process has ended, nothing reaches the board behind it.
template <typename Handler>
auto Guarded(Handler handler) {
  return [handler = std::move(handler)](auto&&... arguments) mutable {
    try {
      handler(std::forward<decltype(arguments)>(arguments)...);
    } catch (const ProcessEnded&) {  // the end has been recorded by whoever threw it
    }
  };
}

}  // namespace zth::platform
