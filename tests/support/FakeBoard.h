#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Services.h"

namespace zth::testing {

/// Transfers in order, each as a short text:
///
///   "usb R 58:3E"      read of a register            "smb R 2C:3E"
///   "usb W 58:21=AB"   write of a register           "smb W 2C:21=AB"
///   "usb B 58:88+8"    block read of 8 from 0x88     (SMBus has none)
///   "usb P 4A"         read of a switch port         "usb P 4A=3F"    write of it
///   "usb D 4A=3C"      the write with a length of 1  "usb H"          heater state block
///   "usb H 1=50"       heater 1 at 50 percent        "usb C 30:33"    connect
///   "usb F <path>"     firmware download             "smb detect"
///
/// A request whose direction, length or buffer is not that of its form shows as "usb ? ..." with all its arguments.
using Traffic = std::vector<std::string>;

/// The entries of the two closed libraries, as the board behind them answers.
class BoardEntries {
 public:
  virtual ~BoardEntries() = default;
  virtual std::int16_t LoadFirmWare(const char* path) = 0;
  virtual std::int16_t VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index,
                                       std::int16_t direction, std::int16_t length, std::uint8_t* buffer) = 0;
  virtual void DetectSmbus() = 0;
  virtual std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) = 0;
  virtual void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) = 0;
  virtual std::int32_t SmbusFailures(std::uint8_t address) = 0;

  /// The board name and the trouble that a library reports, by the name of the library. A library that is not listed
  /// does not export BoardName or BoardTrouble, as a maker's library.
  std::map<QString, std::string> boardNames;
  std::map<QString, std::string> boardTroubles;
};

/// A library ("USBFunctions", "smbus") whose calls go to `board` until the next library is made. It does not export the
/// entries in `missing`.
std::shared_ptr<platform::Library> LibraryOf(BoardEntries& board, const QString& name,
                                             const std::set<std::string>& missing = {});

/// The default registers of the chip, with a Company ID and a revision that does not invert duties.
std::array<std::uint8_t, 256> DefaultRegisters();

/// A board with a register file for each chip address, behind both closed libraries, that records every call. Registers
/// are plain memory: what is written is read back.
class FakeBoard final : public BoardEntries {
 public:
  using Registers = std::array<std::uint8_t, 256>;

  FakeBoard() = default;
  FakeBoard(const FakeBoard&) = delete;
  FakeBoard& operator=(const FakeBoard&) = delete;

  /// Puts a chip with the default registers on a bus.
  Registers& AddUsbChip(int address) { return usbChips[address] = DefaultRegisters(); }
  Registers& AddSmbusChip(int address) { return smbusChips[address] = DefaultRegisters(); }

  /// The result of loading a library: its entries, or an error. The two names are "USBFunctions" and "smbus".
  platform::LoadedLibrary Load(const QString& name);
  std::map<QString, QString> loadErrors;

  /// Entries that the libraries do not export. By default the failure count, which a maker's library does not have.
  std::set<std::string> missingEntries{"SmbusFailures"};

  /// Which SMBus transfers fail, given as in Traffic: a read gives 0xFF, a write is lost. Every transfer to an address
  /// without a chip fails as well.
  std::function<bool(const std::string& transfer)> smbusFails;
  /// The failures that the library reports, by address; it reports -1 when `knowsFailures` is false.
  std::map<int, std::int32_t> smbusFailures;
  bool knowsFailures = true;

  /// Result of the firmware download.
  std::int16_t firmwareResult = 1;

  /// From the n-th VendorIORequest call on (the first is 0), USB calls fail with this result.
  std::optional<int> failFrom;
  /// Only that one call fails.
  std::optional<int> failOnly;
  /// Every call whose text begins with this fails.
  std::string failMatching;
  std::int16_t failure = -5;

  /// Runs during each transfer, after its line has been added to `traffic`.
  std::function<void()> onTransfer;

  /// VendorIORequest calls so far.
  int usbCalls = 0;

  Traffic traffic;
  std::map<int, Registers> usbChips;
  std::map<int, Registers> smbusChips;
  std::map<int, std::uint8_t> ports;          ///< switch devices on USB
  std::array<std::uint8_t, 3> heaterState{};  ///< the state block, as it is read

  Traffic TakeTraffic() { return std::exchange(traffic, {}); }

  /// The chip that the program is using now.
  Registers& Chip();

  std::int16_t LoadFirmWare(const char* path) override;
  std::int16_t VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                               std::int16_t length, std::uint8_t* buffer) override;
  void DetectSmbus() override { traffic.emplace_back("smb detect"); }
  std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) override;
  void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) override;
  std::int32_t SmbusFailures(std::uint8_t address) override { return knowsFailures ? smbusFailures[address] : -1; }

 private:
  /// The chip that receives an SMBus transfer; null when the transfer fails.
  Registers* Taker(int address, const std::string& transfer);
  void Note(std::string transfer);
  void Carry(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction, std::int16_t length,
             std::uint8_t* buffer);
};

/// Texts of transfers to the chip in use on the link in use, as in Traffic.
std::string R(int reg);
std::string W(int reg, int value);
Traffic B(int first, int count);

/// Joins single transfers and lists into one list.
template <typename... Items>
Traffic Concat(const Items&... items) {
  Traffic all;
  const auto add = [&all](const auto& item) {
    if constexpr (std::is_convertible_v<decltype(item), std::string>) {
      all.push_back(item);
    } else {
      all.insert(all.end(), item.begin(), item.end());
    }
  };
  (add(items), ...);
  return all;
}

}  // namespace zth::testing
