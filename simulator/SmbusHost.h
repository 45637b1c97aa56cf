#pragma once

#include <cstdint>

#include "simulator/Bus.h"
#include "simulator/Settings.h"

namespace zth::simulator {

/// A PC's SMBus with boards on it, as seen through the closed library `smbus`. A failed transfer reads 0xFF, or is
/// lost.
class SmbusHost {
 public:
  explicit SmbusHost(const Settings& settings) : bus_(settings, Link::Smbus) {}

  std::uint8_t Read(std::uint8_t address, std::uint8_t reg) {
    return bus_.Admit({0, reg, 1}) ? bus_.Read(address, reg) : std::uint8_t{0xFF};
  }
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
    if (bus_.Admit({0, reg, 1})) bus_.Write(address, reg, value);
  }

  Bus& TheBus() { return bus_; }

 private:
  Bus bus_;
};

}  // namespace zth::simulator
