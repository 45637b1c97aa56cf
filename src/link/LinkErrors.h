#pragma once

#include <functional>

#include "platform/Services.h"

/// The one road of a link failure: a box, then the orderly end of the program.
namespace zth::link {

/// Codes of ReportLinkError.
enum LinkError : int {
  kFirmwareFailed = 0,
  kSmbusEnableFailed = 1,
  kConnectionFailed = 2,
  kCommunicationsInterrupted = 3,
  kDeviceNotFound = 4,
  kHeaterError = 5,
};

/// Hands the link what it needs to report a failure. `closeAllWindows` closes each open window through its normal
/// closing step; no such step touches the link.
void Attach(platform::Services& services, std::function<void()> closeAllWindows);

/// Shows the code's box, closes every window and ends the process; a code without a box ends it all the same. Returns
/// only for kHeaterError answered with No. From its first line to its return no operation reaches a transport.
void ReportLinkError(int code);

/// False while a failure is being reported and after the program has ended: the master timer holds its jobs, and a
/// handler that runs underneath the box gets 0 from every operation. After the end of the process, where a test keeps
/// it from ending, it ends again.
bool LinkOpen();

/// The same question without ending anything: for the timer.
bool LinkHeld();

}  // namespace zth::link
