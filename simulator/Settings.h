#pragma once

#include <cstdint>
#include <vector>

#include "simulator/FaultPlan.h"
#include "simulator/Plant.h"

namespace zth::simulator {

/// The board name that both libraries report.
inline constexpr char kBoardName[] = "Simulated board";

/// The settings of the simulated libraries. The defaults give one board without faults on each link.
struct Settings {
  std::uint64_t seed = 4718;
  double ambientC = 25;
  double timeFactor = 1;      ///< simulated seconds per real second
  std::uint8_t revision = 0;  ///< of every chip, register 0x3F
  int fanPulses = 2;          ///< tach pulses of the fans per revolution
  double noise = 1;           ///< scale of noise and ripple, 0 for none
  bool diodeAtD2Connector = true;
  PlantOptions plant{};  ///< fans and heat; what is said above is not taken from here

  std::vector<std::uint8_t> usbChips{0x58};
  std::vector<std::uint8_t> smbusChips{0x2C};
  bool firmwareRefused = false;
  int connectAtTry = 1;  ///< the first connect request that succeeds

  /// Written to every chip at power-up, as a PC's firmware does: addresses and values in turn.
  std::vector<std::uint8_t> setUp{};

  FaultPlan faults{};
};

}  // namespace zth::simulator
