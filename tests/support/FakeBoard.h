#pragma once

#include <array>
#include <cstdint>
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
};

/// A library whose entries call `board` until the next one is made. It does not export those in `missing`.
std::shared_ptr<platform::Library> LibraryOf(BoardEntries& board, const std::set<std::string>& missing = {});

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

  /// Entry points that the libraries do not export.
  std::set<std::string> missingEntries;

  /// Result of the firmware download.
  std::int16_t firmwareResult = 1;

  /// From the n-th VendorIORequest call on (the first is 0), USB calls fail with this result.
  std::optional<int> failFrom;
  /// Only that one call fails.
  std::optional<int> failOnly;
  /// Every call whose text begins with this fails.
  std::string failMatching;
  std::int16_t failure = -5;

  /// VendorIORequest calls so far.
  int usbCalls = 0;

  Traffic traffic;
  std::map<int, Registers> usbChips;
  std::map<int, Registers> smbusChips;
  std::map<int, std::uint8_t> ports;          ///< switch devices on USB
  std::array<std::uint8_t, 3> heaterState{};  ///< the state block, as it is read

  /// Returns the traffic so far and starts a new list.
  Traffic TakeTraffic() { return std::exchange(traffic, {}); }

  /// The chip that the program is using now.
  Registers& Chip();

  std::int16_t LoadFirmWare(const char* path) override;
  std::int16_t VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                               std::int16_t length, std::uint8_t* buffer) override;
  void DetectSmbus() override { traffic.emplace_back("smb detect"); }
  std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) override;
  void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) override;

 private:
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
