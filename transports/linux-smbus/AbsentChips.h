#pragma once

#include <bitset>
#include <cstdint>
#include <string>

namespace zth::smbus {

/// Collects addresses where the first transfer found no chip, to report them together: a search over all addresses
/// finds most of them empty, and one line for each would bury what matters.
class AbsentChips {
 public:
  /// Call before a transfer to an address. True when the address had a transfer before: that is no search, so report
  /// what has been collected.
  bool Asks(std::uint8_t address) {
    const bool again = asked_.test(address);
    asked_.set(address);
    return again;
  }
  void Add(std::uint8_t address) { absent_.set(address); }

  /// Returns the collected addresses as "0x10 to 0x2B, 0x2D" and forgets them; empty when there are none.
  std::string Take();

 private:
  std::bitset<128> asked_;
  std::bitset<128> absent_;
};

}  // namespace zth::smbus
