#include "tasks/StartReport.h"

#include <QDir>
#include <QStringList>
#include <QSysInfo>

#include "base/Product.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "tasks/TasksState.h"

namespace zth::tasks {
namespace {

using link::Bus;
using link::LibraryReport;

QString Native(const QString& path) {
  return QDir::toNativeSeparators(path);
}

/// The library's file, the hardware it reports, and what went wrong with it.
QStringList LibraryLines(const LibraryReport& library, std::int16_t mode) {
  QStringList lines;
  const QString name = link::BoardNameOf(mode);
  lines << "Library: " + Native(library.file) + (name.isEmpty() ? "" : " (" + name + ")");
  if (!library.error.isEmpty()) lines << "Error: " + library.error;
  const QString trouble = link::BoardTrouble(mode);
  if (!trouble.isEmpty()) lines << "It says: " + trouble;
  return lines;
}

bool IsAbsent(const LibraryReport& library) {
  return library.error.contains("file not found", Qt::CaseInsensitive);
}

constexpr char kBrokenRemedy[] =
    "Remedy: this file is there and cannot be used as it is. Install what the error names, or a library built for this "
    "system.";

QStringList FirmwareLines(platform::Services& services) {
  const bool isThere = services.files.Look(Work.start.FirmwarePath).has_value();
  const QString putThere = isThere ? "" : ", put the firmware file there";
  return {"Firmware: " + Native(Work.start.FirmwarePath) + (isThere ? "" : ", which is not there"),
          QString("Its download gave %1; with an adapter it gives more than 0.").arg(Work.start.FirmwareResult),
          "Remedy: plug in the adapter" + putThere + ", check that you may use its USB device, and try again."};
}

QString FailedTransfer() {
  return QString("The last transfer ended with %1 in place of 0.").arg(Bus.UsbResult);
}

QStringList LostLines() {
  return {"The adapter answers, and a transfer behind it failed.", FailedTransfer(),
          "Remedy: check the USB cable and the board's power, and try again."};
}

QStringList NoChipLines(const QString& where) {
  return {"Looked for a chip " + where + ": none reads 41h in its register 3Eh.",
          "Remedy: check that the board has power and is connected, and try again."};
}

/// How far the search got after the adapter had taken its firmware.
QStringList SearchLines() {
  switch (Work.start.UsbSearch) {
    case SearchStep::NotBegun:
      return {};
    case SearchStep::Connecting:
      return {"The adapter has taken its firmware and has not answered since.", FailedTransfer(),
              "Remedy: unplug the adapter, plug it in again, perhaps at another port, and try again."};
    case SearchStep::Searching:
      return LostLines();
    case SearchStep::Done:
      break;
  }
  if (Work.start.UsbChips == 0) return NoChipLines("at 58h, 5Ah and 5Ch");
  return Bus.UsbResult == 0 ? QStringList{"A chip was found."} : LostLines();
}

QStringList UsbLines(platform::Services& services) {
  QStringList lines{"USB ADAPTER OF THE EVALUATION BOARD"};
  lines << LibraryLines(Bus.UsbLibrary, link::kModeUsb);
  if (IsAbsent(Bus.UsbLibrary)) {
    return lines << "Remedy: put the library of the adapter's maker and the firmware file ZTH4718FW.Hex beside the "
                    "program, in " +
                        Native(services.process.Folder()) + ".";
  }
  if (!Bus.UsbLibrary.error.isEmpty()) return lines << kBrokenRemedy;
  if (!Bus.UsbPresent) return lines << FirmwareLines(services);
  return lines << SearchLines();
}

QStringList SmbusLines() {
  QStringList lines{"SMBUS HOST OF THIS PC"};
  lines << LibraryLines(Bus.SmbusLibrary, link::kModeSmbus);
  if (IsAbsent(Bus.SmbusLibrary)) {
    return lines << "Remedy: on Linux, start the program with its library for the PC's own host: zth4718-evaluation "
                    "linux-smbus, or ./run linux-smbus from the sources.";
  }
  if (!Bus.SmbusLibrary.error.isEmpty()) return lines << kBrokenRemedy;
  if (Work.start.SmbusSearch != SearchStep::Done) return lines;
  if (Work.start.SmbusChips > 0) return lines << "A chip was found.";
  return lines << NoChipLines("from 10h to 7Fh")
               << "The library of Linux writes what went wrong on the standard error stream and into "
                  "~/.local/state/zth4718/smbus.log.";
}

QStringList PlaceLines(const platform::Libraries& libraries) {
  QStringList lines{"WHERE LIBRARIES ARE LOOKED FOR, IN THIS ORDER"};
  int number = 0;
  for (const QString& place : libraries.Places()) lines << QString("%1. %2").arg(++number).arg(Native(place));
  return lines;
}

}  // namespace

QString StartDetails(platform::Services& services) {
  QStringList parts{UsbLines(services).join('\n'), SmbusLines().join('\n')};
  // The link that was searched first comes first: that is where the user expected the board.
  if (Bus.SmbusPresent && !Bus.UsbPresent) parts.swapItemsAt(0, 1);
  parts << PlaceLines(services.libraries).join('\n')
        << "All of it at length: docs/hardware.md, \"Connecting real hardware\".\n" +
               QString("%1 %2 on %3").arg(base::kTitle, base::kVersionText, QSysInfo::prettyProductName());
  return parts.join("\n\n");
}

}  // namespace zth::tasks
