#include <sys/stat.h>

#include <QAction>

#include "chip/Measurements.h"
#include "link/LinkErrors.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

using chip::LogChannelTable;

const std::string kHead = LogHead("Local Temp ,");

/// Lines of a log of channel 0 at 0 degrees, first to last.
std::string Lines(int first, int last) {
  std::string lines;
  for (int i = first; i <= last; ++i) {
    const QString time = QString::number(i / 10.0);
    lines += (i > 0 && i < 10 ? time.mid(1) : time).toStdString() + ",0 ,\r\n";
  }
  return lines;
}

class LogFailureTest : public DataTest {
 protected:
  void Begin(const QString& period = "100") { StartLog(Path("a.csv"), {0}, period); }
  void Job() { windows::RunLogJob({desk.services, desk.Main()}); }
  /// Lets lines come while the file is not writable.
  void LogLocked(int lines) {
    desk.files.locked = true;
    Log(lines);
    desk.files.locked = false;
  }
  std::string File() { return Content(Path("a.csv")); }
};

TEST_F(LogFailureTest, LinesWaitInOrderAndTheStatusBarTells) {
  Begin();
  Log(2);
  LogLocked(1);
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 1 lines waiting");
  LogLocked(3);
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 4 lines waiting");
  EXPECT_EQ(File(), kHead + Lines(0, 1));
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
  LogLocked(12);
  const std::string all = Lines(0, 11);
  for (std::size_t space = 0; space <= all.size(); ++space) {
    // All of it anew for each: twelve lines wait and find so much room.
    SCOPED_TRACE(space);
    windows::ResetLog();
    QFile::remove(Path("b.csv"));
    windows::LogFileName = Path("b.csv");
    windows::StartLog(100, desk.Main());
    desk.files.locked = true;
    for (int i = 0; i < 12; ++i) Job();
    desk.files.locked = false;
    desk.files.space = static_cast<std::int64_t>(space);
    Job();
    const std::string full = Lines(0, 12);
    const std::string standing = Content(Path("b.csv"));
    ASSERT_EQ(standing, full.substr(0, full.rfind('\n', space == 0 ? 0 : space - 1) + 1));
    ASSERT_EQ(*desk.files.space, static_cast<std::int64_t>(space - standing.size()));
    desk.files.space.reset();
    Job();
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
  const auto log = [this](int lines, float value) {
    for (LogChannelTable[0].Value = value; lines > 0; --lines) Job();
    return Status();
  };
  desk.files.locked = true;
  EXPECT_EQ(log(100'000, 0), "Logging Enabled - file not writable, 100000 lines waiting");
  EXPECT_EQ(log(3, 0), "Logging Enabled - file not writable, 100000 lines waiting, 3 lost");
  // Room for two lines: they go out, and a line comes into the store again, behind the mark of the gap.
  desk.files.locked = false;
  desk.files.space = 2 * 7;
  EXPECT_EQ(log(1, 7), "Logging Enabled - file not writable, 100000 lines waiting");
  EXPECT_EQ(log(1, 8), "Logging Enabled - file not writable, 100000 lines waiting, 1 lost");
  desk.files.space.reset();
  EXPECT_EQ(log(1, 9), "Logging Enabled");
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
  EXPECT_EQ(Content(Path("b.csv")), LogHead("Remote1 Temp ,") + "0,0 ,\r\n");

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
  const std::function<void()> ends[]{[this] { Desk::Get<QAction>(desk.Main(), "mnuExit").trigger(); },
                                     [this] { desk.Main().close(); }};
  for (const auto& end : ends) {
    windows::LogActive = false;
    windows::ResetLog();
    QFile::remove(Path("a.csv"));
    Begin();
    LogLocked(2);
    ASSERT_EQ(File(), kHead);
    end();
    EXPECT_EQ(File(), kHead + Lines(0, 1));
  }
}

TEST_F(LogFailureTest, AFailureOfTheLinkTriesOnceMore) {
  Begin();
  LogLocked(2);
  desk.prompts.script.push_back(platform::BoxAnswer::Ok);
  EXPECT_THROW(link::ReportLinkError(link::kCommunicationsInterrupted), platform::ProcessEnded);
  EXPECT_EQ(File(), kHead + Lines(0, 1));
}

TEST_F(LogFailureTest, TheSystemsOwnShortWritesAreCutBack) {
  Begin();
  OnNearlyFullDisk(kHead.size() + 7 + 8 + 3, [this] { Log(4); });  // two lines and a bit
  EXPECT_EQ(Status(), "Logging Enabled - file not writable, 2 lines waiting");
  EXPECT_EQ(File(), kHead + Lines(0, 1));
  Log(1);
  EXPECT_EQ(File(), kHead + Lines(0, 4));
}

}  // namespace
}  // namespace zth::testing
