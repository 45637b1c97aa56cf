#include "windows/data/RecentFiles.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>
#include <QMenu>

#include "widgets/PopUpMenu.h"

namespace zth::windows {
namespace {

constexpr char kKey[] = "RecentConfigurations";
constexpr QChar kSeparator = '\n';

void Store(platform::Settings& settings, const QStringList& files) {
  settings.Put(kKey, files.join(kSeparator));
}

}  // namespace

QStringList RecentFiles(const platform::Settings& settings) {
  return settings.Get(kKey, {}).split(kSeparator, Qt::SkipEmptyParts).mid(0, kMostRecentFiles);
}

void NoteRecentFile(platform::Settings& settings, const QString& path) {
  const QString whole = QFileInfo(path).absoluteFilePath();
  if (whole.contains(kSeparator)) return;
  const QStringList before = RecentFiles(settings);
  QStringList files = before;
  files.removeAll(whole);
  files.prepend(whole);
  files = files.mid(0, kMostRecentFiles);
  if (files != before) Store(settings, files);
}

void ForgetRecentFile(platform::Settings& settings, const QString& path) {
  QStringList files = RecentFiles(settings);
  if (files.removeAll(QFileInfo(path).absoluteFilePath()) != 0) Store(settings, files);
}

void AddRecentFiles(QMenu& menu, QWidget& owner, const platform::Settings& settings,
                    const std::function<void(const QString& path)>& take) {
  const QStringList files = RecentFiles(settings);
  menu.setToolTipsVisible(true);
  if (files.isEmpty())
    widgets::AddEntry(
        menu, owner, "mnuNoFile", "No file yet", [] {}, false);
  for (qsizetype i = 0; i < files.size(); ++i) {
    const QString name = ShortName(files[i], files).replace('&', "&&");
    // 1 to 9, and 0 for the tenth.
    const QString text = QString("&%1  %2").arg((i + 1) % kMostRecentFiles).arg(name);
    QAction& entry =
        widgets::AddEntry(menu, owner, QString("mnuFile(%1)").arg(i), text, [take, path = files[i]] { take(path); });
    entry.setToolTip(QDir::toNativeSeparators(files[i]));
  }
}

QString ShortName(const QString& path, const QStringList& among) {
  const QFileInfo file(path);
  const auto same = std::ranges::count_if(
      among, [&](const QString& other) { return QFileInfo(other).fileName() == file.fileName(); });
  if (same < 2) return file.fileName();
  return QDir::toNativeSeparators(file.dir().dirName() + '/' + file.fileName());
}

}  // namespace zth::windows
