#include <cstdio>
#include <fstream>
#include <random>
#include <sys/stat.h>

#include <QAction>

#include "chip/ChipState.h"
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
  QString Waiting(int lines) {
    return QString("Logging Enabled - file not writable, %1 line%2 waiting").arg(lines).arg(lines == 1 ? "" : "s");
  }
  QString Trouble() { return Desk::Text(Logging(), "lblTrouble"); }
};

TEST_F(LogFailureTest, LinesWaitInOrderAndTheStatusBarSaysSo) {
  Begin();
  Log(2);
  LogLocked(1);
  EXPECT_EQ(Status(), Waiting(1));
  EXPECT_EQ(Trouble(), "file not writable, 1 line waiting") << "live, in the window as well";
  LogLocked(3);
  EXPECT_EQ(Status(), Waiting(4));
  EXPECT_EQ(File(), kHead + LogLines(0, 1));
  Log(1);
  EXPECT_EQ(Status(), "Logging Enabled");
  EXPECT_EQ(Trouble(), "");
  EXPECT_EQ(File(), kHead + LogLines(0, 6));
  EXPECT_TRUE(desk.prompts.shown.empty());
}

// Three lines are in the file, then something happens to it, then two more lines follow.
TEST_F(LogFailureTest, WhateverHappensToTheFileEachLineIsThereOnceBelowAHeader) {
  const std::string before = kHead + LogLines(0, 2);
  const std::string anew = kHead + LogLines(3, 4);
  const auto put = [this](const QString& name, const std::string& text) {
    std::ofstream(Path(name).toStdString(), std::ios::binary) << text;
  };
  const auto putInItsPlace = [&](const std::string& text) {
    put("other", text);
    ASSERT_EQ(std::rename(Path("other").toLocal8Bit().constData(), Path("d/a.csv").toLocal8Bit().constData()), 0);
  };
  const std::string longer(2000, 'x');
  // Something happens between the check and the write, which leaves this in the file.
  const auto meanwhile = [&](const std::function<void()>& happens, const std::string& left) {
    return [&, happens, left] {
      desk.files.beforeWrite = happens;
      Job();
      EXPECT_EQ(Content(Path("d/a.csv")), left);
    };
  };
  struct Accident {
    const char* what;
    std::function<void()> happen;
    std::string file;  ///< its contents then
    const char* told;  ///< empty if there is nothing to report
  };
  const std::vector<Accident> accidents{
      {"deleted", [&] { QFile::remove(Path("d/a.csv")); }, anew, "it was gone"},
      {"rotated away", [&] { QFile::rename(Path("d/a.csv"), Path("d/a.csv.1")); }, anew, "it was gone"},
      {"emptied", [&] { QFile::resize(Path("d/a.csv"), 0); }, anew, "it had been cut short"},
      {"cut within a line", [&] { QFile::resize(Path("d/a.csv"), std::ssize(before) - 3); },
       before.substr(0, before.size() - 3) + anew, "it had been cut short"},
      {"replaced by a shorter one", [&] { putInItsPlace("mine"); }, "mine" + anew, "another file had taken its place"},
      {"replaced by a longer one", [&] { putInItsPlace(longer); }, longer + anew, "another file had taken its place"},
      {"written over", [&] { put("d/a.csv", longer); }, longer + anew, "it had been written over"},
      {"replaced by a copy", [&] { putInItsPlace(before); }, before + LogLines(3, 4), ""},
      {"on another volume of the same content", [&] { ++desk.files.devices; }, before + LogLines(3, 4), ""},
      {"extended by somebody", [&] { std::ofstream(Path("d/a.csv").toStdString(), std::ios::app) << "a note\r\n"; },
       before + "a note\r\n" + LogLines(3, 4), ""},
      {"extended, and nobody may look into it",
       [&] {
         std::ofstream(Path("d/a.csv").toStdString(), std::ios::app) << "a note\r\n";
         desk.files.unreadable = true;
       },
       before + "a note\r\n" + LogLines(3, 4), ""},
      {"not writable for a while", [&] { LogLocked(0); }, before + LogLines(3, 4), ""},
      {"gone, with a pipe in its place for a while",
       [&] {
         QFile::remove(Path("d/a.csv"));
         ASSERT_EQ(mkfifo(Path("d/a.csv").toLocal8Bit().constData(), 0600), 0);
         Job();
         EXPECT_EQ(Status(), Waiting(1)) << "it blocks nobody";
         QFile::remove(Path("d/a.csv"));
       },
       kHead + LogLines(3, 5), "it was gone"},
      {"deleted with its folder, which comes back empty",
       [&] {
         QDir(Path("d")).removeRecursively();
         Job();
         EXPECT_EQ(Status(), Waiting(1));
         QDir().mkdir(Path("d"));
       },
       kHead + LogLines(3, 5), "it was gone"},
      {"out of reach with its volume",
       [&] {
         QDir().rename(Path("d"), Path("e"));
         QDir().mkdir(Path("d"));  // what a mount leaves behind
         desk.files.volumeOf = [](const QString&) { return "/"; };
         Job();
         EXPECT_EQ(Status(), Waiting(1));
         EXPECT_TRUE(QDir(Path("d")).isEmpty()) << "nothing is put where nobody will look";
         QDir().rmdir(Path("d"));
         QDir().rename(Path("e"), Path("d"));
         desk.files.volumeOf = [this](const QString&) { return Path("d"); };
       },
       before + LogLines(3, 5), ""},
      {"deleted between a look and the write", meanwhile([&] { QFile::remove(Path("d/a.csv")); }, "(no file)"),
       kHead + LogLines(3, 5), "it was gone"},
      {"replaced between a look and the write", meanwhile([&] { putInItsPlace(longer); }, longer),
       longer + kHead + LogLines(3, 5), "another file had taken its place"},
      {"deleted, and another one comes between a look and the write",
       [&] {
         QFile::remove(Path("d/a.csv"));
         meanwhile([&] { put("d/a.csv", "mine"); }, "mine")();
       },
       "mine" + kHead + LogLines(3, 5), "it was gone"},
      {"emptied between a look and the write", meanwhile([&] { QFile::resize(Path("d/a.csv"), 0); }, ""),
       kHead + LogLines(3, 5), "it had been cut short"},
      {"deleted, with no room for a head",
       [&] {
         QFile::remove(Path("d/a.csv"));
         desk.files.space = std::ssize(kHead) - 1;
         Job();
         EXPECT_EQ(Content(Path("d/a.csv")), "");
         desk.files.space = std::ssize(kHead) + 3;
         Job();
         EXPECT_EQ(Content(Path("d/a.csv")), kHead);
         desk.files.space.reset();
       },
       kHead + LogLines(3, 6), "it was gone"},
  };
  for (const Accident& accident : accidents) {
    SCOPED_TRACE(accident.what);
    QDir(Path("d")).removeRecursively();
    QDir().mkdir(Path("d"));
    desk.files.unreadable = false;
    desk.files.volumeOf = [this](const QString&) { return Path("d"); };
    StartLog(Path("d/a.csv"), {0});
    EXPECT_EQ(Trouble(), "") << "a new log, a new start";
    Log(3);
    ASSERT_EQ(Content(Path("d/a.csv")), before);
    accident.happen();
    Job();
    Job();
    EXPECT_EQ(Content(Path("d/a.csv")), accident.file);
    EXPECT_EQ(Trouble().section(": ", 1), accident.told);
    EXPECT_EQ(Status(), Trouble().isEmpty() ? "Logging Enabled" : "Logging Enabled - " + Trouble());
    if (QFile::exists(Path("d/a.csv.1"))) {
      EXPECT_EQ(Content(Path("d/a.csv.1")), before);
    }
    Do(Logging(), "cmdLogData");
    EXPECT_EQ(Status(), "Ready");
  }
}

TEST_F(LogFailureTest, NoRunOfAccidentsLosesALineOrWritesOneTwice) {
  std::mt19937 random(4718);
  for (int run = 0; run < 200; ++run) {
    const QString path = Path("r.csv");
    QFile::remove(path);
    StartLog(path, {0});
    std::string all;  // what was moved away, then what is left
    const auto take = [&] {
      const std::string piece = QFile::exists(path) ? Content(path) : std::string();
      EXPECT_TRUE(piece.empty() || piece.starts_with(kHead)) << piece;
      all += piece;
    };
    const std::function<void()> accidents[8]{[&] { take(), QFile::remove(path); },
                                             [&] { take(), QFile::resize(path, 0); },
                                             [&] { desk.files.locked = !desk.files.locked; },
                                             [&] { desk.files.space = static_cast<std::int64_t>(random() % 80); },
                                             [&] { desk.files.space.reset(); },
                                             [&] { desk.files.beforeWrite = [&] { take(), QFile::remove(path); }; },
                                             [] {},
                                             [] {}};
    constexpr int kSteps = 40;
    for (int step = 0; step < kSteps; ++step) accidents[random() % 8](), Job();
    desk.files.locked = false;
    desk.files.space.reset();
    desk.files.beforeWrite = nullptr;
    Job();
    take();
    std::size_t at = 0;
    for (; (at = all.find(kHead, at)) != std::string::npos;) all.erase(at, kHead.size());
    ASSERT_EQ(all, LogLines(0, kSteps)) << "in run " << run;
    Do(Logging(), "cmdLogData");
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

TEST_F(LogFailureTest, AFullStoreKeepsTheOldestLinesAndTheFileShowsTheGap) {
  Begin("0");
  const auto log = [this](int lines, float value) {
    for (chip::Model.LogChannelTable[0].Value = value; lines > 0; --lines) Job();
    return Status();
  };
  desk.files.locked = true;
  EXPECT_EQ(log(100'000, 0), Waiting(100000));
  EXPECT_EQ(log(3, 0), Waiting(100000) + ", 3 lost");
  // Space for two lines: they are written, and a new line is stored again, after the mark of the gap.
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

TEST_F(LogFailureTest, NoHeaderIsWrittenBeforeLinesThatAreStillWaiting) {
  Begin();
  desk.files.space = 3;
  desk.files.cutFails = true;
  Job();
  windows::StopLog({desk.services, desk.Main()});
  desk.files.space.reset();
  EXPECT_FALSE(windows::WriteLogHead(desk.files, "Time ,"));
  EXPECT_EQ(File(), kHead + "0,0");
  desk.files.cutFails = false;
  EXPECT_TRUE(windows::WriteLogHead(desk.files, "Time ,"));
  EXPECT_EQ(File(), kHead + LogLines(0, 0) + LogHead(""));
}

TEST_F(LogFailureTest, AllFilesShareOneStore) {
  desk.files.locked = true;
  const int rounds = 4;
  for (int file = 0; file < rounds; ++file) {
    windows::Shared.LogFileName = Path(QString::number(file));
    windows::StartLog(100, desk.Main());
    for (std::int64_t line = 0; line < windows::kMostWaitingLines / rounds; ++line) Job();
    windows::StopLog({desk.services, desk.Main()});
  }
  windows::Shared.LogFileName = Path("one more");
  windows::StartLog(100, desk.Main());
  Job();
  EXPECT_EQ(Status(), Waiting(100000) + ", 1 lost");
}

TEST_F(LogFailureTest, LinesOfAStoppedLogStillGoIntoTheirFile) {
  Begin();
  desk.files.locked = true;
  Log(2);
  Desk::Press(Logging(), "cmdLogData");
  EXPECT_EQ(Status(), "Ready - file not writable, 2 lines waiting");
  desk.Advance(3000);
  EXPECT_EQ(File(), kHead);
  desk.files.locked = false;
  // Meanwhile another log may start, into another file or into the same one.
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
  EXPECT_FALSE(windows::Shared.LogActive) << "the file is not writable";
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
    windows::Shared.LogActive = false;
    windows::Shared.log = {};
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
  OnNearlyFullDisk(kHead.size() + 7 + 8 + 3, [this] { Log(4); });  // a little more than two lines
  EXPECT_EQ(Status(), Waiting(2));
  EXPECT_EQ(File(), kHead + LogLines(0, 1));
  Log(1);
  EXPECT_EQ(File(), kHead + LogLines(0, 4));
}

}  // namespace
}  // namespace zth::testing
