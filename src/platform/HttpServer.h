#pragma once

#include "platform/Pages.h"

namespace zth::platform {

/// Serves pages from a thread of its own. Whatever clients do, it holds at most kMostClients connections, each with a
/// head of at most kMostHead bytes: a new one takes the place of the one that has waited longest. A request must be
/// complete within kRequestSeconds, and an answer taken within kAnswerSeconds.
class HttpHost final : public PageHost {
 public:
  Listening Listen(const std::string& address, std::uint16_t port) override;
};

inline constexpr std::size_t kMostClients = 64;
inline constexpr double kRequestSeconds = 5;
inline constexpr double kAnswerSeconds = 10;
inline constexpr double kIdleSeconds = 75;  ///< between two requests of a connection

}  // namespace zth::platform
