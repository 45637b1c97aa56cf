#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "linux-smbus/AbsentChips.h"
#include "linux-smbus/I2cSystem.h"
#include "linux-smbus/Journal.h"
#include "linux-smbus/Settings.h"

namespace zth::smbus {

/// The result of a read that nothing answers: the level of an undriven bus.
inline constexpr std::uint8_t kNoAnswer = 0xFF;

/// Addresses that are never accessed: those reserved by the bus at both ends, and those of memory modules' data and
/// write protection. One stray byte there can leave a PC unable to start.
constexpr bool IsForbidden(std::uint8_t address) {
  return address < 0x08 || address > 0x77 || (address >= 0x30 && address <= 0x37) ||
         (address >= 0x50 && address <= 0x57);
}

/// The PC's SMBus hosts as one bus of byte-data transfers.
///
/// An address belongs to the first adapter, in the order chosen, on which something is there: a chip that answers, or
/// a kernel driver that holds it. From its first answer on a chip stays with its adapter, so that a transfer that fails
/// can never turn up the value of another chip on another bus.
///
/// Failures reach the caller as kNoAnswer, and as a count for each address. Each is told once for an adapter, an
/// address and an errno.
///
/// A transfer that times out holds its caller for as long as that takes. So an adapter with three time-outs in a row is
/// left alone for a second, and told of once: its transfers fail at once meanwhile. One transfer then tries again.
///
/// That no chip is at an address which is asked for the first time is no failure: what a search finds empty makes one
/// line of the log.
class HostBus {
 public:
  /// The system and the journal must outlive the bus.
  HostBus(I2cSystem& system, Journal& journal, Settings settings);
  ~HostBus();
  HostBus(const HostBus&) = delete;
  HostBus& operator=(const HostBus&) = delete;

  /// Chooses the adapters and opens each once. If none could be opened, reports the reason and its remedy; a later call
  /// then tries again. Does nothing once an adapter is open.
  void Detect();
  /// What the transfers go to, as "SMBus I801 adapter at f040 (i2c-0)": the adapters in use, joined by commas. Empty
  /// before detection and when there is none.
  std::string Name() const;
  /// What the last detection has met with that keeps adapters from being used, and what helps: lines, empty when there
  /// was nothing.
  const std::string& Trouble() const { return trouble_; }
  /// One byte-data read. Calls Detect first if nobody has.
  std::uint8_t Read(std::uint8_t address, std::uint8_t reg);
  /// One byte-data write. Calls Detect first if nobody has.
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value);
  /// Transfers with an address that no chip took, since the start: those that were never put on a bus as well.
  std::int32_t Failures(std::uint8_t address) const { return failures_.at(address); }

 private:
  struct Port {
    Adapter adapter;
    int descriptor = 0;
    bool isGone = false;
    int timeOuts = 0;                   ///< in a row
    std::chrono::nanoseconds rests{0};  ///< nothing is put on the bus before
    bool restTold = false;
  };
  enum class Direction { Read, Write };
  struct Transfer {
    Direction direction;
    std::uint8_t address, reg, value;
    bool isFirst = false;  ///< the address was never asked before
  };

  void Open(const Adapter& adapter);
  void TellTrouble(const std::string& text);
  /// The byte read, 0 after a write, nothing if no chip accepted the transfer.
  std::optional<std::uint8_t> Run(Transfer transfer);
  std::optional<std::uint8_t> RunCounted(const Transfer& transfer);
  /// Like Run, on one port: a value of 0 or above, or -errno. `isHeld` is set if a kernel driver holds the address.
  int RunOn(Port& port, const Transfer& transfer, bool& isHeld);
  void LookAfter(Port& port);
  bool Rests(const Port& port);
  void Rest(Port& port);
  void NoteAbsent();
  void TellFailure(const Port& port, const Transfer& transfer, int error, bool isHeld);

  I2cSystem& system_;
  Journal& journal_;
  Settings settings_;
  bool hasDetected_ = false;
  std::string trouble_;
  std::vector<Port> ports_;
  std::array<std::optional<std::size_t>, 128> owner_{};  ///< the port of each address that has answered
  std::set<std::tuple<int, std::uint8_t, int>> told_;    ///< adapter, address, errno
  std::array<std::int32_t, 256> failures_{};             ///< by address; begins anew rather than end below 0
  AbsentChips absent_;
  unsigned transfersUntilLook_ = 0;
};

}  // namespace zth::smbus
