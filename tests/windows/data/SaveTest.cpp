#include <fstream>
#include <random>
#include <sys/stat.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLocale>
#include <QMimeData>
#include <QProgressBar>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "tests/windows/data/DataGround.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

using namespace std::string_literals;

std::string Hex(int value) {
  return "0x" + QString::number(value, 16).toUpper().toStdString();
}

/// The writable rows in the catalogue's order.
std::vector<chip::RegisterEntry> WritableRows() {
  std::vector<chip::RegisterEntry> rows;
  for (const chip::RegisterEntry& row : chip::Model.RegisterTable) {
    if (!row.ReadOnly) rows.push_back(row);
  }
  return rows;
}

class SaveTest : public DataTest {
 public:
  ~SaveTest() override { QLocale::setDefault(QLocale::c()); }

 protected:
  SaveTest() {
    std::mt19937 random(4718);
    for (auto& value : desk.board.Chip()) value = static_cast<std::uint8_t>(random());
    desk.board.TakeTraffic();
  }

  windows::ChildWindow& Save() { return desk.Open("frmSave"); }
  QTimer& Master() { return Desk::Get<QTimer>(desk.Main(), "tmrMaster"); }
  std::uint8_t Value(int reg) { return desk.board.Chip()[static_cast<std::size_t>(reg)]; }

  /// Presses "cmdsave" or "cmdRecall" and answers with that file name.
  void Use(const char* button, const QString& name) {
    desk.fileDialogs.script.push_back(name.isEmpty() ? QString() : Path(name));
    Do(Save(), button);
    EXPECT_TRUE(Master().isActive()) << "whatever came of it";
  }
  void SaveTo(const QString& name) { Use("cmdsave", name); }
  void Recall(const QString& name) { Use("cmdRecall", name); }
  void Write(const QString& name, const std::string& text) { std::ofstream(Path(name).toStdString()) << text; }
  QString Passing() { return Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage(); }
  QString Outcome() { return Desk::Text(Save(), "lblState"); }

  /// The expected contents of the whole file.
  std::string Expected(const std::string& comment, bool limited) {
    std::string text =
        "Tarnwell Silicon\r\nZTH4718 Evaluation Software\r\n\r\nSaved: 11/18/2026 at 2:40:12 AM\r\n\r\nComment : " +
        comment + "\r\n\r\nAddress\tData\tRegister\r\n{\r\n";
    for (const chip::RegisterEntry& row : WritableRows()) {
      if (limited && Value(row.Address) == row.Default) continue;
      text += Hex(row.Address) + "\t" + Hex(Value(row.Address)) + "\t // " + row.Caption + "\r\n";
    }
    return text + "}\r\n";
  }
};

TEST_F(SaveTest, WritesTheFileByteForByte) {
  QLocale::setDefault(QLocale("en_US"));  // the user's own formats of date and time
  desk.clock.SetWallTime(QDateTime(QDate(2026, 11, 18), QTime(2, 40, 12)));
  Desk::Type(Save(), "txtComment", "  bench A ");
  SaveTo("a.sav");
  EXPECT_EQ(Content(Path("a.sav")), Expected("bench A", false));
  Traffic reads;
  for (const chip::RegisterEntry& row : WritableRows()) reads.push_back(R(row.Address));
  EXPECT_EQ(desk.board.TakeTraffic(), reads);
  EXPECT_EQ(desk.Main().FindWindow("frmSave"), nullptr) << "the window goes once the file is there";
  const QString said = QString("Saved %1 registers to %2").arg(reads.size()).arg(Path("a.sav"));
  EXPECT_EQ(Passing(), said);
  EXPECT_EQ(Outcome(), said) << "and still tells when it is opened again";

  desk.board.Chip() = DefaultRegisters();
  for (const int reg : {0x4C, 0xAD, 0x01}) desk.board.Chip()[static_cast<std::size_t>(reg)] = 0;
  EXPECT_FALSE(Desk::Checked(Save(), "chkNotDefaults"));
  EXPECT_EQ(Desk::Text(Save(), "txtComment"), "");
  Desk::Check(Save(), "chkNotDefaults", true);
  SaveTo("a.sav");
  const std::string limited = Content(Path("a.sav"));
  EXPECT_EQ(limited, Expected("", true));
  EXPECT_EQ(limited.substr(limited.find('{')),
            "{\r\n0x1\t0x0\t // Configuration 1\r\n0x4C\t0x0\t // Local THERM1 Limit\r\n"
            "0x4C\t0x0\t // 1.5V2 (ICH) High Limit\r\n}\r\n");
}

TEST_F(SaveTest, ReadsTheChipBeforeItAsksForTheNameAndStopsTheTimerMeanwhile) {
  bool active = true;
  desk.events.onPaint = [&] {
    active = active && Master().isActive();
    desk.clock.Advance(200);  // timer events that fire during painting
  };
  windows::ChildWindow& window = Save();
  SaveTo("");
  EXPECT_FALSE(active);
  EXPECT_GT(desk.events.paints, 90);
  EXPECT_EQ(desk.board.TakeTraffic().size(), WritableRows().size()) << "nothing but the save's own reads";
  EXPECT_EQ(desk.Main().FindWindow("frmSave"), &window) << "a cancelled save leaves the window";
  const platform::FileQuestion& question = desk.fileDialogs.shown.at(0);
  EXPECT_EQ(question.kind, platform::FileQuestion::Kind::Save);
  EXPECT_EQ(question.filter, "Text Files (*.sav)|*.sav");
  EXPECT_EQ(question.folder, desk.process.folder);
}

TEST_F(SaveTest, AFileThatCannotBeWrittenLeavesTheOldOne) {
  Write("a.sav", "precious");
  desk.files.space = 100;
  SaveTo("a.sav");
  desk.files.space.reset();
  EXPECT_EQ(Content(Path("a.sav")), "precious");
  EXPECT_NE(desk.Main().FindWindow("frmSave"), nullptr);
  EXPECT_EQ(Outcome(), "Not saved: a.sav could not be written");
  OnNearlyFullDisk(1000, [this] { SaveTo("a.sav"); });
  EXPECT_EQ(Content(Path("a.sav")), "precious");
  SaveTo("no folder/a.sav");
  EXPECT_EQ(QDir(Path("")).entryList(QDir::Files).size(), 1) << "nothing is left lying about";
}

TEST_F(SaveTest, RecallGivesEveryWritableRegisterItsValueBack) {
  for (const bool smbus : {false, true}) {
    if (smbus) Desk::Get<QComboBox>(desk.Main(), "cmbDevices").setCurrentIndex(1);
    SaveTo("a.sav");
    const FakeBoard::Registers before = desk.board.Chip();
    desk.board.Chip() = DefaultRegisters();
    desk.board.TakeTraffic();
    Recall("a.sav");
    Traffic expected;
    for (const chip::RegisterEntry& row : WritableRows()) {
      expected.push_back(W(row.Address, before[static_cast<std::size_t>(row.Address)]));
    }
    EXPECT_EQ(Writes(desk.board.TakeTraffic()), expected);
    EXPECT_EQ(Outcome(), QString("%1 registers written").arg(expected.size()));
    EXPECT_EQ(Passing(), Outcome() + " (" + Path("a.sav") + ")");
    EXPECT_EQ(Desk::Text(Reopen("frmSave"), "lblState"), Passing());
    EXPECT_NE(desk.Main().FindWindow("frmSave"), nullptr);
  }
}

TEST_F(SaveTest, ABrokenFileStopsSilentlyWhereItBreaks) {
  const std::string broken = " written; the file breaks off before its \"}\"";
  for (const auto& [text, writes, outcome] : std::initializer_list<std::tuple<const char*, const char*, std::string>>{
           {"{\n0x28\t0x7\t\n}", "W28=07", "1 register written"},
           {"{\n0x28\t0x7\t\n0x29\t0x8\t\n0x2A", "W28=07 W29=08", "2 registers" + broken},
           {"no brace", "", "0 registers" + broken},
           {"{\n0x3E\t0x99\t\n}", "W3E=99", "1 register written"},  // read-only, and sent all the same
       }) {
    Write("b.sav", text);
    Recall("b.sav");
    EXPECT_EQ(desk.board.TakeTraffic(), T(writes)) << text;
    EXPECT_EQ(Outcome().toStdString(), outcome);
  }
  Write("wide.sav", "\xFF\xFE{\0\n\0\x30\0x\0\x31\0\t\0\x30\0x\0\x32\0\n\0}\0"s);
  Recall("wide.sav");
  EXPECT_EQ(Outcome(), "Nothing written: wide.sav is in UTF-16; save it as plain text or in UTF-8");
  Recall("not there.sav");
  EXPECT_EQ(Outcome(), "Nothing written: not there.sav could not be opened");
  ASSERT_EQ(mkfifo(Path("pipe.sav").toLocal8Bit().constData(), 0600), 0);
  Recall("pipe.sav");
  Recall("");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST_F(SaveTest, AHugeFileEndsInBoundedMemory) {
  QFile file(Path("huge.sav"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("{\n0x28\t0x7\t\n");
  ASSERT_TRUE(file.resize(std::int64_t{1} << 36));  // a sparse file: its zeros are not on the disk
  file.close();
  Recall("huge.sav");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{W(0x28, 7)});
}

TEST_F(SaveTest, WhileItRecallsTheBarAndTheRegisterShowAndNothingElseReachesTheLink) {
  desk.board.Chip() = DefaultRegisters();
  SaveTo("a.sav");
  windows::ChildWindow& window = Save();
  windows::ChildWindow& other = desk.Open("frmTherm");
  desk.Open("frmSave");
  desk.board.TakeTraffic();
  Traffic expected;
  for (const chip::RegisterEntry& row : WritableRows()) expected.push_back(W(row.Address, Value(row.Address)));
  std::set<QString> names;
  int last = 0;
  desk.events.onPump = [&] {
    const int before = std::exchange(last, Desk::Get<QProgressBar>(window, "prgWork").value());
    EXPECT_GE(last, before);
    names.insert(Desk::Text(window, "lblState"));
    EXPECT_FALSE(Master().isActive());
    desk.clock.Advance(500);
    // Everything that a user or an assistive tool can operate.
    for (const char* button : {"cmdsave", "cmdRecall", "cmdClose"}) Desk::Get<QAbstractButton>(window, button).click();
    for (auto* button : other.findChildren<QAbstractButton*>()) button->click();
    for (auto* action : desk.Main().findChildren<QAction*>()) action->trigger();
    QTest::keyClick(&window, Qt::Key_Return);
    QTest::keyClick(&desk.Main(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(Desk::Get<QWidget>(desk.Main(), "cmbDevices").isEnabled());
  };
  desk.clock.lookUs = 250'000;
  Recall("a.sav");
  desk.clock.lookUs = 1;
  desk.events.onPump = nullptr;
  EXPECT_TRUE(names.contains("Writing 0x54  Local/Remote 1 Hyst"));
  EXPECT_GT(names.size(), 70U);
  EXPECT_EQ(Writes(desk.board.TakeTraffic()), expected);
  EXPECT_EQ(desk.Main().FindWindow("frmRegMap"), nullptr);
  for (const char* button : {"cmdsave", "cmdRecall", "cmdClose"}) {
    EXPECT_TRUE(Desk::Get<QAbstractButton>(window, button).isEnabled()) << button;
  }
  EXPECT_FALSE(Desk::Get<QAbstractButton>(window, "cmdCancel").isEnabled());
  Desk::Get<QAction>(desk.Main(), "mnuRegMap").trigger();
  EXPECT_NE(desk.Main().FindWindow("frmRegMap"), nullptr) << "all can be used again";
}

TEST_F(SaveTest, ARecallIsCancelledBetweenTwoRegistersAndSaysHowManyItHasWritten) {
  Write("a.sav", "{\n0x28\t0x7\n0x29\t0x8\n0x2A\t0x9\n0x2B\t0xA\n}");
  int pumps = 0;
  desk.events.onPump = [&] { ++pumps; };
  Recall("a.sav");
  EXPECT_EQ(pumps, 0) << "what takes no time is not worth an interruption";
  desk.clock.lookUs = 250'000;
  const auto button = [this] { Desk::Press(Save(), "cmdCancel"); };
  const auto escape = [this] { QTest::keyClick(&Save(), Qt::Key_Escape); };
  const auto close = [this] { Save().Unload(); };
  const auto gone = [this] {
    Save().Unload();
    Desk::Settle();
  };
  struct Row {
    std::function<void()> act;
    int pump;
    const char* writes;
    QString outcome;
    bool stays;
  };
  const std::vector<Row> rows{{button, 1, "", "Cancelled after 0 registers written", true},
                              {button, 2, "W28=07", "Cancelled after 1 register written", true},
                              {escape, 4, "W28=07 W29=08 W2A=09", "Cancelled after 3 registers written", true},
                              {close, 3, "W28=07 W29=08", "Cancelled after 2 registers written", false},
                              {gone, 3, "W28=07 W29=08", "Cancelled after 2 registers written", false},
                              {[] {}, 1, "W28=07 W29=08 W2A=09 W2B=0A", "4 registers written", true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.outcome.toStdString());
    desk.Open("frmSave");
    desk.board.TakeTraffic();
    pumps = 0;
    desk.events.onPump = [&] {
      if (++pumps == row.pump) row.act();
    };
    desk.fileDialogs.script.push_back(Path("a.sav"));
    Do(Save(), "cmdRecall");
    desk.events.onPump = nullptr;
    EXPECT_EQ(desk.board.TakeTraffic(), T(row.writes));
    EXPECT_EQ(Passing(), row.outcome + " (" + Path("a.sav") + ")");
    EXPECT_TRUE(Master().isActive());
    Desk::Settle();
    EXPECT_EQ(desk.Main().FindWindow("frmSave") != nullptr, row.stays);
    EXPECT_TRUE(Outcome().startsWith(row.outcome));
    QTest::keyClick(&Save(), Qt::Key_Escape);
    Desk::Settle();
    EXPECT_EQ(desk.Main().FindWindow("frmSave"), nullptr) << "Escape closes again";
  }
  desk.events.onPump = [this] { desk.Main().close(); };
  for (const char* pick : {"&Cancel", "&Cancel", "E&xit"}) desk.prompts.picks.push_back(pick);
  desk.fileDialogs.script.push_back(Path("a.sav"));
  Do(Save(), "cmdRecall");
  EXPECT_EQ(desk.board.TakeTraffic(), T("W28=07 W29=08")) << "asked each time, and gone on when told to";
  EXPECT_TRUE(desk.prompts.choicesShown.back().text.startsWith("A recall is running."));
  EXPECT_FALSE(windows::Shared.RecallRunning);
  EXPECT_FALSE(Master().isActive()) << "closed is closed";
}

TEST_F(SaveTest, ADroppedFileIsChosenInTheDialogAndFilesUsedBeforeAreOffered) {
  SaveTo("a.sav");
  desk.board.TakeTraffic();
  auto& window = Save();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(Path("a.sav"))});
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &enter);
  desk.fileDialogs.script.push_back(QString());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &drop);
  Desk::Settle();
  EXPECT_EQ(desk.fileDialogs.shown.back().suggestion, Path("a.sav"));
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "a drop alone writes nothing";
  Do(window, "cmdRecent");
  Desk::Get<QAction>(window, "mnuFile(0)").trigger();
  Desk::Settle();
  EXPECT_EQ(Writes(desk.board.TakeTraffic()).size(), WritableRows().size());
}

}  // namespace
}  // namespace zth::testing
