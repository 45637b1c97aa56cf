#include <fstream>
#include <sstream>

#include <QFile>
#include <QStatusBar>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "link/USBStuff.h"
#include "shell/frmMain.h"
#include "tasks/Recorder.h"
#include "tasks/TasksState.h"
#include "tasks/TrafficReader.h"
#include "tests/support/Desk.h"

namespace zth::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Recording : public ::testing::Test {
 protected:
  Recording() {
    desk.process.variables["ZTH4718_RECORD"] = file;
    desk.board.boardNames["smbus"] = "PC host";
    desk.board.boardNames["USBFunctions"] = "Adapter";
  }

  static std::string Content(const QString& path) {
    std::ifstream in(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::string Content() const { return Content(file); }

  /// The calls in a file; -1 if it cannot be read.
  static int Calls(std::string text) {
    tasks::TrafficReader reader([&text] { return std::exchange(text, {}); });
    int calls = 0;
    while (reader.Next()) ++calls;
    return reader.Fault().empty() ? calls : -1;
  }
  static int Held() { return static_cast<int>(tasks::Work.traffic->End()); }

  QTemporaryDir folder;
  QString file = folder.filePath("it.txt");
  Desk desk;
};

TEST_F(Recording, HoldsEachCallFromTheFirstOnAsItEnds) {
  desk.Start();
  EXPECT_THAT(Content(), StartsWith("# ZTH4718 bus traffic 1\n"
                                    "# started 2026-03-01T08:00:00.000Z board \"PC host\" program 1.0.7\n"
                                    "# smbus failures unknown\n"
                                    "0.000000 smbus r 00 00 -> ff ; start\n"));
  EXPECT_THAT(Content(), HasSubstr("# board \"Adapter\"\n0.000004 usb firmware -> 1 ; start\n"));
  EXPECT_EQ(Calls(Content()), Held());
  link::ReadRegister(0x58, 0x3E);
  EXPECT_TRUE(Content().ends_with(" usb r 58 3e -> 41\n"));
  tasks::Work.traffic->AddNote("here", 0);
  EXPECT_TRUE(Content().ends_with(" -> 41\n# note here\n"));
  EXPECT_EQ(tasks::RecordingTrouble(), "");
}

TEST_F(Recording, HoldsTheCallThatEndsTheProgram) {
  desk.Start();
  desk.board.failFrom = 0;
  desk.prompts.script = {platform::BoxAnswer::Ok};
  EXPECT_THROW(link::ReadRegister(0x58, 0x3E), platform::ProcessEnded);
  EXPECT_TRUE(Content().ends_with(" usb r 58 3e -> fail -5\n"));
}

TEST_F(Recording, GoesOnWhenTheStartBeginsAnew) {
  desk.board.firmwareResult = 0;
  desk.board.loadErrors["smbus"] = "File not found";
  desk.prompts.script = {platform::BoxAnswer::TryAgain};
  desk.prompts.whileShown = [this] { desk.board.firmwareResult = 1; };
  desk.Start();
  EXPECT_THAT(Content(),
              AllOf(HasSubstr("0.000000 usb firmware -> fail ; start\n"), HasSubstr(" usb firmware -> 1 ; start\n")));
  EXPECT_EQ(Calls(Content()), Held());
}

TEST_F(Recording, AFullDiskEndsItAtAWholeLineAndIsTold) {
  desk.Start();
  desk.files.space = 100;
  desk.Advance(1000);
  EXPECT_TRUE(Content().ends_with("\n"));
  const int recorded = Calls(Content());
  EXPECT_GT(recorded, 0);
  EXPECT_LT(recorded, Held());
  const auto* status = desk.Main().findChild<QStatusBar*>();
  EXPECT_EQ(status->currentMessage().toStdString(),
            "The recording to it.txt has ended after " + std::to_string(recorded) + " lines: the disk is full");
  desk.files.space.reset();
  desk.Advance(1000);
  EXPECT_EQ(Calls(Content()), recorded) << "no gap";
}

TEST_F(Recording, ReplacesARecordingButNoOtherFile) {
  std::ofstream(file.toStdString()) << "# ZTH4718 bus traffic 1\n# note old\n";
  desk.Start();
  EXPECT_EQ(Calls(Content()), Held());
  EXPECT_EQ(Content().find("old"), std::string::npos);
}

TEST_F(Recording, AnotherFileStaysAsItIs) {
  std::ofstream(file.toStdString()) << "dear diary";
  desk.Start();
  desk.Advance(100);
  EXPECT_EQ(Content(), "dear diary");
  EXPECT_EQ(tasks::RecordingTrouble(), "The recording to it.txt has ended: the file is there and is no recording");
}

TEST_F(Recording, BeyondItsBoundItGoesOnInASecondFileWhichBeginsAnewWhenItIsFull) {
  desk.process.variables["ZTH4718_RECORD_MB"] = "1";
  desk.Start();
  constexpr std::size_t kMegabyte = 1024 * 1024;
  const std::string note(1500, 'x');
  while (!QFile::exists(file + ".2")) tasks::Work.traffic->AddNote(note, 0);
  const auto second = [this] { return Content(file + ".2"); };
  EXPECT_EQ(Calls(Content() + second()), Held()) << "nothing is lost between them";
  const int calls = Calls(Content());
  EXPECT_THAT(second(), HasSubstr("# part 2, after " + std::to_string(calls) + " lines\n"));
  for (int i = 0; i < 1000; ++i) tasks::Work.traffic->AddNote(note, 0);
  EXPECT_LE(Content().size(), kMegabyte);
  EXPECT_LE(second().size(), kMegabyte);
  EXPECT_THAT(second(), HasSubstr("# part 3, after "));
  EXPECT_GT(Calls(second()), 0);
  EXPECT_EQ(Calls(Content()), calls);
}

TEST_F(Recording, ABoundThatIsNoneIsTold) {
  desk.process.variables["ZTH4718_RECORD_MB"] = "much";
  desk.Start();
  EXPECT_EQ(tasks::RecordingTrouble(), "ZTH4718_RECORD_MB is no number from 1 to 256: it bounds nothing");
  EXPECT_EQ(Calls(Content()), Held());
}

TEST_F(Recording, WithoutTheVariableThereIsNone) {
  desk.process.variables.clear();
  desk.Start();
  EXPECT_EQ(tasks::Work.recorder, nullptr);
  EXPECT_EQ(desk.files.appends, 0);
}

}  // namespace
}  // namespace zth::testing
