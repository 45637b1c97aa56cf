#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tasks/TrafficRecord.h"
#include "tasks/TrafficText.h"

namespace zth::tasks {

/// The longest recording that is read, in bytes: several hours of all windows polling. A longer one is a mistake, and
/// reading it would take the user's time for nothing.
inline constexpr std::int64_t kMostTrafficBytes = 256LL * 1024 * 1024;

/// Reads a recording, one call or note at a time. Holds one piece of the file and no more.
///
///   TrafficReader reader([&] { return the next bytes of the file, none at its end });
///   while (reader.Next()) Use(reader.Record(), reader.Text());
///   if (!reader.Fault().empty()) Tell(reader.Fault());
class TrafficReader {
 public:
  using Source = std::function<std::string()>;

  /// `longest`: bytes in the file at most.
  explicit TrafficReader(Source source, std::int64_t longest = kMostTrafficBytes);

  /// Reads on to the next call or note. False at the end of the file, or at a fault.
  bool Next();

  /// The call or note. Its time is that of the file, which usually begins at 0; a note has that of the line before it.
  const TrafficRecord& Record() const { return record_; }
  /// Who asked, or the note. Valid until Next.
  std::string_view Text() const { return text_; }
  /// Its line in the file, from 1.
  std::int64_t Line() const { return line_; }

  /// What the head has said so far. Complete once Next has been called, but for whether failures are known, which is
  /// said before the first call of the SMBus.
  const TrafficHead& Head() const { return head_; }

  /// Why the file cannot be read on: "line 12: there is no result". Empty if nothing is wrong.
  const std::string& Fault() const { return fault_; }

 private:
  bool NextLine(std::string_view& line);
  /// Looks at a line that is no call. True if it is a note.
  bool TakeComment(std::string_view line);
  void TakeStart(std::string_view rest);
  bool Fail(std::string_view why);

  Source source_;
  std::int64_t longest_;    ///< bytes
  std::int64_t taken_ = 0;  ///< bytes
  std::string piece_;
  std::size_t at_ = 0;  ///< where the next line begins in the piece
  bool isAtEnd_ = false;
  std::int64_t line_ = 0;
  TrafficHead head_;
  TrafficRecord record_;
  std::string_view text_;
  std::string fault_;
};

}  // namespace zth::tasks
