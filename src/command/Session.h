#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QString>

#include "command/CommandLine.h"
#include "command/Failure.h"
#include "command/Names.h"
#include "command/Output.h"
#include "link/ChipId.h"
#include "platform/Services.h"

namespace zth::command {

/// What each command is given before there is a connection.
struct Setting {
  platform::Services& services;
  Output& output;
};

/// A value that has been read.
struct Sample {
  const Target* target = nullptr;
  std::optional<std::size_t> row;  ///< of a reading
  double value = 0;                ///< in the unit; of a register or a field its number
  unsigned raw = 0;                ///< the whole register, or the bytes of a reading
  bool isStale = false;            ///< the read failed, and there is no value
};

/// One connection to one chip. Each transfer may throw Failure: when it fails, and when a signal has ended the command.
class Session {
 public:
  Session(Setting setting, Options options);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Takes the board's libraries, so that loading them finds these. Makes no transfer.
  static void TakeBoard(const std::string& board, platform::Services& services);
  /// The text of a chip in the list of chips. Throws Failure if `device` names none.
  static std::string ChipOf(const std::string& device);

  /// Finds the chips, with the transfers and the waits of the program's own start, and takes one.
  void Start();
  const std::vector<QString>& Chips() const { return chips_; }
  /// Those that the user means: the one of --device, or else all that were found.
  std::vector<link::ChipId> ChipsMeant() const;

  unsigned Read(std::uint8_t reg);
  void Write(std::uint8_t reg, unsigned value);
  /// Read-modify-write.
  void Modify(std::uint8_t reg, base::BitField bits, unsigned value);
  /// The pins' configuration, once for each connection.
  void ReadPins();
  /// A group of readings (chip/Freshness.h), and before the first duties the chip's revision. If `goesOn`, a read that
  /// fails over SMBus leaves the group stale.
  void ReadGroup(int group, bool goesOn = false);

  /// Reads what the targets stand for, each group of readings once. A group as a whole leaves out what the chip's pins
  /// do not provide. If `goesOn`, a failed read of a group over SMBus gives stale samples.
  std::vector<Sample> Take(const std::vector<Target>& targets, bool goesOn = false);

  /// Waits, and ends early by Failure at a signal.
  void Wait(double seconds);
  double Now() const { return setting_.services.clock.Now(); }

  /// "21h = 31h, ...": what has been written so far, in order; empty if nothing.
  const std::string& Writes() const { return writes_; }

  const Output& Out() const { return setting_.output; }
  platform::Services& Services() const { return setting_.services; }

 private:
  void Check() const;
  void Attach();
  void Record();
  void Select();
  void Note(std::uint8_t reg, unsigned value);

  Setting setting_;
  Options options_;
  std::vector<QString> chips_;
  std::string writes_;
  std::array<std::uint8_t, 256> bytes_{};  ///< of the chip's registers, as last read
  std::shared_ptr<void> listening_;
  bool hasPins_ = false;
  bool hasRevision_ = false;
  std::shared_ptr<bool> ended_ = std::make_shared<bool>(false);
};

}  // namespace zth::command
