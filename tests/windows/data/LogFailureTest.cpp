#include <chrono>
#include <csignal>
#include <fstream>
#include <random>
#include <sys/mount.h>
#include <thread>
#include <unistd.h>

#include <QAction>
#include <QProcess>

#include "chip/Measurements.h"
#include "link/LinkErrors.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using chip::LogChannelTable;

constexpr char kHead[] = "\r\nZTH4718 Log File\r\n\r\nTime ,Local Temp ,\r\n";

/// Lines of a log of channel 0 at 0 degrees, first to last.
std::string Lines(int first, int last) {
  std::string lines;
  for (int i = first; i <= last; ++i) {
    char time[32];
    std::snprintf(time, sizeof time, "%g", i / 10.0);
    lines += (time[0] == '0' && time[1] != '\0' ? time + 1 : time) + std::string(",0 ,\r\n");
  }
  return lines;
}

class LogFailureTest : public DataTest {
 protected:
  void Begin(const QString& period = "100") { StartLog(Path("a.csv"), {0}, period); }
  void Trigger(const char* action) { Desk::Get<QAction>(desk.Main(), action).trigger(); }
  std::string File() { return Content(Path("a.csv")); }
};

TEST_F(LogFailureTest, LinesWaitInOrderAndTheStatusBarTells) {
  Begin();
  Log(2);
  desk.files.locked = true;
  Log(1);
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 1 lines waiting");
  Log(3);
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 4 lines waiting");
  EXPECT_EQ(File(), kHead + Lines(0, 1));
  desk.files.locked = false;
  Log(1);
  EXPECT_EQ(Status(), "Logging Enabled");
  EXPECT_EQ(File(), kHead + Lines(0, 6));
  EXPECT_TRUE(desk.prompts.shown.empty());
}

TEST_F(LogFailureTest, AFileThatGoesAwayOnTheDiskIsWaitedForTheSameWay) {
  QDir().mkdir(Path("share"));
  StartLog(Path("share/a.csv"), {0});
  Log(1);
  ASSERT_TRUE(QDir().rename(Path("share"), Path("unplugged")));
  Log(2);
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 2 lines waiting");
  ASSERT_TRUE(QDir().rename(Path("unplugged"), Path("share")));
  Log(1);
  EXPECT_EQ(Content(Path("share/a.csv")), kHead + Lines(0, 3));
  // Something else than a file under that name blocks nobody.
  QFile::remove(Path("share/a.csv"));
  ASSERT_EQ(mkfifo(Path("share/a.csv").toLocal8Bit().constData(), 0600), 0);
  Log(1);
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 1 lines waiting");
}

TEST_F(LogFailureTest, AFullDiskNeverLeavesAPieceOfALine) {
  Begin();
  desk.files.locked = true;
  Log(12);
  const std::string all = Lines(0, 11);
  desk.files.locked = false;
  for (std::size_t space = 0; space <= all.size(); ++space) {
    // All of it anew for each: twelve lines wait and find so much room.
    SCOPED_TRACE(space);
    windows::ResetLog();
    QFile::remove(Path("b.csv"));
    windows::LogFileName = Path("b.csv");
    windows::StartLog(100, desk.Main());
    desk.files.locked = true;
    for (int i = 0; i < 12; ++i) windows::RunLogJob({desk.services, desk.Main()});
    desk.files.locked = false;
    desk.files.space = static_cast<std::int64_t>(space);
    windows::RunLogJob({desk.services, desk.Main()});
    const std::string full = Lines(0, 12);
    const std::string standing = Content(Path("b.csv"));
    ASSERT_EQ(standing, full.substr(0, full.rfind('\n', space == 0 ? 0 : space - 1) + 1));
    ASSERT_EQ(*desk.files.space, static_cast<std::int64_t>(space - standing.size()));
    desk.files.space.reset();
    windows::RunLogJob({desk.services, desk.Main()});
    ASSERT_EQ(Content(Path("b.csv")), Lines(0, 13));
    ASSERT_EQ(Status(), "Logging Enabled");
  }
}

TEST_F(LogFailureTest, ATornLineThatCannotBeCutAtOnceIsCutBeforeAnythingElse) {
  Begin();
  Log(1);
  desk.files.space = 3;
  desk.files.cutFails = true;
  Log(2);
  EXPECT_EQ(File(), kHead + Lines(0, 0) + ".1,");
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 2 lines waiting");
  desk.files.space.reset();
  Log(1);
  EXPECT_EQ(File(), kHead + Lines(0, 0) + ".1,") << "nothing is written behind it";
  desk.files.cutFails = false;
  Log(1);
  EXPECT_EQ(File(), kHead + Lines(0, 4));
}

TEST_F(LogFailureTest, AFullStoreKeepsTheOldestAndTheFileTellsTheGap) {
  Begin("0");
  desk.files.locked = true;
  for (int i = 0; i < 100'000; ++i) windows::RunLogJob({desk.services, desk.Main()});
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 100000 lines waiting");
  for (int i = 0; i < 3; ++i) windows::RunLogJob({desk.services, desk.Main()});
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 100000 lines waiting, 3 lost");
  // Room for two lines: they go out, and a line comes into the store again, behind the mark of the gap.
  desk.files.locked = false;
  desk.files.space = 2 * 7;
  LogChannelTable[0].Value = 7;
  windows::RunLogJob({desk.services, desk.Main()});
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 100000 lines waiting");
  LogChannelTable[0].Value = 8;
  windows::RunLogJob({desk.services, desk.Main()});
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 100000 lines waiting, 1 lost");
  desk.files.space.reset();
  LogChannelTable[0].Value = 9;
  windows::RunLogJob({desk.services, desk.Main()});
  EXPECT_EQ(Status(), "Logging Enabled");
  std::string expected = kHead;
  for (int i = 0; i < 100'000; ++i) expected += "0,0 ,\r\n";
  expected +=
      "Gap: 3 lines lost while the file was not writable\r\n0,7 ,\r\n"
      "Gap: 1 line lost while the file was not writable\r\n0,9 ,\r\n";
  EXPECT_TRUE(File() == expected) << File().substr(expected.size() - 200);
}

TEST_F(LogFailureTest, LinesOfAStoppedLogAreStillOwedToTheirFile) {
  Begin();
  desk.files.locked = true;
  Log(2);
  Desk::Press(Logging(), "cmdLogData");
  EXPECT_EQ(Status(), "Ready - file not writable, 2 lines waiting");
  desk.Advance(3000);
  EXPECT_EQ(File(), kHead);
  desk.files.locked = false;
  // Another log may start meanwhile, into another file or into the same one.
  StartLog(Path("b.csv"), {1});
  Log(1);
  EXPECT_EQ(Status(), "Logging Enabled");
  EXPECT_EQ(File(), kHead + Lines(0, 1));
  Desk::Press(Logging(), "cmdLogData");
  desk.Advance(3000);
  EXPECT_EQ(Content(Path("b.csv")), "\r\nZTH4718 Log File\r\n\r\nTime ,Remote1 Temp ,\r\n0,0 ,\r\n");

  Begin();
  desk.files.locked = true;
  Log(1);
  Desk::Press(Logging(), "cmdLogData");
  Begin();
  EXPECT_FALSE(windows::LogActive) << "the file is not writable";
  desk.files.locked = false;
  Begin();
  EXPECT_EQ(Status(), "Logging Enabled");
  EXPECT_EQ(File(), kHead + Lines(0, 1) + kHead + Lines(0, 0) + kHead);
}

TEST_F(LogFailureTest, EveryOrderlyEndTriesOnceMore) {
  const auto wait = [this] {
    QFile::remove(Path("a.csv"));
    Begin();
    desk.files.locked = true;
    Log(2);
    desk.files.locked = false;
    ASSERT_EQ(File(), kHead);
  };
  wait();
  Trigger("mnuExit");
  EXPECT_EQ(desk.process.ends, std::vector<int>{0});
  EXPECT_EQ(File(), kHead + Lines(0, 1));

  windows::LogActive = false;
  windows::ResetLog();
  wait();
  desk.Main().close();
  EXPECT_EQ(File(), kHead + Lines(0, 1));
}

TEST_F(LogFailureTest, AFailureOfTheLinkTriesOnceMore) {
  Begin();
  desk.files.locked = true;
  Log(2);
  desk.files.locked = false;
  desk.prompts.script.push_back(platform::BoxAnswer::Ok);
  EXPECT_THROW(link::ReportLinkError(link::kCommunicationsInterrupted), platform::ProcessEnded);
  EXPECT_EQ(File(), kHead + Lines(0, 1));
}

TEST_F(LogFailureTest, TheSystemsOwnShortWritesAreCutBack) {
  Begin();
  {
    const NearlyFullDisk disk(sizeof kHead - 1 + 7 + 8 + 3);  // two lines and a bit
    Log(4);
    EXPECT_EQ(Status(), "Logging Enabled - file not writable, 2 lines waiting");
    EXPECT_EQ(File(), kHead + Lines(0, 1));
  }
  Log(1);
  EXPECT_EQ(File(), kHead + Lines(0, 4));
}

TEST_F(LogFailureTest, AFullFileSystemLosesNothing) {
  const QByteArray point = Path("disk").toLocal8Bit();
  QDir().mkdir(Path("disk"));
  if (mount("tmpfs", point.constData(), "tmpfs", 0, "size=16k") != 0) GTEST_SKIP() << "mounting is not allowed here";
  {
    std::ofstream ballast(Path("disk/ballast").toStdString());
    ballast << std::string(8192, 'x');
  }
  for (chip::LogChannel& channel : LogChannelTable) channel.Value = 1234.5F;
  windows::ChildWindow& window = Logging();
  Desk::Press(window, "cmdSelectAll");
  desk.fileDialogs.script.push_back(Path("disk/a.csv"));
  Desk::Press(window, "cmdLogData");
  Log(40);  // of some 360 bytes each
  EXPECT_TRUE(Status().startsWith("Logging Enabled - file not writable, ")) << Status().toStdString();
  const std::string full = Content(Path("disk/a.csv"));
  EXPECT_EQ(full.substr(full.size() - 2), "\r\n");
  QFile::remove(Path("disk/ballast"));
  Log(1);
  const std::string whole = Content(Path("disk/a.csv"));
  umount(point.constData());
  EXPECT_EQ(whole.substr(0, full.size()), full);
  EXPECT_EQ(Status(), "Logging Enabled");
  std::string row;
  for (int i = 0; i < 45; ++i) row += "1234.5 ,";
  std::size_t at = whole.find("0,1234.5");
  for (int i = 0; at < whole.size(); ++i) {
    const std::string line = Lines(i, i).substr(0, Lines(i, i).find(',')) + "," + row + "\r\n";
    ASSERT_EQ(whole.substr(at, line.size()), line);
    at += line.size();
  }
}

TEST(LogKill, AHundredKillsLeaveWholeLinesAndNoneMissing) {
  const QTemporaryDir folder;
  std::string row;
  for (int i = 0; i < chip::kLogChannels; ++i) row += ".3333333 ,";
  std::mt19937 random(std::random_device{}());
  for (int kill = 0; kill < 100; ++kill) {
    const QString path = folder.filePath(QString("%1.csv").arg(kill));
    QProcess victim;
    victim.start(LOG_VICTIM, {path});
    ASSERT_TRUE(victim.waitForReadyRead());
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
    ::kill(static_cast<pid_t>(victim.processId()), SIGKILL);
    ASSERT_TRUE(victim.waitForFinished());
    ASSERT_EQ(victim.exitStatus(), QProcess::CrashExit);
    const auto told = static_cast<std::size_t>(victim.readAllStandardOutput().size());

    const std::string content = Content(path);
    std::size_t at = content.find("\r\n0,");
    ASSERT_NE(at, std::string::npos);
    at += 2;
    std::size_t lines = 0;
    while (at < content.size()) {
      char time[32];
      std::snprintf(time, sizeof time, "%g", static_cast<double>(lines) / 100);
      const std::string text = (time[0] == '0' && time[1] != '\0' ? time + 1 : time) + std::string(",") + row + "\r\n";
      const std::string found = content.substr(at, text.size());
      at += found.size();
      if (at == content.size() && found.size() < text.size()) {
        ASSERT_EQ(found, text.substr(0, found.size())) << "a torn last line";
        break;
      }
      ASSERT_EQ(found, text);
      ++lines;
    }
    ASSERT_GE(lines, told);
    ASSERT_LE(lines, told + 1);
  }
}

}  // namespace
}  // namespace zth::testing
