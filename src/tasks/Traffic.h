#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "link/Tap.h"
#include "tasks/TrafficRecord.h"

namespace zth::tasks {

class Recorder;

/// The latest calls of the link, in the order in which they ended, and the user's notes between them.
///
/// Records have numbers, counted from 0 since the start and never used again. Those from First() to End() - 1 are held.
class Traffic final : public link::Observer {
 public:
  static constexpr std::size_t kMostRecords = 200'000;

  /// `most`: the records that are held.
  explicit Traffic(std::size_t most = kMostRecords) : most_(most) {}

  void Saw(const link::Call& call) override;

  /// Enters a note of the user. `now`: monotonic clock, seconds.
  void AddNote(std::string_view note, double now);

  /// Forgets all records, but no value that they have shown.
  void Clear();

  std::uint64_t First() const { return first_; }
  std::uint64_t End() const { return first_ + records_.size(); }
  const TrafficRecord& At(std::uint64_t number) const { return records_[static_cast<std::size_t>(number - first_)]; }

  /// Who asked, or the note. Empty if nobody has said who asks.
  const std::string& TextOf(const TrafficRecord& record) const { return texts_[record.text]; }

  /// Enters a record that comes from elsewhere, such as a file. `text` is who asked, or the note.
  void Add(TrafficRecord record, std::string_view text);

  /// Called with each record as it is entered, in the order in which the listeners were added. A listener must not use
  /// the link. It is removed when the returned token goes.
  using Listener = std::function<void(const TrafficRecord&, const std::string& text)>;
  [[nodiscard]] std::shared_ptr<void> Listen(Listener listener);

 private:
  /// Last known bytes of a chip's registers or a board's port; -1 for those not known.
  using Known = std::array<std::int16_t, 256>;

  void Enter(TrafficRecord& record);
  /// Takes over what a record says about registers, and completes it with the value before a write.
  void Learn(TrafficRecord& record);
  Known& KnownOf(const TrafficRecord& record);
  std::uint32_t NumberOf(std::string_view text);

  std::size_t most_;
  std::deque<TrafficRecord> records_;
  std::uint64_t first_ = 0;
  std::vector<std::string> texts_{""};
  std::unordered_map<std::string, std::uint32_t> numbers_{{"", 0}};
  std::uint64_t lastAsker_ = 0;  ///< serial; 0 is no asker's
  std::uint32_t lastText_ = 0;
  std::unordered_map<std::uint32_t, Known> known_;
  std::vector<std::weak_ptr<Listener>> listeners_;
};

/// The room's state. `Work = {}` is the state before the program has started.
struct TasksState {
  TasksState();
  ~TasksState();
  TasksState(TasksState&&) noexcept;
  TasksState& operator=(TasksState&&) noexcept;

  std::unique_ptr<Traffic> traffic;
  std::unique_ptr<Recorder> recorder;  ///< null if nothing is recorded
};

extern TasksState Work;

}  // namespace zth::tasks
