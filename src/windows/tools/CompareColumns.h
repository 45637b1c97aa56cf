#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWidget>

#include "link/ChipId.h"
#include "tasks/RegisterImage.h"
#include "tasks/TrafficRecord.h"
#include "windows/Desktop.h"

class QComboBox;
class QPushButton;

namespace zth::windows {

/// The choosers of the columns to compare, and what the columns hold. Reads a chip only when told to.
class CompareColumns final : public QWidget {
  Q_OBJECT

 public:
  static constexpr std::size_t kMost = 4;

  CompareColumns(const Context& context, QWidget* parent);

  /// A column that shows something. `place`: 0 to 3, which of the choosers.
  struct Column {
    std::size_t place = 0;
    QString name;
    const tasks::RegisterImage* image = nullptr;  ///< valid until the columns change; empty before a chip was read
  };
  std::vector<Column> Columns() const;

  /// Reads every chip that a column shows, once, and leaves the chip in use as it was. Returns what to tell.
  QString Read();

  /// What is known of a chip; nothing before it was read.
  tasks::RegisterImage ImageOf(const link::ChipId& chip) const;

  /// Shows files in the column under that point, or else in the columns that are free.
  void Open(const QStringList& paths, const QPoint& at);

  /// Offers the snapshots and files that there are now. A column with a snapshot that is gone is free again.
  void ShowSources();

 signals:
  void Changed();
  void Told(const QString& text);

 private:
  struct Source {
    QString key;
    QString text;
    QString tip;
  };

  void MakePlace(std::size_t place);
  std::vector<Source> Sources() const;
  void FillList(std::size_t place, const std::vector<Source>& sources);
  void cmbColumn_Select(std::size_t place);
  void cmdOpen_Click(std::size_t place);
  /// Shows a source in a column; if it cannot be read, tells why and leaves the column as it is.
  bool Take(std::size_t place, const QString& key);
  bool LoadFile(const QString& path);
  bool LoadSnapshot(const QString& name);
  QString NameOf(const QString& key) const;
  /// Keeps what a column shows of a chip true while other windows read and write it.
  void Follow(const tasks::TrafficRecord& record);

  Context context_;
  std::array<QString, kMost> keys_;                 ///< what each column shows
  std::map<QString, tasks::RegisterImage> images_;  ///< what has been read, by the same keys
  std::map<QString, std::set<int>> written_;        ///< registers of a chip that were written and not read since
  bool isTelling_ = false;                          ///< `Changed` is on its way
  std::shared_ptr<void> following_;
  std::array<QComboBox*, kMost> cmbColumn_{};
  std::array<QPushButton*, kMost> cmdOpen_{};
};

/// The folder of the snapshots; empty if nothing can be kept.
QString SnapshotFolder(const platform::Process& process);

}  // namespace zth::windows
