#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "simulator/Board.h"
#include "simulator/PinModel.h"

namespace zth::simulator {

/// The kinds of faults.
enum class FaultKind : std::uint8_t {
  TransferFails,     ///< `count` transfers fail, 0 for all from then on
  TransferSlow,      ///< transfers take `milliseconds` longer
  RegisterStuck,     ///< a register of the chip reads `value`, and writes to it are lost
  BitFlipped,        ///< a register of the chip reads with bit `value` inverted
  FanStalled,        ///< rotor `index`, 0 to 7, is blocked
  HeaterStuck,       ///< heater `index`, 0 or 1, is stuck at `value` percent
  DiodeOpen,         ///< diode `index`, 1 to 3, is open
  SupplyFactor,      ///< the supply of `pin` is at `value` percent of its proper voltage
  ThermLow,          ///< THERM pin `index`, 0 or 1, is pulled low from outside
  VrHot,             ///< regulator `index`, 0 or 1, reports overheating
  Pin27Asserted,     ///< the case is open, or the FANMAX input is asserted, depending on the pin's function
  GpioLow,           ///< GPIO pin `index`, 0 to 7, is pulled low
  FanWorn,           ///< fan `index`, 0 to 7, turns at `value` percent of its healthy speed
  TachNoisy,         ///< pulses of tach `index`, 0 to 7, come early or late by up to `value` percent
  TachMisses,        ///< `value` percent of the pulses of tach `index`, 0 to 7, are missing
  SensorDrifts,      ///< sensor `index`, 0 to 3, drifts by `value` degrees a minute
  SensorFrozen,      ///< sensor `index`, 0 to 3, keeps its value
  AmbientAt,         ///< the air is at `value` degrees C
  AmbientDrifts,     ///< the air warms by `value` degrees a minute
  VidCode,           ///< the VID pins carry `value`, 0 to 0x3F
  AdapterUnplugged,  ///< all transfers fail
};

/// The two links to a board.
enum class Link : std::uint8_t { Usb, Smbus };

/// One line of a plan.
struct Fault {
  FaultKind kind = FaultKind::TransferFails;
  std::chrono::nanoseconds from{0};               ///< simulated time since the library was loaded
  std::optional<std::chrono::nanoseconds> until;  ///< empty: never ends
  std::optional<Link> link;                       ///< empty: on both
  int index = 0;
  double value = 0;
  int count = 0;
  int milliseconds = 0;
  VoltagePin pin = VoltagePin::P7;
  std::optional<int> request;  ///< only transfers of this vendor request
  std::optional<int> address;  ///< the register affected, or only transfers that include it
};

using FaultPlan = std::vector<Fault>;

/// A transfer as seen by the plan. A block covers `count` registers from `first` on; -1 means no register.
struct Transfer {
  int request = 0;  ///< vendor request; 0 on SMBus
  int first = -1;
  int count = 0;
};

/// A fault plan as time advances.
class FaultClock {
 public:
  /// Uses the lines that apply to a link.
  FaultClock(const FaultPlan& plan, Link link);

  /// The faults on the board at a given time.
  BoardFaults OnBoard(std::chrono::nanoseconds now) const;
  bool Unplugged(std::chrono::nanoseconds now) const;

  /// Checks and counts one transfer: true if it fails.
  bool Fails(std::chrono::nanoseconds now, const Transfer& transfer);
  /// The extra duration of the transfer.
  std::chrono::milliseconds Delay(std::chrono::nanoseconds now, const Transfer& transfer) const;

  /// What the bus reads from a register that contains `value`.
  std::uint8_t Seen(std::chrono::nanoseconds now, std::uint8_t address, std::uint8_t value) const;
  /// True if writes to the register are lost.
  bool WriteLost(std::chrono::nanoseconds now, std::uint8_t address) const;

 private:
  FaultPlan plan_;
  std::vector<int> left_;  ///< transfers that will still fail, by line of the plan
};

}  // namespace zth::simulator
