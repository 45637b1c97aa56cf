#include "tasks/Snapshots.h"

#include <algorithm>
#include <utility>

#include <QUrl>

#include "tasks/SavedConfig.h"
#include "tasks/SavedImage.h"

namespace zth::tasks {
namespace {

constexpr char kEnding[] = ".sav";
constexpr qsizetype kLongestStem = 120;  // file systems take names of 255 bytes

/// The file's name for the name of a snapshot, without its ending: ASCII that every file system takes.
QString StemOf(const QString& name) {
  return QString::fromLatin1(QUrl::toPercentEncoding(name, {}, "~.")).left(kLongestStem);
}

/// Back from the file's name, as far as that goes.
QString NameOfStem(const QString& stem) {
  return Snapshots::Tidy(QUrl::fromPercentEncoding(stem.left(stem.indexOf('~')).toUtf8()));
}

QString Quoted(const QString& name) {
  return "\u201C" + name + "\u201D";
}

std::string_view View(const QByteArray& bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

Snapshot Load(platform::Files& files, const QString& path, const QString& stem) {
  Snapshot snapshot{NameOfStem(stem), path, {}, {}};
  const auto bytes = files.Read(path, SavedReader::kMostBytes);
  if (!bytes) {
    snapshot.trouble = "The file could not be opened.";
    return snapshot;
  }
  if (const std::string name = SavedComment(View(*bytes)); WideEncoding(View(*bytes)) == nullptr && !name.empty()) {
    snapshot.name = Snapshots::Tidy(QString::fromStdString(name));
  }
  ImageOrError read = ImageOfSaved(View(*bytes), snapshot.name.toStdString());
  if (read) {
    snapshot.image = std::move(*read.image);
  } else {
    snapshot.trouble = QString::fromStdString(read.error);
  }
  return snapshot;
}

bool HasName(const std::vector<Snapshot>& snapshots, const QString& name) {
  return std::ranges::any_of(snapshots, [&name](const Snapshot& one) { return one.name == name; });
}

bool IsBefore(const Snapshot& one, const Snapshot& other) {
  const int order = one.name.compare(other.name, Qt::CaseInsensitive);
  return order != 0 ? order < 0 : one.name < other.name;
}

}  // namespace

Snapshots::Snapshots(platform::Files& files, QString folder) : files_(files), folder_(std::move(folder)) {}

QString Snapshots::Tidy(const QString& name) {
  // By way of UTF-8, in which it is kept: half a pair of surrogates has no place there.
  QString tidy = QString::fromUtf8(name.toUtf8());
  for (QChar& character : tidy) {
    const QChar::Category category = character.category();
    if (category == QChar::Other_Control || category == QChar::Separator_Line ||
        category == QChar::Separator_Paragraph) {
      character = ' ';
    }
  }
  return tidy.trimmed();
}

std::vector<Snapshot> Snapshots::List() const {
  std::vector<Snapshot> snapshots;
  if (folder_.isEmpty()) return snapshots;
  for (const QString& file : files_.List(folder_)) {
    if (!file.endsWith(kEnding)) continue;
    const QString stem = file.chopped(static_cast<qsizetype>(sizeof kEnding) - 1);
    Snapshot snapshot = Load(files_, folder_ + '/' + file, stem);
    // A file that was copied by hand, or put here from elsewhere.
    if (snapshot.name.isEmpty() || HasName(snapshots, snapshot.name)) snapshot.name += " (" + file + ')';
    snapshot.name = snapshot.name.trimmed();
    snapshot.image.origin = snapshot.name.toStdString();
    snapshots.push_back(std::move(snapshot));
  }
  std::ranges::sort(snapshots, IsBefore);
  return snapshots;
}

std::optional<Snapshot> Snapshots::Find(const QString& name) const {
  const std::vector<Snapshot> snapshots = List();
  const auto found = std::ranges::find(snapshots, name, &Snapshot::name);
  return found == snapshots.end() ? std::nullopt : std::optional(*found);
}

QString Snapshots::FreePath(const QString& name) const {
  const QString stem = folder_ + '/' + StemOf(name);
  QString path = stem + kEnding;
  for (int next = 2; files_.Look(path); ++next) path = stem + '~' + QString::number(next) + kEnding;
  return path;
}

QString Snapshots::Save(const QString& name, const RegisterImage& image, const TextNotes& when, bool replace) {
  const QString tidy = Tidy(name);
  if (tidy.isEmpty()) return "A snapshot needs a name.";
  if (image.IsEmpty()) return "There is nothing to keep: no register was read.";
  if (folder_.isEmpty() || !files_.MakeFolder(folder_)) return "There is no folder for snapshots.";
  const auto old = Find(tidy);
  if (old && !replace) return "There is already a snapshot " + Quoted(tidy) + '.';
  if (old && !old->trouble.isEmpty()) return Quoted(tidy) + " cannot be read and is not replaced. Delete it first.";
  TextNotes notes = when;
  notes.comment = tidy.toStdString();
  const QString path = old ? old->path : FreePath(tidy);
  const std::string text = SavedText(image, notes, SavedRows::All);
  return files_.Replace(path, QByteArray::fromStdString(text)) ? QString() : path + " could not be written.";
}

QString Snapshots::Rename(const QString& name, const QString& to) {
  const QString tidy = Tidy(to);
  if (tidy.isEmpty()) return "A snapshot needs a name.";
  const auto old = Find(name);
  if (!old) return "There is no snapshot " + Quoted(name) + '.';
  if (tidy == name) return {};
  if (!old->trouble.isEmpty()) return Quoted(name) + " cannot be read and is not renamed.";
  if (Find(tidy)) return "There is already a snapshot " + Quoted(tidy) + '.';
  const auto bytes = files_.Read(old->path, SavedReader::kMostBytes);
  const QString path = FreePath(tidy);
  if (!bytes) return old->path + " could not be opened.";
  const std::string text = WithSavedComment(View(*bytes), tidy.toStdString());
  if (!files_.Replace(path, QByteArray::fromStdString(text))) return path + " could not be written.";
  files_.Remove(old->path);
  return files_.Look(old->path) ? old->path + " could not be removed." : QString();
}

QString Snapshots::Delete(const QString& name) {
  const auto old = Find(name);
  if (!old) return "There is no snapshot " + Quoted(name) + '.';
  files_.Remove(old->path);
  return files_.Look(old->path) ? old->path + " could not be removed." : QString();
}

}  // namespace zth::tasks
