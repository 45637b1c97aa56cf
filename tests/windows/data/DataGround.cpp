#include "tests/windows/data/DataGround.h"

#include "chip/Measurements.h"
#include "windows/SharedState.h"

namespace zth::testing {

std::string Content(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string("(no file)");
}

DataTest::DataTest() {
  desk.Start();
  chip::PollEnabled = false;
  for (chip::LogChannel& channel : chip::LogChannelTable) channel.Available = 1;
}

void DataTest::StartLog(const QString& path, std::initializer_list<int> channels, const QString& period) {
  windows::ChildWindow& window = Logging();
  Desk::Press(window, "cmdDeselectAll");
  for (const int channel : channels) Desk::Check(window, QString("chkLog(%1)").arg(channel), true);
  Desk::Type(window, "txtLogInt", period);
  desk.fileDialogs.script.push_back(path);
  Desk::Press(window, "cmdLogData");
}

void DataTest::Log(int lines) {
  // From one tick that is later than the last line by more than a period to the next.
  for (int i = 0; i < lines; ++i) desk.Advance((windows::LogPeriodMs / 50 + 1) * 50);
}

}  // namespace zth::testing
