#pragma once

#include <functional>

#include "platform/Services.h"

/// Every link failure is handled here: a box, then the orderly end of the program.
namespace zth::link {

/// Codes for ReportLinkError.
enum LinkError : int {
  kFirmwareFailed = 0,
  kSmbusEnableFailed = 1,
  kConnectionFailed = 2,
  kCommunicationsInterrupted = 3,
  kDeviceNotFound = 4,
  kHeaterError = 5,
};

/// Gives the link what it needs to report a failure. `closeAllWindows` closes every open window through its normal
/// closing step; no closing step uses the link.
void Attach(platform::Services& services, std::function<void()> closeAllWindows);

/// Shows the code's box, closes every window and ends the process; a code without a box also ends it. Returns only for
/// kHeaterError answered with No. While it runs, no operation reaches a transport.
void ReportLinkError(int code);

/// Opens the link again after a report that an exception of `ask` has left, for a caller that goes on without an
/// answer.
void OpenAfterFailure();

/// False while a failure is being reported and after the program has ended. The master timer then skips its jobs, and a
/// handler that runs underneath the box gets 0 from every operation. If a test has prevented the end of the process,
/// this call ends it again.
bool LinkOpen();

/// True if a failure is being reported or the program has ended; unlike LinkOpen, never ends anything. For the timer.
bool LinkHeld();

/// While such an object exists, no failure is reported: the caller looks at each transfer with a FailureWatch
/// (Transfers.h) and says itself what has become of its work. No event may be handled in between.
class Quiet {
 public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;
};

/// Sets what is to be done once, before the next failure is reported, while the link can still be used; null for
/// nothing. It must report no failure itself. For work that must not be left half done, such as a heater that heats.
void BeforeReport(std::function<void()> step);

}  // namespace zth::link
