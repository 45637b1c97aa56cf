#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
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

/// What the board's adapter drives besides the chips.
enum class BoardPart : std::uint8_t { Heater, Switches };

/// A heater or a device of switches that was set.
struct BoardTouched {
  BoardPart part = BoardPart::Heater;
  std::uint8_t number = 0;  ///< the heater, 1 or 2; the switches' address on the bus
  /// Percent of a heater, a byte of the switches. Empty if it was never read before it was set.
  std::optional<std::uint8_t> before;
  std::uint8_t after = 0;  ///< what was set last
};

/// The address in the key of an action that has set nothing but the board.
inline constexpr std::uint8_t kBoardOnly = 0;

/// Something that was done: all writes of one action of the user.
struct Action {
  ChipKey chip;
  std::string who;
  double ended = 0;  ///< monotonic clock, seconds
  std::uint64_t serial = 0;
  bool isEarlier = false;                ///< of an earlier session: `ended` says nothing
  std::vector<Touched> registers;        ///< each once, in the order of their first writes
  std::vector<BoardTouched> board = {};  ///< likewise

  /// Whether it has changed that chip, or the board that the chip is reached through.
  bool Concerns(const ChipKey& key) const { return chip == key || (!board.empty() && chip.mode == key.mode); }
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

  /// The same of the board that the link reaches.
  std::vector<BoardTouched> BoardChangesOf(std::int16_t mode) const;

  /// Puts the actions of an earlier session, which did not end in order, before those of this one.
  void Adopt(std::vector<Action> earlier);

  /// Counts every change of the actions.
  std::uint64_t Revision() const { return revision_; }

  /// Takes the last action out of the list: its values have been put back.
  void Forget(const Action& action);
  /// Takes all changes of a chip's registers out of the list.
  void ForgetAll(const ChipKey& chip);
  /// Takes all that was set on a link's board out of the list.
  void ForgetBoard(std::int16_t mode);

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
  void SawBoard(const TrafficRecord& record, const std::string& who);
  void EnterBoard(const TrafficRecord& record, const std::string& who, BoardPart part);
  Action& ActionOf(const TrafficRecord& record, const ChipKey& chip, const std::string& who);
  void RemoveEmpty();

  std::vector<Action> actions_;
  std::map<ChipKey, Known> known_;
  std::map<std::pair<BoardPart, std::uint8_t>, std::uint8_t> knownOfBoard_;
  int paused_ = 0;
  std::uint64_t revision_ = 0;
  std::shared_ptr<void> listening_;
};

}  // namespace zth::tasks
