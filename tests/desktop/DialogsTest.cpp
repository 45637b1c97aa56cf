#include <sys/stat.h>

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "tests/desktop/RealDesktop.h"
#include "tests/support/EveryWindow.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

/// What happens while a file dialog is open.
enum class While { Accepted, Cancelled, Escape, WindowCloses, ProgramCloses, OverwriteBoxAndWindowCloses };

/// A file dialog of the program: its window and how a user opens it.
struct Asker {
  std::string window;
  std::string control;  ///< a button, or an entry of the menu of a chart as "stpGraph(3)/mnuSavePng"
  const char* file;     ///< the file name to choose
};

std::ostream& operator<<(std::ostream& out, const Asker& asker) {
  return out << asker.window << ' ' << asker.control;
}

std::vector<Asker> EveryAsker() {
  std::vector<Asker> all{
      {"frmSave", "cmdsave", "a.sav"}, {"frmSave", "cmdRecall", "there.sav"}, {"frmLogging", "cmdLogData", "a.csv"}};
  for (const auto& [window, chart] : {std::pair("frmGraph", "stpGraph(3)"), std::pair("frmAutoGraph", "stpGraph"),
                                      std::pair("frmDynamicTmin", "Strip2(0)")}) {
    all.push_back({window, std::string(chart) + "/mnuSavePng", "a.png"});
    all.push_back({window, std::string(chart) + "/mnuSaveSvg", "a.svg"});
    all.push_back({window, std::string(chart) + "/mnuSaveCsv", "a.csv"});
  }
  return all;
}

/// Selects an entry of the open menu by keyboard.
void PickByKey(QMenu& menu, const QString& name) {
  QAction* action = menu.findChild<QAction*>(name);
  ASSERT_NE(action, nullptr) << name.toStdString();
  menu.setActiveAction(action);
  QTest::keyClick(&menu, Qt::Key_Return);
}

void Bring(windows::ChildWindow& window, const Asker& asker) {
  const QString control = QString::fromStdString(asker.control);
  if (control == "cmdLogData") Desk::Press(window, "cmdSelectAll");
  if (!control.contains('/')) {
    return QTest::mouseClick(&Desk::Get<QPushButton>(window, control), Qt::LeftButton);
  }
  auto& chart = Desk::Get<widgets::Strip>(window, control.section('/', 0, 0));
  QTest::mouseClick(&chart, Qt::RightButton, {}, chart.rect().center());
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  PickByKey(*menu, control.section('/', 1, 1));
}

void Choose(QWidget& dialog, const QString& file) {
  dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
  QTest::keyClick(&dialog, Qt::Key_Return);
}

class FileDialogs : public ::testing::TestWithParam<Asker> {};

TEST_P(FileDialogs, AreAnsweredCancelledAndLoseTheirWindow) {
  const Asker& asker = GetParam();
  using enum While;
  for (const While what : {Accepted, Cancelled, Escape, WindowCloses, ProgramCloses, OverwriteBoxAndWindowCloses}) {
    SCOPED_TRACE(static_cast<int>(what));
    RealDesktop real;
    const bool exists = what == OverwriteBoxAndWindowCloses || asker.control == "cmdRecall";
    ASSERT_TRUE(!exists || real.files.Replace(real.Path(asker.file), "{\n0x30\t0x05\n}"));
    real.Start();
    const QPointer window = real.Open(asker.window);
    int dialogs = 0;
    const ModalHand hand([&](QWidget& modal) {
      if (qobject_cast<QMessageBox*>(&modal) != nullptr) return RealDesktop::CloseFrame(*window);
      ++dialogs;
      EXPECT_EQ(dynamic_cast<QFileDialog&>(modal).directory().path(), real.folder.path());
      if (what == Accepted || what == OverwriteBoxAndWindowCloses) Choose(modal, asker.file);
      if (what == Cancelled) dynamic_cast<QDialog&>(modal).reject();
      if (what == Escape) QTest::keyClick(&modal, Qt::Key_Escape);
      if (what == WindowCloses) RealDesktop::CloseFrame(*window);
      if (what == ProgramCloses) real.desk.Main().close();
    });
    real.Do([&] { Bring(*window, asker); });
    EXPECT_EQ(dialogs, 1);
    // A log extends an existing file, and a recall opens one, so there is no box during which to close the window.
    const bool accepted = what == Accepted || (what == OverwriteBoxAndWindowCloses && hand.Seen() == 1);
    if (!exists) {
      EXPECT_EQ(QFile::exists(real.Path(asker.file)), accepted);
    }
    const bool closed =
        what == WindowCloses || what == ProgramCloses || hand.Seen() > 1 || (accepted && asker.control == "cmdsave");
    EXPECT_EQ(window == nullptr, closed) << "deleted as soon as its handler is through";
    if (what == OverwriteBoxAndWindowCloses && hand.Seen() > 1) {
      EXPECT_EQ(real.files.Read(real.Path(asker.file), 5), "{\n0x3");
    }
    real.ExpectAlive();
  }
}

INSTANTIATE_TEST_SUITE_P(All, FileDialogs, ::testing::ValuesIn(EveryAsker()),
                         [](const auto& row) { return row.param.window + std::to_string(row.index); });

TEST(Charts, MayCloseUnderTheirMenuOrDialogAndReportAFullDisk) {
  for (const bool dialog : {false, true}) {
    RealDesktop real;
    real.Start();
    auto& window = real.desk.Open("frmAutoGraph");
    const QPointer chart = &Desk::Get<widgets::Strip>(window, "stpGraph");
    const ModalHand hand([&](QWidget&) { delete chart; });
    real.Do([&] {
      chart->OpenMenu({});
      if (!dialog) return delete chart;
      PickByKey(*chart->findChild<QMenu*>("mnuStrip"), "mnuSavePng");
    });
    EXPECT_EQ(hand.Seen(), dialog ? 1 : 0);
    EXPECT_EQ(chart, nullptr);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  }
  // Only the seam for files writes: a file that it rejects is not in the folder, and not reported as saved.
  RealDesktop real;
  FailingFiles files;
  files.space = 1;
  widgets::Strip strip([] { return 0.0; }, nullptr,
                       widgets::StripOutlets(real.fileDialogs, files, real.clipboard, real.folder.path()));
  for (const char* name : {"a.png", "a.svg", "a.csv"}) {
    EXPECT_FALSE(strip.SaveTo(real.Path(name))) << name;
    EXPECT_FALSE(QFile::exists(real.Path(name))) << name;
  }
}

TEST(FileDialogs, StartInTheFolderUsedLastIfTheProgramsFolderIsNotWritable) {
  RealDesktop real;
  const QTemporaryDir bench;
  ASSERT_TRUE(real.files.Replace(bench.filePath("monday.sav"), "{\n}"));
  real.desk.process.folder = real.Path("not there");
  real.Start();
  std::vector<std::string> begun;
  const auto ask = [&](const Asker& asker, const QString& answer) {
    const ModalHand hand([&](QWidget& modal) {
      auto& dialog = dynamic_cast<QFileDialog&>(modal);
      begun.push_back(dialog.directory().path().toStdString());
      answer.isEmpty() ? dialog.reject() : Choose(dialog, answer);
    });
    real.Do([&] { Bring(real.desk.Open(QString::fromStdString(asker.window)), asker); });
  };
  ask({"frmSave", "cmdRecall", ""}, bench.filePath("monday.sav"));
  for (const Asker& asker : EveryAsker()) ask(asker, {});
  ASSERT_EQ(begun.size(), EveryAsker().size() + 1);
  EXPECT_NE(begun[0], bench.path().toStdString());
  for (std::size_t i = 1; i < begun.size(); ++i) EXPECT_EQ(begun[i], bench.path().toStdString()) << EveryAsker()[i - 1];
}

TEST(Start, DoesNotHangOnAPipeInPlaceOfTheSettings) {
  RealDesktop real;
  const QString file = real.home.filePath("settings.conf");
  ASSERT_TRUE(QFile::remove(file));
  ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
  real.Start();
  EXPECT_NE(real.desk.Main().FindWindow("frmEasySetup"), nullptr) << "all settings have their defaults";
  real.Do([&] { real.desk.Main().close(); });
}

}  // namespace
}  // namespace zth::testing
