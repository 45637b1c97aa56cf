#include <fstream>
#include <random>
#include <set>
#include <sys/stat.h>

#include <QComboBox>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QTimer>

#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "tests/windows/data/DataGround.h"

namespace zth::testing {
namespace {

std::string Hex(int value) {
  return "0x" + QString::number(value, 16).toUpper().toStdString();
}

/// The writable rows in the catalogue's order.
std::vector<chip::RegisterEntry> WritableRows() {
  std::vector<chip::RegisterEntry> rows;
  for (const chip::RegisterEntry& row : chip::RegisterTable) {
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

  /// Presses "cmdsave" or "cmdRecall" and answers with that name.
  void Use(const char* button, const QString& name) {
    desk.fileDialogs.script.push_back(name.isEmpty() ? QString() : Path(name));
    Do(Save(), button);
    EXPECT_TRUE(Master().isActive()) << "whatever came of it";
  }
  void SaveTo(const QString& name) { Use("cmdsave", name); }
  void Recall(const QString& name) { Use("cmdRecall", name); }
  void Write(const QString& name, const std::string& text) { std::ofstream(Path(name).toStdString()) << text; }
  QString Outcome() { return Desk::Text(Save(), "lblState"); }

  /// The whole file as it is to be.
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

TEST_F(SaveTest, ReadsTheChipBeforeItAsksForTheNameAndHoldsTheTimerMeanwhile) {
  bool active = true;
  desk.events.onPaint = [&] {
    active = active && Master().isActive();
    desk.clock.Advance(200);  // the timer events that painting lets through
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
    EXPECT_NE(desk.Main().FindWindow("frmSave"), nullptr);
  }
}

TEST_F(SaveTest, ABrokenFileStopsWhereItBreaksWithoutAWord) {
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
  ASSERT_TRUE(file.resize(std::int64_t{1} << 36));  // no disk holds its zeros
  file.close();
  Recall("huge.sav");
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{W(0x28, 7)});
}

TEST_F(SaveTest, WhileItRecallsTheBarAndTheRegisterShowAndNoTickReachesTheLink) {
  desk.board.Chip() = DefaultRegisters();
  SaveTo("a.sav");
  windows::ChildWindow& window = Save();
  std::set<QString> names;
  int last = 0;
  desk.events.onPaint = [&] {
    const int before = std::exchange(last, Desk::Get<QProgressBar>(window, "prgWork").value());
    EXPECT_GT(last, before);
    names.insert(Desk::Text(window, "lblState"));
    EXPECT_FALSE(Master().isActive());
    desk.clock.Advance(500);
  };
  desk.board.TakeTraffic();
  Recall("a.sav");
  EXPECT_TRUE(names.contains("Writing 0x54  Local/Remote 1 Hyst"));
  EXPECT_GT(names.size(), 70U);
  const Traffic traffic = desk.board.TakeTraffic();
  EXPECT_EQ(std::ranges::count(traffic, "usb B 58:88+8"), 0) << "no measurement";
}

}  // namespace
}  // namespace zth::testing
