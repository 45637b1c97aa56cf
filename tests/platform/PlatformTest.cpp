#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "platform/DesktopParts.h"
#include "platform/PathBytes.h"

namespace zth::platform {
namespace {

constexpr uid_t kNobody = 65534;

TEST(IniSettings, LastOverRunsAndCanBeEditedByHand) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("ZTH4718 Evaluation Software.conf");
  EXPECT_EQ(IniSettings(file).Get("MainLeft", "1000"), "1000");
  IniSettings(file).Put("MainLeft", "-60");
  EXPECT_EQ(IniSettings(file).Get("MainLeft", "1000"), "-60");

  QFile text(file);
  ASSERT_TRUE(text.open(QIODevice::ReadWrite));
  EXPECT_EQ(text.readAll(), QByteArray("[Settings]\nMainLeft=-60\n"));
  text.resize(0);
  text.write("[Settings]\nMainLeft = 250\nOther=kept, too\n");
  text.close();
  IniSettings(file).Put("MainTop", "90");
  EXPECT_EQ(IniSettings(file).Get("MainLeft", ""), "250");
  EXPECT_EQ(IniSettings(file).Get("Other", ""), "kept, too");
}

/// Puts something else in place of a settings file. The file and its folder belong to the test.
using Spoil = void (*)(const QString& file);

TEST(IniSettings, TouchOnlyTheirOwnFile) {
  // Not as root, because permissions do not stop root. The store checks the effective user, a file check the real one.
  const bool root = geteuid() == 0;
  const std::pair<const char*, Spoil> rows[]{
      {"a pipe", [](const QString& file) { ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0666), 0); }},
      {"a pipe as the lock",
       [](const QString& file) { ASSERT_EQ(mkfifo(QFile::encodeName(file + ".lock").constData(), 0666), 0); }},
      {"a folder", [](const QString& file) { ASSERT_TRUE(QDir().mkdir(file)); }},
      {"a device", [](const QString& file) { ASSERT_TRUE(QFile::link("/dev/zero", file)); }},
      {"a link to nowhere", [](const QString& file) { ASSERT_TRUE(QFile::link("nowhere", file)); }},
      {"a folder that is a file",
       [](const QString& file) {
         const QFileInfo info(file);
         ASSERT_TRUE(QDir().rmdir(info.path()) && DesktopFiles().Replace(info.path(), "x"));
       }},
      {"an unreadable file",
       [](const QString& file) {
         ASSERT_TRUE(DesktopFiles().Replace(file, "[Settings]\nMainLeft=5\n") && QFile::setPermissions(file, {}));
       }},
      {"a folder that cannot be written",
       [](const QString& file) {
         ASSERT_TRUE(QFile::setPermissions(QFileInfo(file).path(),
                                           QFile::ReadUser | QFile::ExeUser | QFile::ReadOther | QFile::ExeOther));
       }},
  };
  for (const auto& [what, spoil] : rows) {
    SCOPED_TRACE(what);
    const QTemporaryDir folder;
    const QString file = folder.filePath("own/settings.conf");
    const QFile::Permissions all(0x7777);
    ASSERT_TRUE(QDir().mkdir(folder.filePath("own")));
    ASSERT_TRUE(QFile::setPermissions(folder.path(), all) && QFile::setPermissions(folder.filePath("own"), all));
    spoil(file);
    const auto seen = [&] {
      const QFileInfo info(file);
      return std::tuple(info.exists(), info.isFile(), info.isSymLink(), info.size(), info.lastModified());
    };
    const auto before = seen();
    ASSERT_TRUE(!root || setresuid(kNobody, kNobody, 0) == 0);
    IniSettings(file).Put("MainLeft", "7");
    EXPECT_EQ(IniSettings(file).Get("MainLeft", "1000"), "1000");
    ASSERT_TRUE(!root || setresuid(0, 0, 0) == 0);
    EXPECT_EQ(seen(), before);
  }
}

TEST(IniSettings, AreInTheUsersConfigurationFolderUnderTheProgramsTitle) {
  const QFileInfo file(IniSettings::UserFile());
  EXPECT_EQ(file.completeBaseName(), "ZTH4718 Evaluation Software");
  EXPECT_FALSE(file.path().isEmpty());
}

TEST(FileDialogs, FiltersAreAcceptedInTheirOwnForm) {
  EXPECT_EQ(QtFilter("Log Files (*.csv)|*.csv"), "Log Files (*.csv)");
  EXPECT_EQ(QtFilter("A (*.a)|*.a;*.b|All|*.*"), "A (*.a *.b);;All (*.*)");
  EXPECT_EQ(FilterExtension("Text Files (*.sav)|*.sav"), "sav");
  EXPECT_EQ(FilterExtension("All (*.*)|*.*"), "");
}

/// Runs `act` on the modal dialog as soon as it is open.
template <typename Dialog, typename Act>
void OnceShown(Act act) {
  QTimer::singleShot(0, qApp, [act] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    act(*dialog);
  });
}

TEST(Prompts, ShowTextsUnchangedAndReturnTheAnswer) {
  using Box = QMessageBox;
  const std::tuple<BoxIcon, BoxButtons, Box::Icon, Box::StandardButton, BoxAnswer> rows[]{
      {BoxIcon::None, BoxButtons::YesNo, Box::NoIcon, Box::Yes, BoxAnswer::Yes},
      {BoxIcon::None, BoxButtons::YesNo, Box::NoIcon, Box::NoButton, BoxAnswer::No},  // closed without a button
      {BoxIcon::Critical, BoxButtons::Ok, Box::Critical, Box::Ok, BoxAnswer::Ok}};
  for (const auto& [icon, buttons, shown, press, answer] : rows) {
    OnceShown<Box>([&, shown = shown, press = press, count = buttons == BoxButtons::Ok ? 1 : 2](Box& box) {
      EXPECT_EQ(box.text(), "Error -  two blanks");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(box.icon(), shown);
      EXPECT_EQ(box.buttons().size(), count);
      press == Box::NoButton ? box.reject() : box.button(press)->click();
    });
    EXPECT_EQ(DesktopPrompts().Ask({"Title", "Error -  two blanks", icon, buttons}), answer);
  }
}

TEST(Prompts, ChoicesAreInOrderAndEnterIsAsSafeAsEscape) {
  using Box = QMessageBox;
  const std::pair<std::function<void(Box&)>, int> rows[]{
      {[](Box& box) { box.findChild<QAbstractButton*>("choice(0)")->click(); }, 0},
      {[](Box& box) { box.findChild<QAbstractButton*>("choice(1)")->click(); }, 1},
      {[](Box& box) { QTest::keyClick(&box, Qt::Key_Escape); }, 2},
      {[](Box& box) { QTest::keyClick(&box, Qt::Key_Return); }, 2},
      {[](Box& box) { box.close(); }, 2},
      {[](Box& box) { delete &box; }, 2}};
  for (const auto& [act, answer] : rows) {
    OnceShown<Box>([act = act](Box& box) {
      std::map<int, QString> fromTheLeft;
      for (const QAbstractButton* button : box.buttons()) fromTheLeft[button->x()] = button->text();
      EXPECT_EQ(fromTheLeft.size(), 3U);
      QStringList captions;
      for (const auto& [x, caption] : fromTheLeft) captions << caption;
      EXPECT_EQ(captions.join(' '), "&Off E&xit &Cancel");
      act(box);
    });
    EXPECT_EQ(DesktopPrompts().Choose({"Title", "On", {"&Off", "E&xit", "&Cancel"}, 2}), answer);
  }
}

TEST(FileDialogs, AddTheFiltersEndingToAFileWithoutOne) {
  const QTemporaryDir folder;
  IniSettings settings(folder.filePath("settings.conf"));
  DesktopFileDialogs dialogs(settings);
  const FileQuestion question{
      FileQuestion::Kind::Save, "CommonDialog1", "Save", folder.path(), "Log Files (*.csv)|*.csv", "", true};
  OnceShown<QFileDialog>([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.objectName(), "CommonDialog1");
    EXPECT_EQ(dialog.nameFilters(), QStringList("Log Files (*.csv)"));
    dialog.selectFile("monday");
    QMetaObject::invokeMethod(&dialog, "accept");
  });
  EXPECT_EQ(dialogs.Ask(question, nullptr), QDir(folder.path()).filePath("monday.csv"));
}

TEST(FileDialogs, StartInAWritableFolder) {
  const bool root = geteuid() == 0;
  const QTemporaryDir home;
  ASSERT_TRUE(QFile::setPermissions(home.path(), QFile::Permissions(0x7777)));
  const auto folder = [&home](const char* name, bool writable) {
    const QString path = home.filePath(name);
    EXPECT_TRUE(QDir().mkdir(path));
    EXPECT_TRUE(QFile::setPermissions(path, QFile::Permissions(writable ? 0x7777 : 0x5555)));
    return path;
  };
  const QString program = folder("program", true);
  const QString installed = folder("installed", false);
  const QString last = folder("last", true);
  const QString documents = folder("Documents", true);
  const QByteArray userHome = qgetenv("HOME");
  qputenv("HOME", QFile::encodeName(home.path()));
  IniSettings settings(home.filePath("settings.conf"));
  DesktopFileDialogs dialogs(settings);
  const auto begins = [&](const QString& wanted) {
    QString begun;
    for (const auto kind : {FileQuestion::Kind::Save, FileQuestion::Kind::Open}) {
      OnceShown<QFileDialog>([&begun](QFileDialog& dialog) {
        const QString path = dialog.directory().path();
        EXPECT_TRUE(begun.isEmpty() || begun == path) << "a recall begins where the save did";
        begun = path;
        dialog.reject();
      });
      dialogs.Ask({kind, "CommonDialog1", "Ask", wanted, "Log Files (*.csv)|*.csv", "", true}, nullptr);
    }
    return begun;
  };
  ASSERT_TRUE(!root || setresuid(kNobody, kNobody, 0) == 0);
  EXPECT_EQ(begins(installed), documents) << "no folder has been used yet";
  settings.Put("FileFolder", last);
  EXPECT_EQ(begins(program), program);
  EXPECT_EQ(begins(installed), last);
  EXPECT_EQ(begins(home.filePath("gone")), last);
  settings.Put("FileFolder", installed);
  EXPECT_EQ(begins(installed), documents) << "the folder used last may have been closed";
  ASSERT_TRUE(!root || setresuid(0, 0, 0) == 0);
  qputenv("HOME", userHome);
}

TEST(Files, ReplaceOnlyFiles) {
  const QTemporaryDir folder;
  const QString pipe = folder.filePath("pipe");
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0666), 0);
  EXPECT_FALSE(DesktopFiles().Replace(pipe, "x"));
}

TEST(Libraries, AMissingOneIsReportedAsNotFoundAndABrokenOneIsNot) {
  const QTemporaryDir folder;
  DesktopLibraries libraries(folder.path());
  EXPECT_TRUE(libraries.Load("zth-no-such-library").error.contains("File not found"));
  QFile broken(folder.filePath("libzth-broken.so"));
  ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
  broken.write("not a library");
  broken.close();
  const LoadedLibrary result = libraries.Load("zth-broken");
  EXPECT_EQ(result.library, nullptr);
  EXPECT_FALSE(result.error.isEmpty());
  EXPECT_FALSE(result.error.contains("File not found")) << result.error.toStdString();
}

#ifdef __linux__
// Runs again as a copy in a folder whose name a QString cannot hold.
TEST(ProgramFolder, IsIdentifiedByItsBytesWhateverTheyAre) {
  if (const char* expected = std::getenv("ZTH_TEST_FOLDER")) {
    EXPECT_EQ(ProgramFolderBytes(), QByteArray(expected));
    return;
  }
  const QTemporaryDir outer;
  const std::string folder = outer.path().toStdString() +
                             "/Pr\xFC"
                             "fstand";
  std::filesystem::create_directory(folder);
  std::filesystem::copy_file("/proc/self/exe", folder + "/copy");
  EXPECT_EQ(std::system(
                ("ZTH_TEST_FOLDER='" + folder + "' '" + folder + "/copy' --gtest_filter='ProgramFolder.*' > /dev/null")
                    .c_str()),
            0);
  std::filesystem::remove_all(folder);
}
#endif

TEST(Libraries, AreNotSearchedInTheWorkingFolderWhenTheProgramsOwnIsUnknown) {
  const QTemporaryDir folder;
  const QString before = QDir::currentPath();
  QFile broken(folder.filePath("libzth-stray.so"));
  ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
  ASSERT_TRUE(QDir::setCurrent(folder.path()));
  const QString error = DesktopLibraries(QString()).Load("zth-stray").error;
  QDir::setCurrent(before);
  EXPECT_TRUE(error.contains("File not found")) << error.toStdString();
}

TEST(Files, ATextIsWrittenOnlyToTheFileThatWasChecked) {
  const QTemporaryDir folder;
  const QString path = folder.filePath("a");
  DesktopFiles files;
  EXPECT_FALSE(files.Look(path));
  const FileAppend first = files.Append(path, std::nullopt, "one");
  EXPECT_EQ(first.written, 3);
  const auto seen = files.Look(path);
  ASSERT_TRUE(seen && seen->SameFile(first.before));
  EXPECT_EQ(seen->size, 3);
  EXPECT_FALSE(files.Append(path, std::nullopt, "x").opened) << "a new one was meant";
  EXPECT_TRUE(files.Append(path, seen, "two").opened);
  EXPECT_TRUE(files.Append(path, seen, "!").opened) << "longer by now";
  EXPECT_FALSE(files.Cut(path, *seen, 0));
  EXPECT_TRUE(files.Cut(path, *files.Look(path), 6));
  EXPECT_EQ(files.ReadAt(path, 2, 3), QByteArray("etw"));
  ASSERT_TRUE(QFile::resize(path, 2));
  EXPECT_FALSE(files.Append(path, seen, "x").opened) << "shorter";
  ASSERT_TRUE(QFile::rename(path, path + ".1"));
  EXPECT_FALSE(files.Append(path, seen, "x").opened);
  EXPECT_FALSE(files.Cut(path, *seen, 0));
  EXPECT_FALSE(QFile::exists(path)) << "nor is one made";
  EXPECT_EQ(files.VolumeOf(folder.filePath("no/such/folder")), files.VolumeOf(folder.path()));
  const QString root = files.VolumeOf(path);
  EXPECT_TRUE(!root.isEmpty() && path.startsWith(root));
  EXPECT_EQ(files.VolumeOf(root), root);
}

}  // namespace
}  // namespace zth::platform
