#include "link/LinkErrors.h"

#include <array>
#include <utility>

#include "base/Product.h"
#include "link/Declarations.h"

namespace zth::link {
namespace {

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
  const platform::BoxQuestion question{base::kTitle, kMessages[static_cast<std::size_t>(code)],
                                       heater ? platform::BoxIcon::None : platform::BoxIcon::Critical,
                                       heater ? platform::BoxButtons::YesNo : platform::BoxButtons::Ok};
  return Bus.reporter.ask ? Bus.reporter.ask(question) : Bus.reporter.services->prompts.Ask(question);
}

}  // namespace

void Attach(platform::Services& services, std::function<void()> closeAllWindows) {
  Bus.reporter = {&services, std::move(closeAllWindows), nullptr};
}

void ReportLinkError(int code) {
  // A box runs an event loop: handlers called in it must not reach the board, and a second failure must not open a
  // second box.
  if (Bus.reporter.held || Bus.reporter.services == nullptr || Bus.reporter.quiet > 0) return;
  if (const auto step = std::exchange(Bus.reporter.before, nullptr)) step();
  Bus.reporter.held = true;
  StopWaiting();
  if (code >= 0 && code < static_cast<int>(kMessages.size())) {
    const platform::BoxAnswer answer = AskAbout(code);
    if (code == kHeaterError && answer != platform::BoxAnswer::Yes) {
      Bus.reporter.held = false;
      return;
    }
  }
  if (Bus.reporter.closeAllWindows) Bus.reporter.closeAllWindows();
  Bus.reporter.ended = true;
  Bus.reporter.services->process.End(1);
}

void OpenAfterFailure() {
  if (!Bus.reporter.ended) Bus.reporter.held = false;
}

bool LinkOpen() {
  if (Bus.reporter.ended) Bus.reporter.services->process.End(1);
  return !Bus.reporter.held;
}

bool LinkHeld() {
  return Bus.reporter.held;
}

Quiet::Quiet() {
  ++Bus.reporter.quiet;
}

Quiet::~Quiet() {
  // The state may have been reset meanwhile.
  if (Bus.reporter.quiet > 0) --Bus.reporter.quiet;
}

void BeforeReport(std::function<void()> step) {
  Bus.reporter.before = std::move(step);
}

}  // namespace zth::link
