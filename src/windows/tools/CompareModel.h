#pragma once

#include <optional>
#include <vector>

#include <QAbstractTableModel>
#include <QPalette>
#include <QStringList>

#include "tasks/Comparison.h"
#include "tasks/WriteImage.h"

namespace zth::windows {

/// A comparison as rows: one for each register, and below it one for each field that differs, or for all of its fields.
/// What differs from the first column is bold, in a colour, and has a sign before it.
class CompareModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// The values begin at kFirstValue; behind them is what differs.
  enum Column { kName, kPlace, kFirstValue };

  using QAbstractTableModel::QAbstractTableModel;

  /// `titles`: of the columns of values.
  void Show(std::vector<tasks::ComparedRow> rows, const QStringList& titles);
  void SetFilter(const tasks::ComparisonFilter& filter, bool allFields);
  void SetPalette(const QPalette& palette);

  /// What a row stands for: a whole register or a field of it.
  tasks::Wanted WantedOf(int row) const;

  std::size_t Registers() const { return rows_.size(); }
  std::size_t Differing() const { return tasks::CountDiffering(rows_); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Line {
    std::size_t row = 0;
    std::optional<tasks::ComparedField> field;  ///< empty: the register itself
  };

  void Rebuild();
  bool Differs(const Line& line, std::size_t value) const;
  QString ValueText(const Line& line, std::size_t value) const;
  QString Text(const Line& line, int column) const;
  QString DifferenceText(const tasks::ComparedRow& row) const;
  int DifferenceColumn() const { return kFirstValue + static_cast<int>(titles_.size()); }

  std::vector<tasks::ComparedRow> rows_;
  QStringList titles_;
  tasks::ComparisonFilter filter_;
  bool allFields_ = false;
  std::vector<Line> lines_;
  QPalette palette_;
};

}  // namespace zth::windows
