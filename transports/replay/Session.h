#pragma once

#include <string>

#include "replay/Pace.h"
#include "replay/Replay.h"

namespace zth::replay {

/// A library's recording: the file that the environment variable ZTH4718_REPLAY names, replayed as fast as
/// ZTH4718_REPLAY_SPEED asks. Says on standard error where program and recording part.
class Session {
 public:
  /// `library`: its name in messages.
  Session(std::int16_t mode, const char* library);

  tasks::TrafficRecord Answer(const tasks::TrafficRecord& request);

  const char* BoardName() const { return name_.c_str(); }
  const char* BoardTrouble() const { return replay_.Trouble().c_str(); }
  const Replay& TheReplay() const { return replay_; }

 private:
  void Tell();

  std::string library_;
  std::string name_;
  Replay replay_;
  Pace pace_;
  std::string told_;
};

}  // namespace zth::replay
