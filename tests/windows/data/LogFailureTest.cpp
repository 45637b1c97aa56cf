#include <chrono>
#include <random>
#include <sys/stat.h>
#include <thread>

#include <QAction>
#include <QProcess>

#include "chip/Measurements.h"
#include "link/LinkErrors.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"
#include "windows/data/LogJob.h"

namespace zth::testing {
namespace {

const std::string kHead = LogHead("Local Temp ,");

class LogFailureTest : public DataTest {
 protected:
  void Begin(const QString& period = "100") { StartLog(Path("a.csv"), {0}, period); }
  void Job() { windows::RunLogJob({desk.services, desk.Main()}); }
  /// Lets lines come while the file is not writable.
  void LogLocked(int lines) {
    desk.files.locked = true;
    while (lines-- > 0) Job();
    desk.files.locked = false;
  }
  std::string File() { return Content(Path("a.csv")); }
  QString Waiting(int lines) { return QString("Logging Enabled - file not writable, %1 lines waiting").arg(lines); }
};

TEST_F(LogFailureTest, LinesWaitInOrderAndTheStatusBarTells) {
  Begin();
  Log(2);
  LogLocked(1);
  EXPECT_EQ(Status(), Waiting(1));
  LogLocked(3);
  EXPECT_EQ(Status(), Waiting(4));
  EXPECT_EQ(File(), kHead + LogLines(0, 1));
  Log(1);
  EXPECT_EQ(Status(), "Logging Enabled");
  EXPECT_EQ(File(), kHead + LogLines(0, 6));
  EXPECT_TRUE(desk.prompts.shown.empty());
}

TEST_F(LogFailureTest, AFileThatGoesAwayOnTheDiskIsWaitedForTheSameWay) {
  QDir().mkdir(Path("share"));
  StartLog(Path("share/a.csv"), {0});
  Log(1);
  ASSERT_TRUE(QDir().rename(Path("share"), Path("unplugged")));
  Log(2);
  EXPECT_EQ(Status(), Waiting(2));
  ASSERT_TRUE(QDir().rename(Path("unplugged"), Path("share")));
  Log(1);
  EXPECT_EQ(Content(Path("share/a.csv")), kHead + LogLines(0, 3));
  // Something else than a file under that name blocks nobody.
  QFile::remove(Path("share/a.csv"));
  ASSERT_EQ(mkfifo(Path("share/a.csv").toLocal8Bit().constData(), 0600), 0);
  Log(1);
  EXPECT_EQ(Status(), Waiting(1));
}

TEST_F(LogFailureTest, AFullDiskNeverLeavesAPieceOfALine) {
  Begin();
  const std::string full = LogLines(0, 12);
  for (std::size_t space = 0; space <= full.size(); ++space) {
    // All of it anew for each: twelve lines wait and find so much room.
    SCOPED_TRACE(space);
    windows::ResetLog();
    QFile::remove(Path("b.csv"));
    windows::LogFileName = Path("b.csv");
    windows::StartLog(100, desk.Main());
    LogLocked(12);
    desk.files.space = static_cast<std::int64_t>(space);
    Job();
    const std::string standing = Content(Path("b.csv"));
    ASSERT_EQ(standing, full.substr(0, full.rfind('\n', space == 0 ? 0 : space - 1) + 1));
    ASSERT_EQ(*desk.files.space, static_cast<std::int64_t>(space - standing.size()));
    desk.files.space.reset();
    Job();
    ASSERT_EQ(Content(Path("b.csv")), LogLines(0, 13));
    ASSERT_EQ(Status(), "Logging Enabled");
  }
}

TEST_F(LogFailureTest, ATornLineThatCannotBeCutAtOnceIsCutBeforeAnythingElse) {
  Begin();
  Log(1);
  desk.files.space = 3;
  desk.files.cutFails = true;
  Log(2);
  EXPECT_EQ(File(), kHead + LogLines(0, 0) + ".1,");
  EXPECT_EQ(Status(), Waiting(2));
  desk.files.space.reset();
  Log(1);
  EXPECT_EQ(File(), kHead + LogLines(0, 0) + ".1,") << "nothing is written behind it";
  desk.files.cutFails = false;
  Log(1);
  EXPECT_EQ(File(), kHead + LogLines(0, 4));
}

TEST_F(LogFailureTest, AFullStoreKeepsTheOldestAndTheFileTellsTheGap) {
  Begin("0");
  const auto log = [this](int lines, float value) {
    for (chip::LogChannelTable[0].Value = value; lines > 0; --lines) Job();
    return Status();
  };
  desk.files.locked = true;
  EXPECT_EQ(log(100'000, 0), Waiting(100000));
  EXPECT_EQ(log(3, 0), Waiting(100000) + ", 3 lost");
  // Room for two lines: they go out, and a line comes into the store again, behind the mark of the gap.
  desk.files.locked = false;
  desk.files.space = 2 * 7;
  EXPECT_EQ(log(1, 7), Waiting(100000));
  EXPECT_EQ(log(1, 8), Waiting(100000) + ", 1 lost");
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
  EXPECT_EQ(File(), kHead + LogLines(0, 1));
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
  EXPECT_EQ(File(), kHead + LogLines(0, 1) + kHead + LogLines(0, 0) + kHead);
}

TEST_F(LogFailureTest, EveryEndTriesOnceMore) {
  const std::function<void()> ends[]{[this] { Desk::Get<QAction>(desk.Main(), "mnuExit").trigger(); },
                                     [this] { desk.prompts.picks.push_back("E&xit"), desk.Main().close(); },
                                     [this] {
                                       desk.prompts.script.push_back(platform::BoxAnswer::Ok);
                                       EXPECT_THROW(link::ReportLinkError(link::kCommunicationsInterrupted),
                                                    platform::ProcessEnded);
                                     }};
  for (const auto& end : ends) {
    windows::LogActive = false;
    windows::ResetLog();
    QFile::remove(Path("a.csv"));
    Begin();
    LogLocked(2);
    ASSERT_EQ(File(), kHead);
    end();
    EXPECT_EQ(File(), kHead + LogLines(0, 1));
  }
}

TEST_F(LogFailureTest, TheSystemsOwnShortWritesAreCutBack) {
  Begin();
  OnNearlyFullDisk(kHead.size() + 7 + 8 + 3, [this] { Log(4); });  // two lines and a bit
  EXPECT_EQ(Status(), Waiting(2));
  EXPECT_EQ(File(), kHead + LogLines(0, 1));
  Log(1);
  EXPECT_EQ(File(), kHead + LogLines(0, 4));
}

// The kernel's own end of a process, at moments spread over some thousand lines.
TEST(LogKill, AHundredKillsLeaveWholeLinesAndNoneMissing) {
  const QTemporaryDir folder;
  std::string row;
  for (int i = 0; i < chip::kLogChannels; ++i) row += ".3333333 ,";
  const std::string head = LogHead("");
  std::string log = head;  // as far as any process came
  std::mt19937 random(4718);
  for (int kill = 0, line = 0; kill < 100; ++kill) {
    const QString path = folder.filePath(QString("%1.csv").arg(kill));
    QProcess victim;
    victim.start(LOG_VICTIM, {path});
    ASSERT_TRUE(victim.waitForReadyRead());
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
    ::kill(static_cast<pid_t>(victim.processId()), SIGKILL);
    ASSERT_TRUE(victim.waitForFinished());
    ASSERT_EQ(victim.exitStatus(), QProcess::CrashExit);

    const std::string found = Content(path);
    for (; log.size() < found.size(); ++line) log += LogLines(line, line, row, 100);
    ASSERT_EQ(found, log.substr(0, found.size())) << "the last line alone may be torn";
    const auto lines = std::count(found.begin() + std::ssize(head), found.end(), '\n');
    const auto told = victim.readAllStandardOutput().size();
    ASSERT_TRUE(lines == told || lines == told + 1) << lines << " lines, told of " << told;
  }
}

}  // namespace
}  // namespace zth::testing
