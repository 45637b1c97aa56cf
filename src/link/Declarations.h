#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include <QString>

#include "link/Tap.h"
#include "link/Waiting.h"
#include "platform/Services.h"

#if defined(_WIN32)
#define ZTH_LIBRARY_CALL __stdcall
#else
#define ZTH_LIBRARY_CALL
#endif

/// The closed libraries' entry points and the link's state. For the user-interface thread only.
namespace zth::link {

/// `USBFunctions`, the library of the board's USB adapter. Entries are null until the library is loaded.
struct UsbEntries {
  /// Downloads the firmware file at an ANSI path to the adapter; above 0 if the adapter is present and accepted it.
  std::int16_t(ZTH_LIBRARY_CALL* LoadFirmWare)(const char* path) = nullptr;
  /// One vendor request; 0 on success, anything else on failure. For a read (`direction` 1), `length` bytes are written
  /// to `buffer`.
  std::int16_t(ZTH_LIBRARY_CALL* VendorIORequest)(std::int16_t request, std::int32_t value, std::int32_t index,
                                                  std::int16_t direction, std::int16_t length,
                                                  std::uint8_t* buffer) = nullptr;
  /// Optional: what the library is connected to, in UTF-8 ("Simulated board"). The library owns the text.
  const char*(ZTH_LIBRARY_CALL* BoardName)() = nullptr;
  /// Optional: what keeps the library from its hardware, and the remedy, in lines of UTF-8; empty when nothing does.
  const char*(ZTH_LIBRARY_CALL* BoardTrouble)() = nullptr;
};

/// `smbus`, the library of the PC's SMBus host. Its three prescribed entries cannot report a failure.
struct SmbusEntries {
  void(ZTH_LIBRARY_CALL* DetectSmbus)() = nullptr;
  std::uint8_t(ZTH_LIBRARY_CALL* ReadSmbus)(std::uint8_t address, std::uint8_t reg) = nullptr;
  void(ZTH_LIBRARY_CALL* WriteSmbus)(std::uint8_t address, std::uint8_t reg, std::uint8_t value) = nullptr;
  /// Optional, as above.
  const char*(ZTH_LIBRARY_CALL* BoardName)() = nullptr;
  const char*(ZTH_LIBRARY_CALL* BoardTrouble)() = nullptr;
  /// Optional: the number of failed transfers with a bus address since the start; negative if unknown.
  std::int32_t(ZTH_LIBRARY_CALL* SmbusFailures)(std::uint8_t address) = nullptr;
};

/// The result of loading a library.
struct LibraryReport {
  QString file;   ///< from platform::LoadedLibrary
  QString error;  ///< empty when all entries are there
};

/// Load a library and fill its table and its report in `Bus`. They return the error, empty when all entries were found.
/// Optional entries may be missing and stay null. The error contains "File not found" when there is no such library.
QString LoadUsbFunctions(platform::Libraries& libraries);
QString LoadSmbus(platform::Libraries& libraries);

inline constexpr std::int16_t kModeUsb = 1;
inline constexpr std::int16_t kModeSmbus = 2;

inline constexpr int kReadBufferSize = 65;

/// Whom to tell about a failure, and the state of the report.
struct FailureReporter {
  platform::Services* services = nullptr;  ///< null before Attach: failures are dropped
  std::function<void()> closeAllWindows;
  /// Asks instead of the services' own box while the program starts; null otherwise.
  std::function<platform::BoxAnswer(const platform::BoxQuestion&)> ask;
  bool held = false;               ///< a failure is being reported
  bool ended = false;              ///< the end of the process has been requested
  int quiet = 0;                   ///< how many Quiet (LinkErrors.h) there are
  std::function<void()> before{};  ///< what is to be done before a failure is reported; null otherwise
};

/// The link's state. `Bus = {}` is the state before the program has started.
struct LinkState {
  UsbEntries UsbFunctions;
  SmbusEntries Smbus;
  LibraryReport UsbLibrary;
  LibraryReport SmbusLibrary;

  /// 1 USB adapter, 2 SMBus host. Any other value means no link: every operation does nothing and returns 0.
  std::int16_t InterfaceMode = 0;

  /// The bus address of the chip in use.
  std::int32_t DeviceAddress = 0;

  /// The link's only buffer, valid until the next link call: copy the data at once.
  std::array<std::uint8_t, kReadBufferSize> ReadBuffer{};

  /// The result of the last call of VendorIORequest.
  std::int16_t UsbResult = 0;

  /// The links found at the start.
  bool SmbusPresent = false;
  bool UsbPresent = false;

  /// The drive of heaters 1 and 2 (at index 1 and 2) in percent, as last set or read by this program. Empty before
  /// that; the board is not asked. A failed setting counts if it would mean more heat.
  std::array<std::optional<double>, 3> HeaterPercent{};

  std::int64_t transfers = 0;    ///< Transfers.h: since the start, over either link
  std::int32_t usbFailures = 0;  ///< failed ones over USB

  std::map<std::int32_t, std::function<void()>> hooks;  ///< RegisterHooks.h: routine of each register
  FailureReporter reporter;                             ///< LinkErrors.h
  WaitState wait;                                       ///< Waiting.h

  Observer* observer = nullptr;  ///< Tap.h: whom each call is shown to; null for nobody
  const Asker* asker = nullptr;  ///< Asker.h: for whom calls are made now; null for nobody
};

extern LinkState Bus;

}  // namespace zth::link
