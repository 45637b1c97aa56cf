#include "link/Declarations.h"

namespace zth::link {

LinkState Bus;

namespace {

/// Fills one entry; false, with the error told, when the library does not export it.
template <typename Entry>
bool Fill(Entry& entry, const platform::Library& library, const char* name, QString& error) {
  entry = reinterpret_cast<Entry>(library.Symbol(name));
  if (entry == nullptr) error = QStringLiteral("Entry point %1 is missing").arg(QLatin1String(name));
  return entry != nullptr;
}

/// Fills an entry that a library need not export.
template <typename Entry>
void FillOptional(Entry& entry, const platform::Library& library, const char* name) {
  entry = reinterpret_cast<Entry>(library.Symbol(name));
}

}  // namespace

QString LoadUsbFunctions(platform::Libraries& libraries) {
  Bus.UsbFunctions = {};
  auto [library, error] = libraries.Load(QStringLiteral("USBFunctions"));
  if (library == nullptr) return error;
  UsbEntries entries;
  const bool complete = Fill(entries.LoadFirmWare, *library, "LoadFirmWare", error) &&
                        Fill(entries.VendorIORequest, *library, "VendorIORequest", error);
  FillOptional(entries.BoardName, *library, "BoardName");
  if (complete) Bus.UsbFunctions = entries;
  return error;
}

QString LoadSmbus(platform::Libraries& libraries) {
  Bus.Smbus = {};
  auto [library, error] = libraries.Load(QStringLiteral("smbus"));
  if (library == nullptr) return error;
  SmbusEntries entries;
  const bool complete = Fill(entries.DetectSmbus, *library, "DetectSmbus", error) &&
                        Fill(entries.ReadSmbus, *library, "ReadSmbus", error) &&
                        Fill(entries.WriteSmbus, *library, "WriteSmbus", error);
  FillOptional(entries.BoardName, *library, "BoardName");
  FillOptional(entries.SmbusFailures, *library, "SmbusFailures");
  if (complete) Bus.Smbus = entries;
  return error;
}

}  // namespace zth::link
