#pragma once

#include <cstdint>
#include <optional>

#include "link/Declarations.h"

/// Counts transfers and failed transfers, and shows each call to the observer.
namespace zth::link {

/// Called once for each transfer as it is sent, whatever its form and link: a byte over SMBus, or a request to the USB
/// adapter.
inline void NoteTransfer() {
  ++Bus.transfers;
}

/// Shows a call that has just ended to the observer, if there is one. Adds the time that TransferTime measured and the
/// asker of the moment.
inline void ShowCall(Call call) {
  if (Bus.observer == nullptr) return;
  call.began = Bus.wait.lastBegan;
  call.took = Bus.wait.lastTransfer;
  call.asker = Bus.asker;
  Bus.observer->Saw(call);
}

/// Failed transfers of a bus address over SMBus since the start. Nothing when the library does not count them.
std::optional<std::int32_t> SmbusFailuresOf(std::uint8_t address);

/// Failed transfers since the start: those of the chip in use on SMBus, all of them on USB. Nothing when the link's
/// library does not count them, or without a link. Makes no transfer.
std::optional<std::int32_t> FailedTransfers();

/// Tells whether a transfer has failed since the watch was made. When the library does not count failures it says no,
/// and the library's values are taken as they are.
class FailureWatch {
 public:
  FailureWatch() : before_(FailedTransfers()) {}

  bool Failed() const;

 private:
  std::optional<std::int32_t> before_;
};

}  // namespace zth::link
