#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <QAbstractTableModel>
#include <QPalette>
#include <QStringList>

#include "tasks/TrafficFilter.h"

namespace zth::windows {

/// The records of a traffic as rows, as far as a filter shows them. Holds their numbers only: a cell's text is made
/// when it is asked for. New records become rows at the next Refresh.
class TrafficModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kTime, kBus, kAddress, kCall, kRegister, kName, kBytes, kChange, kAsker, kFields, kColumns };

  using QAbstractTableModel::QAbstractTableModel;

  /// Shows that traffic from now on, which must outlive its being shown. `dateOf` tells the date and time of a moment
  /// of it.
  void Show(const tasks::Traffic& traffic, std::function<QString(double time)> dateOf);
  void SetFilter(const tasks::TrafficFilter& filter);

  /// While held, new records wait.
  void SetHeld(bool held) { held_ = held; }
  /// The number of records that wait.
  std::uint64_t Waiting() const;
  /// Whether a mark, or a call for anyone but the monitor, has been added since the last Refresh and would be shown.
  bool HasNewsByUser() const;

  /// Takes in what has been added since, and drops the rows whose records are gone. Returns how many rows were dropped
  /// at the beginning.
  int Refresh();

  const tasks::Traffic& Shown() const { return *traffic_; }
  std::uint64_t NumberOf(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  /// The first row with that number or a later one; the number of rows if there is none.
  int RowFrom(std::uint64_t number) const;
  std::vector<std::uint64_t> Numbers() const { return {rows_.begin(), rows_.end()}; }

  /// Who has asked so far, as SourceOf names them, in the order of their first calls.
  const QStringList& Sources() const { return sources_; }

  /// Sets the colours that match the window's palette.
  void SetPalette(const QPalette& palette);

  /// The longest text of a column that is not a rare one.
  static QString WidestText(int column);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void Rebuild();
  int DropGone();
  /// The records up to `end` that have not been seen yet and are to be shown.
  std::vector<std::uint64_t> Find(std::uint64_t end);
  void NoteSource(const tasks::TrafficRecord& record);
  std::string Text(const tasks::TrafficRecord& record, int column) const;
  QString ToolTip(const tasks::TrafficRecord& record, int column) const;

  const tasks::Traffic* traffic_ = nullptr;
  std::function<QString(double)> dateOf_;
  tasks::TrafficFilter filter_;
  std::optional<tasks::TrafficMatcher> matcher_;
  std::deque<std::uint64_t> rows_;
  std::uint64_t seen_ = 0;  ///< up to this number, records are rows or filtered out
  bool held_ = false;
  std::vector<bool> known_;  ///< by the record's text: its source is among sources_
  QStringList sources_;
  QPalette palette_;
};

}  // namespace zth::windows
