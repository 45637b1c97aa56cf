#include <charconv>
#include <cmath>
#include <memory>
#include <utility>

#include "base/Product.h"
#include "command/Commands.h"
#include "command/Metrics.h"
#include "command/Monitor.h"
#include "platform/Pages.h"

namespace zth::command {
namespace {

constexpr double kRenewal = 1;  // seconds after which the pages are made anew without a read
constexpr double kStuckAfter = 10;
constexpr double kYear = 365.0 * 24 * 3600;

struct Place {
  std::string address;
  std::uint16_t port = 0;
};

Place PlaceOf(const std::string& text) {
  const Failure bad{kUsage, "'" + text + "' is nowhere to listen", "Give an IP address and a port: 127.0.0.1:9418"};
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos) throw bad;
  std::string address = text.substr(0, colon);
  const bool isQuoted = address.size() > 2 && address.front() == '[' && address.back() == ']';
  if (isQuoted) address = address.substr(1, address.size() - 2);
  if (!isQuoted && address.find(':') != std::string::npos) throw bad;
  if (address == "localhost") address = "127.0.0.1";
  std::uint16_t port = 0;
  const char* const end = text.data() + text.size();
  const auto [read, error] = std::from_chars(text.data() + colon + 1, end, port);
  if (error != std::errc() || read != end || address.empty()) throw bad;
  return {address, port};
}

/// The address as a browser takes it.
std::string LinkTo(const Place& place) {
  const bool isLong = place.address.find(':') != std::string::npos;
  return "http://" + (isLong ? "[" + place.address + "]" : place.address) + ":" + std::to_string(place.port) +
         "/metrics";
}

void Announce(const Session& session, const Monitor& monitor, const std::string& url) {
  std::string devices;
  for (const PolledChip& chip : monitor.Chips()) devices += (devices.empty() ? "" : ", ") + chip.device;
  session.Out().Result("Serving " + devices + " at " + url, {{"devices", devices}, {"url", url}});
}

/// Until a signal, which ends it in order.
void Serve(Session& session, platform::PageServer& server, bool readsAlerts, const std::string& url) {
  Monitor monitor(session, session.ChipsMeant(), readsAlerts);
  Announce(session, monitor, url);
  double tick = session.Now();
  double shownAt = tick - kRenewal;
  try {
    for (;;) {
      if (monitor.Tick() || session.Now() - shownAt >= kRenewal) {
        server.Show(PagesOf(monitor), StuckPagesOf(monitor), kStuckAfter);
        shownAt = session.Now();
      }
      // At whole ticks, as a timer does: reads that take a while do not make the next ones follow any sooner.
      tick += Monitor::kTick * (std::floor((session.Now() - tick) / Monitor::kTick) + 1);
      session.Wait(tick - session.Now());
    }
  } catch (const Failure& failure) {
    if (failure.status != kEnded) throw;
  }
}

}  // namespace

Job PrepareServe(const Request& request, const Setting& setting) {
  Place place = PlaceOf(request.listen);
  if (setting.services.pageHost == nullptr) throw Failure{kUsage, "Nothing can be served here", ""};
  // Before the chips are searched, so that a port that is taken is told at once.
  platform::Listening listening = setting.services.pageHost->Listen(place.address, place.port);
  if (!listening.server) {
    throw Failure{kUsage, "Cannot listen at " + request.listen + ": " + listening.error,
                  "Name an address of this machine and a free port with --listen"};
  }
  place.port = listening.port;
  const std::shared_ptr<platform::PageServer> server = std::move(listening.server);
  server->Show(StartingPages(), StartingPages(), kYear);
  return [server, url = LinkTo(place), readsAlerts = request.alerts](Session& session) {
    Serve(session, *server, readsAlerts, url);
  };
}

}  // namespace zth::command
