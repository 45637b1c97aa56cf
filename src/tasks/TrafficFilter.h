#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tasks/Traffic.h"

namespace zth::tasks {

/// Which records of the traffic are shown. All conditions must be met; a mark has to meet only that of the text.
struct TrafficFilter {
  /// Found anywhere in the record's words but its time, whatever the case; "0x21" means 21h. Of a block, an address
  /// also finds the registers between. Empty: any.
  std::string text = {};
  bool writesOnly = false;
  bool withoutMonitor = false;  ///< leaves out what the program reads by itself
  bool failuresOnly = false;
  std::string source = {};  ///< as SourceOf gives it; empty: any

  bool operator==(const TrafficFilter&) const = default;
  bool ShowsAll() const { return *this == TrafficFilter{}; }
};

/// Applies a filter to the records of one traffic, and remembers what the same words have given before: thousands of
/// records differ only in their time.
class TrafficMatcher {
 public:
  TrafficMatcher(const Traffic& traffic, TrafficFilter filter);

  bool Matches(const TrafficRecord& record);

 private:
  enum class Known : std::uint8_t { No, Yes, Unknown };
  struct Asker {
    bool isKnown = false;
    bool isWanted = false;
    bool hasText = false;
  };

  const Asker& AskerOf(const TrafficRecord& record);
  bool HasText(const TrafficRecord& record);
  bool HasName(unsigned reg);
  bool HasField(unsigned reg, std::uint8_t value);
  bool Contains(std::string_view words) const;

  const Traffic* traffic_;
  TrafficFilter filter_;
  int number_ = -1;  ///< the text as an address, "21h"; -1 for any other text
  std::vector<Asker> askers_;
  std::array<Known, 256> names_{};
  std::vector<Known> fields_;  ///< by register and value
  std::string words_;
};

}  // namespace zth::tasks
