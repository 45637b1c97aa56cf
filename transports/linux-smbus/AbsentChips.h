#pragma once

#include <bitset>
#include <cstdint>
#include <string>

namespace zth::smbus {

/// The addresses that were asked for the first time and no chip was at, until they are told together: a search over all
/// addresses finds most of them empty, and a line for each would bury what matters.
class AbsentChips {
 public:
  /// An address is about to be asked. True when it was before, which a search does not do: what has come together is
  /// due.
  bool Asks(std::uint8_t address) {
    const bool again = asked_.test(address);
    asked_.set(address);
    return again;
  }
  void Add(std::uint8_t address) { absent_.set(address); }

  /// "0x10 to 0x2B, 0x2D", and forgets them; empty when there are none.
  std::string Take();

 private:
  std::bitset<128> asked_;
  std::bitset<128> absent_;
};

}  // namespace zth::smbus
