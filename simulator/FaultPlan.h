#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "simulator/Board.h"
#include "simulator/PinModel.h"

namespace zth::simulator {

/// What can go wrong.
enum class FaultKind : std::uint8_t {
  TransferFails,     ///< `count` transfers fail, 0 meaning all from then on
  TransferSlow,      ///< transfers take `milliseconds` longer
  RegisterStuck,     ///< a register of the chip reads `value`, and writes to it are lost
  BitFlipped,        ///< a register of the chip reads with bit `value` the wrong way round
  FanStalled,        ///< rotor `index`, 0 to 7, is blocked
  HeaterStuck,       ///< heater `index`, 0 or 1, runs at `value` percent
  DiodeOpen,         ///< diode `index`, 1 to 3, is parted
  SupplyFactor,      ///< the supply of `pin` stands at `value` percent of what it should be
  ThermLow,          ///< somebody pulls THERM pin `index`, 0 or 1
  VrHot,             ///< regulator `index`, 0 or 1, reports heat
  Pin27Asserted,     ///< the case is open, or the FANMAX input is asserted, whichever the pin is
  GpioLow,           ///< GPIO pin `index`, 0 to 7, is pulled low
  FanWorn,           ///< fan `index`, 0 to 7, turns at `value` percent of its healthy speed
  TachNoisy,         ///< pulses of tach `index`, 0 to 7, come by up to `value` percent too fast or too slow
  TachMisses,        ///< `value` percent of the pulses of tach `index`, 0 to 7, are missing
  SensorDrifts,      ///< sensor `index`, 0 to 3, goes off by `value` degrees a minute
  SensorFrozen,      ///< sensor `index`, 0 to 3, stays where it is
  AmbientAt,         ///< the air is of `value` degrees C
  AmbientDrifts,     ///< the air warms by `value` degrees a minute
  VidCode,           ///< the VID pins carry `value`, 0 to 0x3F
  AdapterUnplugged,  ///< no transfer gets through
};

/// The two ways to a board.
enum class Link : std::uint8_t { Usb, Smbus };

/// One line of a plan.
struct Fault {
  FaultKind kind = FaultKind::TransferFails;
  std::chrono::nanoseconds from{0};               ///< simulated time since the library was loaded
  std::optional<std::chrono::nanoseconds> until;  ///< empty: for good
  std::optional<Link> link;                       ///< empty: on both
  int index = 0;
  double value = 0;
  int count = 0;
  int milliseconds = 0;
  VoltagePin pin = VoltagePin::P7;
  std::optional<int> request;  ///< only transfers of this vendor request
  std::optional<int> address;  ///< the register that it is about, or only transfers that touch it
};

using FaultPlan = std::vector<Fault>;

/// A transfer as the plan judges it. A block covers `count` registers from `first` on; none is meant by -1.
struct Transfer {
  int request = 0;  ///< vendor request; 0 on SMBus
  int first = -1;
  int count = 0;
};

/// A plan running against time.
class FaultClock {
 public:
  /// Takes the lines that hold on a link.
  FaultClock(const FaultPlan& plan, Link link);

  /// What stands on the board at a time.
  BoardFaults OnBoard(std::chrono::nanoseconds now) const;
  bool Unplugged(std::chrono::nanoseconds now) const;

  /// Judges one transfer, counting it: true when it fails.
  bool Fails(std::chrono::nanoseconds now, const Transfer& transfer);
  /// How much longer the transfer takes.
  std::chrono::milliseconds Delay(std::chrono::nanoseconds now, const Transfer& transfer) const;

  /// What the bus sees of a register that holds `value`.
  std::uint8_t Seen(std::chrono::nanoseconds now, std::uint8_t address, std::uint8_t value) const;
  /// Writes to the register are lost.
  bool WriteLost(std::chrono::nanoseconds now, std::uint8_t address) const;

 private:
  FaultPlan plan_;
  std::vector<int> left_;  ///< transfers that still fail, by line of the plan
};

}  // namespace zth::simulator
