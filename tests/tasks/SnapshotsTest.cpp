#include <random>
#include <vector>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tasks/Exports.h"
#include "tasks/Snapshots.h"
#include "tests/support/Doubles.h"
#include "tests/tasks/RandomImage.h"

namespace zth::testing {
namespace {

using tasks::Snapshot;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SnapshotsTest : public ::testing::Test {
 protected:
  QStringList Names() const {
    QStringList names;
    for (const Snapshot& one : snapshots.List()) names << one.name;
    return names;
  }
  tasks::RegisterImage Random() { return RandomImage(random, tasks::ReadableRegisters(), 8); }
  Snapshot Of(const QString& name) const {
    for (const Snapshot& one : snapshots.List()) {
      if (one.name == name) return one;
    }
    ADD_FAILURE() << "no " << name.toStdString();
    return {};
  }

  std::mt19937 random{4718};
  QTemporaryDir home;
  QString folder = home.filePath("state/snapshots");
  FailingFiles files;
  tasks::Snapshots snapshots{files, folder};
  tasks::TextNotes when{"3/1/2026", "8:00", ""};
};

TEST_F(SnapshotsTest, AnyNameKeepsItsRegisters) {
  const QStringList names{"before",
                          "Before",
                          "a/b\\c:d",
                          "../../etc/passwd",
                          QString::fromUtf8("Lüfter 3 – 40 °C 🌀"),
                          ".",
                          "..",
                          "{0x1 0x2}",
                          "100% ~2",
                          "CON",
                          "-rf *",
                          "Comment : a",
                          QString(300, 'n'),
                          QString(300, 'n') + '2',
                          QString(90, QChar(0x4E00)),
                          "a\"b'c$(d)",
                          "tab\tand\nline",
                          " blanks around it "};
  EXPECT_THAT(snapshots.List(), IsEmpty());
  std::vector<tasks::RegisterImage> images;
  for (const QString& name : names) {
    images.push_back(Random());
    EXPECT_EQ(snapshots.Save(name, images.back(), when), "") << name.toStdString();
  }
  EXPECT_EQ(snapshots.List().size(), static_cast<std::size_t>(names.size()));
  EXPECT_EQ(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("state"));
  for (qsizetype i = 0; i < names.size(); ++i) {
    const Snapshot kept = Of(tasks::Snapshots::Tidy(names[i]));
    EXPECT_EQ(kept.trouble, "");
    EXPECT_EQ(kept.image.bytes, images[static_cast<std::size_t>(i)].bytes) << names[i].toStdString();
    EXPECT_EQ(kept.image.origin, kept.name.toStdString());
    // The file is a saved configuration like any other.
    const auto bytes = files.Read(kept.path, 1'000'000);
    EXPECT_EQ(tasks::ImageOfText(bytes->toStdString(), "").image->bytes, kept.image.bytes);
  }
  EXPECT_EQ(tasks::Snapshots::Tidy("tab\tand\nline"), "tab and line");
}

TEST_F(SnapshotsTest, NothingIsReplacedUnasked) {
  const tasks::RegisterImage first = Random();
  EXPECT_EQ(snapshots.Save("a", first, when), "");
  EXPECT_EQ(snapshots.Save(" a", Random(), when), QString::fromUtf8("There is already a snapshot “a”."));
  EXPECT_EQ(snapshots.Save(" \n", first, when), "A snapshot needs a name.");
  EXPECT_EQ(snapshots.Save("b", {}, when), "There is nothing to keep: no register was read.");
  EXPECT_EQ(Of("a").image.bytes, first.bytes);
  const tasks::RegisterImage second = Random();
  EXPECT_EQ(snapshots.Save("a", second, when, true), "");
  EXPECT_EQ(Of("a").image.bytes, second.bytes);
  EXPECT_EQ(snapshots.Save("b", first, when), "");
  EXPECT_EQ(snapshots.Rename("b", "a"), QString::fromUtf8("There is already a snapshot “a”."));
  EXPECT_EQ(snapshots.Rename("c", "d"), QString::fromUtf8("There is no snapshot “c”."));
  EXPECT_EQ(snapshots.Rename("b", "B/\u00E4"), "");
  EXPECT_THAT(Names(), ElementsAre("a", QString("B/\u00E4")));
  EXPECT_EQ(Of("B/\u00E4").image.bytes, first.bytes);
  EXPECT_THAT(files.Read(Of("B/\u00E4").path, 100)->toStdString(), ::testing::HasSubstr("Saved: 3/1/2026 at 8:00"));
  EXPECT_EQ(snapshots.Delete("a"), "");
  EXPECT_THAT(Names(), ElementsAre(QString("B/\u00E4")));
  EXPECT_EQ(QDir(folder).count(), 3U) << "., .. and one file";
}

TEST_F(SnapshotsTest, ADamagedFileIsNamedAndStays) {
  EXPECT_EQ(snapshots.Save("whole", Random(), when), "");
  EXPECT_EQ(snapshots.Save("cut", Random(), when), "");
  const QString path = Of("cut").path;
  const QByteArray half = files.Read(path, 600).value();
  files.Replace(path, half);
  files.Replace(folder + "/junk%20here.sav", "not a configuration");
  files.Replace(folder + "/notes.txt", "no snapshot");
  QFile::copy(Of("whole").path, folder + "/zz.sav");
  EXPECT_THAT(Names(), ElementsAre("cut", "junk here", "whole", "whole (zz.sav)"));
  EXPECT_TRUE(Of("cut").trouble.contains("breaks off"));
  EXPECT_TRUE(Of("cut").image.IsEmpty());
  EXPECT_FALSE(Of("junk here").trouble.isEmpty());
  EXPECT_TRUE(snapshots.Save("cut", Random(), when, true).contains("is not replaced"));
  EXPECT_TRUE(snapshots.Rename("cut", "other").contains("is not renamed"));
  EXPECT_EQ(files.Read(path, 1000).value(), half);
  EXPECT_EQ(snapshots.Delete("cut"), "");
  EXPECT_FALSE(QFile::exists(path));
}

TEST_F(SnapshotsTest, WhatCannotBeWrittenIsTold) {
  EXPECT_EQ(tasks::Snapshots(files, "").Save("a", Random(), when), "There is no folder for snapshots.");
  EXPECT_EQ(snapshots.Save("a", Random(), when), "");
  const Snapshot kept = Of("a");
  files.space = 10;
  EXPECT_EQ(snapshots.Save("a", Random(), when, true), kept.path + " could not be written.");
  EXPECT_TRUE(snapshots.Rename("a", "b").endsWith("could not be written."));
  EXPECT_EQ(Of("a").image.bytes, kept.image.bytes);
}

}  // namespace
}  // namespace zth::testing
