#include "tests/windows/data/DataGround.h"

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "windows/SharedState.h"

namespace zth::testing {

std::string Content(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string("(no file)");
}

std::string LogHead(const std::string& columns) {
  return "\r\nZTH4718 Log File\r\n\r\nTime ," + columns + "\r\n";
}

std::string LogLines(int first, int last) {
  std::string lines;
  for (int i = first; i <= last; ++i) {
    const QString time = QString::number(i / 10.0);
    lines += (i > 0 && i < 10 ? time.mid(1) : time).toStdString() + ",0 ,\r\n";
  }
  return lines;
}

DataTest::DataTest() {
  desk.Start();
  chip::Model.PollEnabled = false;
  for (chip::LogChannel& channel : chip::Model.LogChannelTable) channel.Available = 1;
}

void DataTest::StartLog(const QString& path, std::initializer_list<int> channels, const QString& period) {
  Do(Logging(), "cmdDeselectAll; txtLogInt=" + period);
  for (const int channel : channels) Do(Logging(), QString("chkLog(%1)=1").arg(channel));
  PressLog(path);
}

void DataTest::PressLog(const QString& path) {
  desk.fileDialogs.script.push_back(path);
  Do(Logging(), "cmdLogData");
}

void DataTest::Log(int lines) {
  // From one tick that is later than the last line by more than a period to the next.
  for (int i = 0; i < lines; ++i) desk.Advance((windows::Shared.LogPeriodMs / 50 + 1) * 50);
}

}  // namespace zth::testing
