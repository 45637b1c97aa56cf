#include "link/LinkErrors.h"

#include <array>

#include "base/Product.h"

namespace zth::link {
namespace {

struct Reporter {
  platform::Services* services = nullptr;
  std::function<void()> closeAllWindows;
  bool held = false;
  bool ended = false;
};

Reporter reporter;

constexpr std::array kMessages{
    "Firmware failed to download - Check USB connections",
    "SMBus enable error  - Check USB connections",
    "Initial Connection Failed - Check USB connections",
    "Communications Interrupted - Check USB connections",
    "Device not found - Check USB connections",
    "Error in Heater Module -  Do you wish to close the application?",
};

platform::BoxAnswer AskAbout(int code) {
  const bool heater = code == kHeaterError;
  return reporter.services->prompts.Ask({base::kTitle, kMessages[static_cast<std::size_t>(code)],
                                         heater ? platform::BoxIcon::None : platform::BoxIcon::Critical,
                                         heater ? platform::BoxButtons::YesNo : platform::BoxButtons::Ok});
}

}  // namespace

void Attach(platform::Services& services, std::function<void()> closeAllWindows) {
  reporter = {&services, std::move(closeAllWindows)};
}

void Detach() {
  reporter = {};
}

void ReportLinkError(int code) {
  // A box lets events run: what they start must not reach the board, and a second failure must not open a second box.
  if (reporter.held || reporter.services == nullptr) return;
  reporter.held = true;
  if (code >= 0 && code < static_cast<int>(kMessages.size())) {
    const platform::BoxAnswer answer = AskAbout(code);
    if (code == kHeaterError && answer != platform::BoxAnswer::Yes) {
      reporter.held = false;
      return;
    }
  }
  if (reporter.closeAllWindows) reporter.closeAllWindows();
  reporter.ended = true;
  reporter.services->process.End(1);
}

bool LinkOpen() {
  if (reporter.ended) reporter.services->process.End(1);
  return !reporter.held;
}

bool LinkHeld() {
  return reporter.held;
}

}  // namespace zth::link
