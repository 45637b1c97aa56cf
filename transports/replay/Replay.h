#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tasks/TrafficReader.h"

namespace zth::replay {

/// One link of a recording, which answers requests as they were answered then.
///
/// A request takes the next recorded answer to the same request. If the recording goes on with another request, the
/// two part. The replay then looks a little ahead, over reads only: a tick of the program's timer may have come later
/// than in the recording. If the request is not there either, it is answered from what was last read from or written to
/// the same chip, and the recording waits until the program comes to its next request.
///
/// The file is read as the replay goes on: only a few of its lines are held.
class Replay {
 public:
  using OpenSource = std::function<tasks::TrafficReader::Source()>;

  /// `open` opens the recording anew each time. `mode`: the link, as in TrafficRecord. `file`: its name in messages.
  Replay(OpenSource open, std::int16_t mode, std::string file);

  /// Answers a request: a record without time and outcome, and for a block read with its count. The answer's time is
  /// that of the recording; below 0 if it does not come from the recording's next lines.
  tasks::TrafficRecord Answer(const tasks::TrafficRecord& request);

  /// False if the recording has no call over this link, or cannot be read.
  bool HasCalls() const { return hasCalls_; }
  /// Why nothing can be replayed; otherwise where the program and the recording have parted first. Empty if neither.
  const std::string& Trouble() const { return trouble_; }
  /// Number of failed transfers with an address; negative if the recording's library did not tell.
  std::int32_t Failures(std::uint8_t address) const;

 private:
  struct Line {
    tasks::TrafficRecord record;
    std::int64_t number = 0;
  };
  /// What is known of a chip's registers, or at index 0 of a port; -1 for what is not.
  using Known = std::array<std::int16_t, 256>;

  void Survey();
  void LookAhead();
  /// The place of the request in the lines ahead; nothing if it is not there.
  std::optional<std::size_t> Find(const tasks::TrafficRecord& request) const;
  void Part(const tasks::TrafficRecord& request);
  tasks::TrafficRecord FromState(tasks::TrafficRecord request);
  Known& KnownOf(const tasks::TrafficRecord& record);
  void Learn(const tasks::TrafficRecord& record);

  OpenSource open_;
  std::int16_t mode_;
  std::string file_;
  std::string trouble_;
  bool hasCalls_ = false;
  bool knowsFailures_ = true;
  std::optional<tasks::TrafficReader> reader_;
  std::deque<Line> ahead_;
  std::int64_t lastLine_ = 0;  ///< of this link, in the file
  std::map<int, Known> known_;
  std::map<link::Form, tasks::TrafficRecord> last_;  ///< the last answers to requests without a register
  std::array<std::int32_t, 256> failures_{};
};

}  // namespace zth::replay
