#pragma once

#include <array>
#include <cstdint>

#include "simulator/Bus.h"
#include "simulator/Settings.h"

namespace zth::simulator {

/// A PC's SMBus with boards on it, as seen through the closed library `smbus`. A failed read gives 0xFF, a failed write
/// is lost, and both are counted. A transfer fails when the fault plan says so, or when no chip answers at the address.
class SmbusHost {
 public:
  explicit SmbusHost(const Settings& settings) : bus_(settings, Link::Smbus) {}

  std::uint8_t Read(std::uint8_t address, std::uint8_t reg) {
    return GetsThrough(address, reg) ? bus_.Read(address, reg) : std::uint8_t{0xFF};
  }
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
    if (GetsThrough(address, reg)) bus_.Write(address, reg, value);
  }

  /// Failed transfers to an address since the start.
  std::int32_t Failures(std::uint8_t address) const { return failures_.at(address); }

  Bus& TheBus() { return bus_; }

 private:
  bool GetsThrough(std::uint8_t address, std::uint8_t reg) {
    const bool done = bus_.Admit({0, reg, 1}) && bus_.Answers(address);
    if (!done) failures_.at(address) = (failures_.at(address) + 1) & 0x7FFFFFFF;
    return done;
  }

  Bus bus_;
  std::array<std::int32_t, 256> failures_{};
};

}  // namespace zth::simulator
