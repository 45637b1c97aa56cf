#include "link/Declarations.h"

namespace zth::link {

LinkState Bus;

namespace {

/// Fills one entry; false, with `error` set, if the library does not export it.
template <typename Entry>
bool Fill(Entry& entry, const platform::Library& library, const char* name, QString& error) {
  entry = reinterpret_cast<Entry>(library.Symbol(name));
  if (entry == nullptr) error = QStringLiteral("Entry point %1 is missing").arg(QLatin1String(name));
  return entry != nullptr;
}

/// Fills an entry that the library may lack.
template <typename Entry>
void FillOptional(Entry& entry, const platform::Library& library, const char* name) {
  entry = reinterpret_cast<Entry>(library.Symbol(name));
}

}  // namespace

QString LoadUsbFunctions(platform::Libraries& libraries) {
  Bus.UsbFunctions = {};
  auto [library, error, file] = libraries.Load(QStringLiteral("USBFunctions"));
  Bus.UsbLibrary = {file, error};
  if (library == nullptr) return error;
  UsbEntries entries;
  const bool complete = Fill(entries.LoadFirmWare, *library, "LoadFirmWare", error) &&
                        Fill(entries.VendorIORequest, *library, "VendorIORequest", error);
  FillOptional(entries.BoardName, *library, "BoardName");
  FillOptional(entries.BoardTrouble, *library, "BoardTrouble");
  if (complete) Bus.UsbFunctions = entries;
  Bus.UsbLibrary.error = error;
  return error;
}

QString LoadSmbus(platform::Libraries& libraries) {
  Bus.Smbus = {};
  auto [library, error, file] = libraries.Load(QStringLiteral("smbus"));
  Bus.SmbusLibrary = {file, error};
  if (library == nullptr) return error;
  SmbusEntries entries;
  const bool complete = Fill(entries.DetectSmbus, *library, "DetectSmbus", error) &&
                        Fill(entries.ReadSmbus, *library, "ReadSmbus", error) &&
                        Fill(entries.WriteSmbus, *library, "WriteSmbus", error);
  FillOptional(entries.BoardName, *library, "BoardName");
  FillOptional(entries.BoardTrouble, *library, "BoardTrouble");
  FillOptional(entries.SmbusFailures, *library, "SmbusFailures");
  if (complete) Bus.Smbus = entries;
  Bus.SmbusLibrary.error = error;
  return error;
}

}  // namespace zth::link
