#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "tasks/Traffic.h"

/// What this session has changed in each chip's registers. Follows the traffic and makes no transfer.
namespace zth::tasks {

/// A chip by its link and address, as in link::ChipId.
struct ChipKey {
  std::int16_t mode = 0;
  std::uint8_t address = 0;

  bool operator==(const ChipKey&) const = default;
  bool operator<(const ChipKey& other) const { return std::tie(mode, address) < std::tie(other.mode, other.address); }
};

/// A register that was written, or that the chip may have changed because another one was written.
struct Touched {
  std::uint8_t reg = 0;
  std::optional<std::uint8_t> before;  ///< its value before the first of the writes; empty if it was never read
  std::optional<std::uint8_t> after;   ///< what was written last; empty if only the chip has changed it
};

/// Something that was done: all writes of one action of the user.
struct Action {
  ChipKey chip;
  std::string who;
  double ended = 0;  ///< monotonic clock, seconds
  std::uint64_t serial = 0;
  bool isEarlier = false;          ///< of an earlier session: `ended` says nothing
  std::vector<Touched> registers;  ///< each once, in the order of their first writes
};

class Journal {
 public:
  /// `traffic` must outlive the journal.
  explicit Journal(Traffic& traffic);

  /// What was done and has not been undone, oldest first.
  const std::vector<Action>& Actions() const { return actions_; }

  /// The sum of a chip's actions, in the order in which the registers were last written. A register that has its old
  /// value again is left out.
  std::vector<Touched> ChangesOf(const ChipKey& chip) const;

  /// Puts the actions of an earlier session, which did not end in order, before those of this one.
  void Adopt(std::vector<Action> earlier);

  /// Counts every change of the actions.
  std::uint64_t Revision() const { return revision_; }

  /// Takes the last action out of the list: its values have been put back.
  void Forget(const Action& action);
  /// Takes all actions of a chip out of the list.
  void ForgetAll(const ChipKey& chip);

  /// While such an object exists, writes are no actions: they put something back.
  class Pause {
   public:
    explicit Pause(Journal& journal) : journal_(journal) { ++journal_.paused_; }
    ~Pause() { --journal_.paused_; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    Journal& journal_;
  };

 private:
  using Known = std::array<std::optional<std::uint8_t>, 256>;

  void Saw(const TrafficRecord& record, const std::string& who);
  void EnterWrite(const TrafficRecord& record, const std::string& who);
  Action& ActionOf(const TrafficRecord& record, const std::string& who);

  std::vector<Action> actions_;
  std::map<ChipKey, Known> known_;
  int paused_ = 0;
  std::uint64_t revision_ = 0;
  std::shared_ptr<void> listening_;
};

}  // namespace zth::tasks
