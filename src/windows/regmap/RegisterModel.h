#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <QAbstractTableModel>
#include <QDateTime>
#include <QPalette>
#include <QSortFilterProxyModel>

namespace zth::windows {

/// All registers of the table as rows, each with what was last read from its address. Knows nothing of the link: who
/// has read something hands it in.
class RegisterModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kAddress, kName, kValue, kDefault, kChange, kReadAt, kFields, kColumns };
  /// What a column is sorted by.
  static constexpr int kSortRole = Qt::UserRole;

  using QAbstractTableModel::QAbstractTableModel;

  /// What a read has given. Rows that share the address all show it.
  void Note(std::int32_t address, int value, const QDateTime& at);
  /// What was handed in since the last call shows from now on: one change of the table for a whole run of reads.
  void ShowNoted();
  bool IsRead(std::int32_t address) const { return At(address).has_value(); }
  /// Nothing is known of any register any more.
  void Forget();
  /// The colours that go with the window's palette.
  void SetPalette(const QPalette& palette);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Reading {
    int value;
    std::optional<int> before;  ///< of the read before, where that gave another value
    QDateTime at;
  };
  const std::optional<Reading>& At(std::int32_t address) const { return readings_.at(address & 0xFF); }
  QString Text(int row, int column) const;
  QVariant SortKey(int row, int column) const;

  std::array<std::optional<Reading>, 256> readings_;
  QPalette palette_;
};

/// The rows of a group that answer to a search.
class RegisterFilter final : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  explicit RegisterFilter(QObject* parent);

  /// `group` as RegisterGroups has it, empty for all; with `outside` those that stand in none.
  void Show(const QString& text, const QString& group, bool outside);

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  QString text_;
  QString group_;
  bool outside_ = false;
};

}  // namespace zth::windows
