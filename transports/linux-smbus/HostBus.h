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
/// An address belongs to the first adapter, in the chosen order, with something at that address: a chip that answers,
/// or a kernel driver that holds it. Once a chip has answered it stays with its adapter, so that after a failed
/// transfer its value can never come from another chip on another bus.
///
/// The caller gets a failure as kNoAnswer and in a counter for each address. The log gets one line for each combination
/// of adapter, address and errno.
///
/// A transfer that times out blocks its caller for that time. So after three time-outs in a row an adapter is not used
/// for a second, which is logged once. Meanwhile its transfers fail at once. Then one transfer tries again.
///
/// When no chip answers the first transfer to an address, that is not a failure: all the addresses that a search finds
/// empty share one line of the log.
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
  /// The adapters in use, separated by commas: "SMBus I801 adapter at f040 (i2c-0)". Empty before detection and when
  /// there is none.
  std::string Name() const;
  /// Why the last detection could not use adapters, and the remedies, in lines; empty when there was no problem.
  const std::string& Trouble() const { return trouble_; }
  /// One byte-data read. Calls Detect first if nobody has.
  std::uint8_t Read(std::uint8_t address, std::uint8_t reg);
  /// One byte-data write. Calls Detect first if nobody has.
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value);
  /// Transfers to an address since the start that no chip accepted, including those that were never put on a bus.
  std::int32_t Failures(std::uint8_t address) const { return failures_.at(address); }

 private:
  struct Port {
    Adapter adapter;
    int descriptor = 0;
    bool isGone = false;
    int timeOuts = 0;                   ///< in a row
    std::chrono::nanoseconds rests{0};  ///< nothing is put on the bus before this time
    bool restTold = false;
  };
  enum class Direction { Read, Write };
  struct Transfer {
    Direction direction;
    std::uint8_t address, reg, value;
    bool isFirst = false;  ///< first transfer to this address
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
  std::array<std::int32_t, 256> failures_{};             ///< by address; wraps to 0 instead of becoming negative
  AbsentChips absent_;
  unsigned transfersUntilLook_ = 0;
};

}  // namespace zth::smbus
