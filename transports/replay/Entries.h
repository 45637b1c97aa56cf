#pragma once

#include <cstdint>

#include "replay/Session.h"

/// What the two libraries that answer from a recording have in common.
namespace zth::replay {

/// A library's session and the link that it answers for.
template <typename Link>
struct Library {
  Library(std::int16_t mode, const char* name) : session(mode, name) {}
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  Session session;
  Link link{[this](const tasks::TrafficRecord& request) { return session.Answer(request); }};
};

/// The library's session, for the entries that both have. Each library defines it.
Session& TheSession();

}  // namespace zth::replay
