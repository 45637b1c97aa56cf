#include "tasks/Discovery.h"

#include <algorithm>
#include <array>

#include "chip/RegisterNames.h"
#include "link/BoardName.h"
#include "link/ChipId.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/SMBusStuff.h"
#include "link/USBStuff.h"
#include "tasks/Firmware.h"
#include "tasks/TasksState.h"

namespace zth::tasks {

void SetDeviceName() {
  Work.start.DeviceName = QStringLiteral("ZTH4718");
}

namespace {

constexpr std::int16_t kCompanyId = 0x41;

/// Possible addresses of the chip: three strappings on the adapter, and every valid address on an SMBus.
constexpr std::array kUsbAddresses{0x58, 0x5A, 0x5C};
constexpr int kFirstSmbusAddress = 0x10;
constexpr int kLastSmbusAddress = 0x7F;

/// A search, with the objects it needs.
class Search {
 public:
  Search(SearchSigns& signs, platform::Services& services) : signs_(signs), services_(services) {}

  std::vector<QString> Run() {
    WaitForAdapter();
    if (link::Bus.UsbPresent) SearchUsb();
    if (link::Bus.SmbusPresent) SearchSmbus();
    SetProgress(100);
    return std::move(found_);
  }

 private:
  void SetProgress(double percent) {
    progress_ = percent;
    signs_.SetProgress(percent);
  }
  void Advance(double percent) { SetProgress(progress_ + percent); }

  void Tell(const QString& text) {
    signs_.SetStep(text);
    services_.events.PumpPaint();
  }

  /// After the download the adapter leaves the USB and returns with its firmware; five seconds are enough.
  void WaitForAdapter() {
    signs_.SetBoard(link::BoardNameOf(link::Bus.UsbPresent ? link::kModeUsb : link::kModeSmbus));
    SetProgress(0);
    signs_.SetStep("Downloading Firmware...");
    signs_.ShowProgress();
    services_.events.PumpPaint();
    Tell("Enumerating...");
    while (progress_ < 50) {
      Advance(0.5);
      services_.clock.WaitMs(50);
      services_.events.Pump();
    }
  }

  void SearchUsb() {
    Work.start.UsbSearch = SearchStep::Connecting;
    Tell("Connecting...");
    if (!Connect()) link::ReportLinkError(link::kConnectionFailed);
    Work.start.UsbSearch = SearchStep::Searching;
    SetProgress(76);
    link::Bus.InterfaceMode = link::kModeUsb;
    Tell("Searching for " + Work.start.DeviceName + " on USB...");
    WaitPainted(1000, services_);
    for (const int address : kUsbAddresses) {
      Advance(4);
      Probe(address);
    }
    Work.start.UsbSearch = SearchStep::Done;
  }

  bool Connect() {
    constexpr int kTries = 20;
    for (int i = 0; i < kTries; ++i) {
      const bool connected = link::ConnectAdapter() == 0;
      WaitPainted(200, services_);
      services_.events.Pump();
      if (connected) return true;
    }
    return false;
  }

  void SearchSmbus() {
    link::Bus.InterfaceMode = link::kModeSmbus;
    signs_.SetBoard(link::BoardName());
    Tell("Searching for " + Work.start.DeviceName + " on SMBus...");
    WaitPainted(1000, services_);
    for (int address = kFirstSmbusAddress; address <= kLastSmbusAddress; ++address) Probe(address);
    Work.start.SmbusSearch = SearchStep::Done;
  }

  void Probe(int address) {
    if (link::ReadRegister(address, "Company ID"_reg) != kCompanyId) return;
    ++(link::Bus.InterfaceMode == link::kModeUsb ? Work.start.UsbChips : Work.start.SmbusChips);
    found_.push_back(link::TextOf({link::Bus.InterfaceMode, address}));
  }

  SearchSigns& signs_;
  platform::Services& services_;
  double progress_ = 0;  ///< percent
  std::vector<QString> found_;
};

/// The library is tried once. Only a missing library counts as absent.
bool ProbeSmbus(platform::Libraries& libraries) {
  const QString error = link::LoadSmbus(libraries);
  link::ProbeSmbusHost();
  if (error.toLower().contains("file not found")) return false;
  link::DetectSmbusHost();
  return true;
}

bool ProbeUsb(platform::Services& services) {
  link::LoadUsbFunctions(services.libraries);
  Work.start.FirmwareResult = LoadFirmwareFile(services.process);
  return Work.start.FirmwareResult > 0;
}

}  // namespace

bool ProbeLinks(platform::Services& services) {
  link::Bus.SmbusPresent = ProbeSmbus(services.libraries);
  link::Bus.UsbPresent = ProbeUsb(services);
  return link::Bus.SmbusPresent || link::Bus.UsbPresent;
}

void WaitPainted(float milliseconds, platform::Services& services) {
  constexpr float kPiece = 50;
  float left = milliseconds;
  while (left > 0) {
    services.clock.WaitMs(std::min(left, kPiece));
    services.events.PumpPaint();
    left -= kPiece;
  }
}

void SelectDevice(const QString& item) {
  link::Use(link::ChipOf(item));
}

std::vector<QString> FindDevices(SearchSigns& signs, platform::Services& services) {
  return Search(signs, services).Run();
}

}  // namespace zth::tasks
