#pragma once

#include <deque>

#include <QAbstractTableModel>
#include <QDateTime>
#include <QString>

namespace zth::windows {

/// A change of a lamp.
struct AlertEvent {
  QDateTime time;
  QString chip;  ///< as in the device list
  QString channel;
  QString value;  ///< with its unit, as last measured; empty for a channel without a reading
  QString limit;  ///< with its unit; empty when it has not been read
  bool raised = false;
};

/// The latest lamp changes, oldest first, as table rows and as text.
class AlertLog final : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int kKept = 1000;
  enum Column { kTime, kChip, kChannel, kValue, kLimit, kEvent, kColumns };

  using QAbstractTableModel::QAbstractTableModel;

  /// Adds an event, and drops the oldest when there are too many.
  void Add(const AlertEvent& event);
  void Clear();

  bool HasSeveralChips() const;
  /// The newest event as "15:04:05.678 Local Temp raised"; empty if there is none.
  QString Newest() const;
  /// The rows, with tabs between columns.
  QString Lines(const QList<int>& rows) const;
  /// All rows with a header line, as comma-separated values with the date.
  QString Csv() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::deque<AlertEvent> events_;
};

}  // namespace zth::windows
