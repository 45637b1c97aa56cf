#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A configuration of the chip as values: read from the chip, from a file, or the chip's defaults.
namespace zth::tasks {

/// A register's value as far as it is known. Bits of `value` that are not in `known` are 0.
struct HeldByte {
  std::uint8_t value = 0;
  std::uint8_t known =
      0;  ///< the bits that are known: 0xFF as a rule, 0 if nothing is, some if a file held only fields

  bool operator==(const HeldByte&) const = default;
  bool IsWhole() const { return known == 0xFF; }
};

struct RegisterImage {
  std::string origin;  ///< for people, UTF-8: "Defaults", "58h on USB", a file's or a snapshot's name
  std::array<HeldByte, 256> bytes{};

  bool Holds(std::uint8_t reg) const { return bytes[reg].known != 0; }
  bool IsEmpty() const;

  /// Sets the bits of `known`; those known before are kept.
  void Put(std::uint8_t reg, std::uint8_t value, std::uint8_t known = 0xFF);

  bool operator==(const RegisterImage&) const = default;
};

/// The chip's defaults of all registers in its table, with the origin "Defaults". Of an address with two names the
/// first row's.
RegisterImage DefaultImage();

/// The addresses that belong in a comparison: each that can be written, once, in the order of the register table.
/// Registers that an Easy option sets are among them.
const std::vector<std::uint8_t>& ComparableRegisters();

/// All addresses of the register table that can be read without changing anything, in its order: those above, and what
/// the chip measures and tells of itself. This is what a snapshot reads.
const std::vector<std::uint8_t>& ReadableRegisters();

/// Those of `registers` that belong to a group (chip/RegisterGroups.h), "Fan, PWM". An empty text: all of them.
std::vector<std::uint8_t> OfGroup(const std::vector<std::uint8_t>& registers, const std::string& group);

/// The outcome of a reading.
struct ImageReading {
  RegisterImage image;                   ///< what was read; its origin is the chip in use, "58h on USB"
  std::vector<std::uint8_t> leftAlone;   ///< not read, because a read changes them
  std::vector<std::uint8_t> failed;      ///< their transfers failed; the image does not hold them
  std::vector<std::uint8_t> notReached;  ///< not read, because the reading was stopped
  bool WasStopped() const { return !notReached.empty(); }
};

/// Whether to go on, asked before each register with the number of those that are done. May paint; must not read or
/// write.
using GoesOn = std::function<bool(std::size_t done)>;

/// Reads registers of the chip in use, one by one in the given order. Makes no other transfer. A failed transfer that
/// ends the program over USB does so here too.
ImageReading ReadImage(const std::vector<std::uint8_t>& registers, const GoesOn& goesOn = {});

/// "42 registers read. 1 transfer failed: Easy Config (14h)." - the outcome in words, for a status line; UTF-8.
std::string ReadingWords(const ImageReading& reading);

}  // namespace zth::tasks
