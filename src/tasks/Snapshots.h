#pragma once

#include <optional>
#include <vector>

#include <QString>

#include "platform/Services.h"
#include "tasks/ImageText.h"
#include "tasks/RegisterImage.h"

/// Named configurations that are kept from one session to the next.
namespace zth::tasks {

/// A snapshot in the folder.
struct Snapshot {
  QString name;         ///< as it was given; of a file that cannot be read, made from the file's name
  QString path;         ///< of its file
  RegisterImage image;  ///< its origin is the name; empty if there is trouble
  QString trouble;      ///< why the file cannot be read; empty if it can. Such a file is never overwritten.
};

/// Snapshots are saved configurations in one folder, a file each. Their names are any text: line ends and control
/// characters become blanks, blanks at the ends are dropped. Names that differ only in case are different.
///
/// No method makes a transfer. All return an error for people, empty if there is none.
class Snapshots {
 public:
  /// `folder`: Process::StateFolder() + "/snapshots", made when the first snapshot is saved. If it is empty, nothing
  /// can be saved and the list is empty.
  Snapshots(platform::Files& files, QString folder);

  /// All of them, by name, upper and lower case alike; those with trouble too. Reads the files. Of two files with the
  /// same name, as after a copy by hand, the second has its file's name added.
  std::vector<Snapshot> List() const;

  /// Keeps what an image holds, with the date and time of `when`. Refused if the image is empty, or the name is empty
  /// or, unless `replace` is set, taken.
  [[nodiscard]] QString Save(const QString& name, const RegisterImage& image, const TextNotes& when,
                             bool replace = false);

  /// Refused if the new name is empty or taken, or there is no snapshot with the old one.
  [[nodiscard]] QString Rename(const QString& name, const QString& to);

  [[nodiscard]] QString Delete(const QString& name);

  /// The name as it is kept: in one line, trimmed.
  static QString Tidy(const QString& name);

 private:
  std::optional<Snapshot> Find(const QString& name) const;
  QString FreePath(const QString& name) const;

  platform::Files& files_;
  QString folder_;
};

}  // namespace zth::tasks
