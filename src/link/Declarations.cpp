#include "link/Declarations.h"

#include "link/LinkErrors.h"
#include "link/RegisterHooks.h"

namespace zth::link {

UsbEntries UsbFunctions;
SmbusEntries Smbus;
std::int16_t InterfaceMode = 0;
std::int32_t DeviceAddress = 0;
std::array<std::uint8_t, kReadBufferSize> ReadBuffer{};
bool SmbusPresent = false;
bool UsbPresent = false;
std::array<std::optional<double>, 3> HeaterPercent{};

namespace {

/// Fills one entry; false, with the error told, when the library does not export it.
template <typename Entry>
bool Fill(Entry& entry, const platform::Library& library, const char* name, QString& error) {
  entry = reinterpret_cast<Entry>(library.Symbol(name));
  if (entry == nullptr) error = QStringLiteral("Entry point %1 is missing").arg(QLatin1String(name));
  return entry != nullptr;
}

}  // namespace

QString LoadUsbFunctions(platform::Libraries& libraries) {
  UsbFunctions = {};
  auto [library, error] = libraries.Load(QStringLiteral("USBFunctions"));
  if (library == nullptr) return error;
  UsbEntries entries;
  const bool complete = Fill(entries.LoadFirmWare, *library, "LoadFirmWare", error) &&
                        Fill(entries.VendorIORequest, *library, "VendorIORequest", error);
  if (complete) UsbFunctions = entries;
  return error;
}

QString LoadSmbus(platform::Libraries& libraries) {
  Smbus = {};
  auto [library, error] = libraries.Load(QStringLiteral("smbus"));
  if (library == nullptr) return error;
  SmbusEntries entries;
  const bool complete = Fill(entries.DetectSmbus, *library, "DetectSmbus", error) &&
                        Fill(entries.ReadSmbus, *library, "ReadSmbus", error) &&
                        Fill(entries.WriteSmbus, *library, "WriteSmbus", error);
  if (complete) Smbus = entries;
  return error;
}

void ResetLink() {
  UsbFunctions = {};
  Smbus = {};
  InterfaceMode = 0;
  DeviceAddress = 0;
  ReadBuffer.fill(0);
  SmbusPresent = false;
  UsbPresent = false;
  HeaterPercent.fill(std::nullopt);
  ResetHooks();
  Detach();
}

}  // namespace zth::link
