#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <QDateTime>

#include "chip/ChipState.h"
#include "command/Session.h"
#include "link/ChipId.h"

namespace zth::command {

/// A chip under watch, and what is known of it while another one is in use.
struct PolledChip {
  link::ChipId id;
  std::string device;  ///< as --device takes it: "58@usb"
  std::string board;   ///< what the library says it talks to; may be empty
  chip::ChipState model;
  std::map<std::uint8_t, unsigned> status;  ///< the host's status registers as last read, if they are read
  std::int64_t transfers = 0;               ///< since the watch began
  std::optional<std::int64_t> failures;     ///< nothing if the library does not count them
  QDateTime since;                          ///< UTC: when the watch began
  QDateTime readAt;                         ///< UTC: the last good read; not valid before it
  bool isLost = false;                      ///< it does not answer, and is tried again more rarely

  bool hasPins = false;
  std::int16_t phase = 0;  ///< 0 to 5: the next group to read, minus 1
  int failedInARow = 0;
  double endedAt = 0;  ///< when the last read ended, in seconds of the clock
  double waits = 0;    ///< seconds until the next read
};

/// Reads the chips' measurements in rotation as the program's monitor does: the same transfers at the same pace for
/// each chip. A chip whose reads fail three times in a row counts as lost until one succeeds.
class Monitor {
 public:
  /// With `readsAlerts` the host's status registers are read too, behind each round.
  Monitor(Session& session, const std::vector<link::ChipId>& chips, bool readsAlerts);

  /// To be called every kTick seconds: reads what is due. Says whether anything was. Throws Failure at a signal.
  bool Tick();
  static constexpr double kTick = 0.05;

  const std::vector<PolledChip>& Chips() const { return chips_; }

  /// Calls `look` for each chip, with the chip's model in chip::Model.
  template <typename Look>
  void Each(const Look& look) {
    for (PolledChip& chip : chips_) {
      const InUse use(chip);
      look(chip);
    }
  }

 private:
  /// The chip and its model are in use while such an object lives.
  class InUse {
   public:
    explicit InUse(PolledChip& chip);
    ~InUse();
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;

   private:
    PolledChip& chip_;
    link::Meanwhile meanwhile_;
  };

  void Visit(PolledChip& chip);
  bool Read(PolledChip& chip);
  bool ReadNext(PolledChip& chip);
  bool ReadStatus(PolledChip& chip);
  void NoteSuccess(PolledChip& chip);
  void NoteFailure(PolledChip& chip);
  bool AdapterIsLost() const;

  Session& session_;
  bool readsAlerts_;
  std::vector<PolledChip> chips_;
  bool hasNewFirmware_ = false;  ///< the adapter has been given it since it last answered
};

}  // namespace zth::command
