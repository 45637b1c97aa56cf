#pragma once

#include <deque>

#include <QAbstractTableModel>
#include <QDateTime>
#include <QString>

namespace zth::windows {

/// A lamp that has turned.
struct AlertEvent {
  QDateTime time;
  QString chip;  ///< as the device list has it
  QString channel;
  QString value;  ///< with its unit, as last measured; empty for what has no reading
  QString limit;  ///< with its unit; empty where it has not been read
  bool raised = false;
};

/// The newest lamps that have turned, oldest first, as rows of a table and as texts.
class AlertLog final : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int kKept = 1000;
  enum Column { kTime, kChip, kChannel, kValue, kLimit, kEvent, kColumns };

  using QAbstractTableModel::QAbstractTableModel;

  /// Adds the newest; the oldest goes when there are too many.
  void Add(const AlertEvent& event);
  void Clear();

  bool HasSeveralChips() const;
  /// "15:04:05.678 Local Temp raised" of the newest; empty without one.
  QString Newest() const;
  /// The rows, columns apart by tabs.
  QString Lines(const QList<int>& rows) const;
  /// All rows with a heading, as comma-separated values with the date.
  QString Csv() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::deque<AlertEvent> events_;
};

}  // namespace zth::windows
