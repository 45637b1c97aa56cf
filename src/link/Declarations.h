#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include <QString>

#include "link/Waiting.h"
#include "platform/Services.h"

#if defined(_WIN32)
#define ZTH_LIBRARY_CALL __stdcall
#else
#define ZTH_LIBRARY_CALL
#endif

/// The closed libraries' entry points and the link's state. All of it belongs to the user-interface thread.
namespace zth::link {

/// `USBFunctions`, the library of the board's USB adapter. An entry is null until the library has been loaded.
struct UsbEntries {
  /// Downloads the firmware file at an ANSI path to the adapter; above 0 when the adapter is there and took it.
  std::int16_t(ZTH_LIBRARY_CALL* LoadFirmWare)(const char* path) = nullptr;
  /// One vendor request; 0 when done, anything else when the transfer failed. In a read (`direction` 1) `length` bytes
  /// land in `buffer`.
  std::int16_t(ZTH_LIBRARY_CALL* VendorIORequest)(std::int16_t request, std::int32_t value, std::int32_t index,
                                                  std::int16_t direction, std::int16_t length,
                                                  std::uint8_t* buffer) = nullptr;
  /// Optional: what the library talks to, in UTF-8 ("Simulated board"). The text belongs to the library.
  const char*(ZTH_LIBRARY_CALL* BoardName)() = nullptr;
  /// Optional: what keeps the library from its hardware, and what helps, in lines of UTF-8; empty when nothing does.
  const char*(ZTH_LIBRARY_CALL* BoardTrouble)() = nullptr;
};

/// `smbus`, the library of the PC's SMBus host. Its three prescribed entries have no way to report a failure.
struct SmbusEntries {
  void(ZTH_LIBRARY_CALL* DetectSmbus)() = nullptr;
  std::uint8_t(ZTH_LIBRARY_CALL* ReadSmbus)(std::uint8_t address, std::uint8_t reg) = nullptr;
  void(ZTH_LIBRARY_CALL* WriteSmbus)(std::uint8_t address, std::uint8_t reg, std::uint8_t value) = nullptr;
  /// Optional, as above.
  const char*(ZTH_LIBRARY_CALL* BoardName)() = nullptr;
  const char*(ZTH_LIBRARY_CALL* BoardTrouble)() = nullptr;
  /// Optional: failed transfers with a bus address since the start; negative when that is not known.
  std::int32_t(ZTH_LIBRARY_CALL* SmbusFailures)(std::uint8_t address) = nullptr;
};

/// What has come of loading a library.
struct LibraryReport {
  QString file;   ///< as platform::LoadedLibrary has it
  QString error;  ///< empty when all entries are there
};

/// Load a library and fill its table and its report in `Bus`. The result is the error, empty when all entries are
/// there; optional ones may be absent and stay null. It contains "File not found" when no such library is in reach.
QString LoadUsbFunctions(platform::Libraries& libraries);
QString LoadSmbus(platform::Libraries& libraries);

inline constexpr std::int16_t kModeUsb = 1;
inline constexpr std::int16_t kModeSmbus = 2;

inline constexpr int kReadBufferSize = 65;

/// Who is told of a failure, and how far the telling is.
struct FailureReporter {
  platform::Services* services = nullptr;  ///< null before Attach: failures are dropped
  std::function<void()> closeAllWindows;
  /// Asks in place of the services' own box while the program starts; null otherwise.
  std::function<platform::BoxAnswer(const platform::BoxQuestion&)> ask;
  bool held = false;   ///< a failure is being reported
  bool ended = false;  ///< the end of the process has been asked for
};

/// What the link knows. `Bus = {}` is the state of a program that has not started.
struct LinkState {
  UsbEntries UsbFunctions;
  SmbusEntries Smbus;
  LibraryReport UsbLibrary;
  LibraryReport SmbusLibrary;

  /// 1 USB adapter, 2 SMBus host; with anything else there is no link and every operation does nothing and returns 0.
  std::int16_t InterfaceMode = 0;

  /// Bus address of the chip in use.
  std::int32_t DeviceAddress = 0;

  /// The link's one buffer, good only until the next link call: take out what you need at once.
  std::array<std::uint8_t, kReadBufferSize> ReadBuffer{};

  /// What the last call of VendorIORequest returned.
  std::int16_t UsbResult = 0;

  /// Which links exist, as found at the start.
  bool SmbusPresent = false;
  bool UsbPresent = false;

  /// Percent that heater 1 or 2 (at index 1, 2) is driven at, as far as this program knows: what it has set or read
  /// last. Empty before either; the board is not asked for it. A setting that failed counts where it would be more
  /// heat.
  std::array<std::optional<double>, 3> HeaterPercent{};

  std::int64_t transfers = 0;    ///< Transfers.h: made since the start, over either link
  std::int32_t usbFailures = 0;  ///< those over USB that failed

  std::map<std::int32_t, std::function<void()>> hooks;  ///< RegisterHooks.h: register to routine
  FailureReporter reporter;                             ///< LinkErrors.h
  WaitState wait;                                       ///< Waiting.h
};

extern LinkState Bus;

}  // namespace zth::link
