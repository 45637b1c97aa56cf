#include "shell/Discovery.h"

#include <algorithm>
#include <array>

#include "chip/RegisterNames.h"
#include "link/BoardName.h"
#include "link/ChipId.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/USBStuff.h"
#include "shell/ProgramState.h"
#include "shell/frmSplash.h"

namespace zth::shell {

void SetDeviceName() {
  Program.DeviceName = QStringLiteral("ZTH4718");
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
  Search(frmSplash& splash, platform::Services& services) : splash_(splash), services_(services) {}

  std::vector<QString> Run() {
    WaitForAdapter();
    if (link::Bus.UsbPresent) SearchUsb();
    if (link::Bus.SmbusPresent) SearchSmbus();
    splash_.SetProgress(100);
    return std::move(found_);
  }

 private:
  void Tell(const QString& text) {
    splash_.SetStep(text);
    services_.events.PumpPaint();
  }

  /// After the download the adapter leaves the USB and returns with its firmware; five seconds are enough.
  void WaitForAdapter() {
    splash_.SetBoard(link::BoardNameOf(link::Bus.UsbPresent ? link::kModeUsb : link::kModeSmbus));
    splash_.SetProgress(0);
    splash_.SetStep("Downloading Firmware...");
    splash_.ShowProgress();
    services_.events.PumpPaint();
    Tell("Enumerating...");
    while (splash_.Progress() < 50) {
      splash_.SetProgress(splash_.Progress() + 0.5);
      services_.clock.WaitMs(50);
      services_.events.Pump();
    }
  }

  void SearchUsb() {
    Program.UsbSearch = SearchStep::Connecting;
    Tell("Connecting...");
    if (!Connect()) link::ReportLinkError(link::kConnectionFailed);
    Program.UsbSearch = SearchStep::Searching;
    splash_.SetProgress(76);
    link::Bus.InterfaceMode = link::kModeUsb;
    Tell("Searching for " + Program.DeviceName + " on USB...");
    WaitPainted(1000, services_);
    for (const int address : kUsbAddresses) {
      splash_.SetProgress(splash_.Progress() + 4);
      Probe(address);
    }
    Program.UsbSearch = SearchStep::Done;
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
    splash_.SetBoard(link::BoardName());
    Tell("Searching for " + Program.DeviceName + " on SMBus...");
    WaitPainted(1000, services_);
    for (int address = kFirstSmbusAddress; address <= kLastSmbusAddress; ++address) Probe(address);
    Program.SmbusSearch = SearchStep::Done;
  }

  void Probe(int address) {
    if (link::ReadRegister(address, "Company ID"_reg) != kCompanyId) return;
    ++(link::Bus.InterfaceMode == link::kModeUsb ? Program.UsbChips : Program.SmbusChips);
    found_.push_back(link::TextOf({link::Bus.InterfaceMode, address}));
  }

  frmSplash& splash_;
  platform::Services& services_;
  std::vector<QString> found_;
};

}  // namespace

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

std::vector<QString> FindDevices(frmSplash& splash, platform::Services& services) {
  return Search(splash, services).Run();
}

}  // namespace zth::shell
