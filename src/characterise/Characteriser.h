#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "characterise/Characterisation.h"
#include "platform/Services.h"

/// Measures fans, heat and the chip's controller, as steps that are driven by ticks. For the user-interface thread
/// only.
namespace zth::characterise {

class Run;

/// One run on the chip in use. No call waits. A tick makes few transfers: what the step needs, and readings that nobody
/// else has made for a while; what the monitor has read is used as it is.
class Characteriser {
 public:
  /// `services` must outlive it. Makes no transfer.
  explicit Characteriser(platform::Services& services);
  /// A run that is going on is aborted, as by `Abort`.
  ~Characteriser();
  Characteriser(const Characteriser&) = delete;
  Characteriser& operator=(const Characteriser&) = delete;

  /// Begins a run. It may end at once with `Ending::Refused`. If another one is going on, nothing happens. If another
  /// chip is selected later, the run ends, and puts back on its own chip.
  void Start(const Settings& settings);

  /// Goes on. To be called about every 50 ms; does nothing if no run is going on.
  void Tick();

  /// Ends the run at its next tick; putting back takes some ticks more.
  void Cancel();

  /// Ends the run now, and puts everything back within this call. If the link is closed already, makes no transfer and
  /// says what was left. For a window that closes.
  void Abort();

  bool IsRunning() const;

  double Progress() const;     ///< 0 to 1; estimated, never falls
  double SecondsLeft() const;  ///< estimated
  std::string Words() const;   ///< what it does now: "Fans: 45 % down, settling"

  /// Grows while the run goes on; whole once `ending` is not Running. Valid until the next Start.
  const Characterisation& Data() const;

  /// Whether the run has set the register, or will, and puts it back. Of the chip in use at `Start`.
  bool Owns(std::uint8_t reg) const;
  bool OwnsHeater(int heater) const;
  /// Likewise, for all of them.
  std::vector<std::uint8_t> Owned() const;

  /// Called once for each run that has ended, from the tick or the call that ended it.
  void OnFinished(std::function<void()> finished);

 private:
  void NoteEnd();

  platform::Services& services_;
  std::unique_ptr<Run> run_;
  std::function<void()> finished_;
  Characterisation empty_;
};

}  // namespace zth::characterise
