#include "tasks/Firmware.h"

#include <algorithm>

#include <QDir>

#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "platform/PathBytes.h"
#include "tasks/TasksState.h"

namespace zth::tasks {

namespace {

bool ToAnsiBuffer(const QByteArray& bytes) {
  Work.start.AnsiBuffer.fill(0);
  if (bytes.size() >= kAnsiBufferSize) return false;
  std::copy(bytes.begin(), bytes.end(), Work.start.AnsiBuffer.begin());
  return true;
}

}  // namespace

bool StringToAnsiBuffer(const QString& text) {
  return ToAnsiBuffer(platform::PathBytes(text));
}

std::int16_t LoadFirmwareFile(const platform::Process& process) {
  const QString file = QDir::separator() + QString("ZTH4718FW.Hex");
  Work.start.FirmwarePath = QDir::toNativeSeparators(process.Folder()) + file;
  if (link::Bus.UsbFunctions.LoadFirmWare == nullptr) return 0;
  const QByteArray bytes = process.Folder().isEmpty() ? platform::ProgramFolderBytes() + platform::PathBytes(file)
                                                      : platform::PathBytes(Work.start.FirmwarePath);
  if (ToAnsiBuffer(bytes)) return link::LoadFirmware(Work.start.AnsiBuffer.data());
  // Called even if the path is too long for the buffer: the library decides what to do with it, and one that finds the
  // file, or needs none, gives the user a working adapter.
  return link::LoadFirmware(bytes.constData());
}

}  // namespace zth::tasks
