#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <QAbstractTableModel>
#include <QDateTime>
#include <QPalette>
#include <QSortFilterProxyModel>

namespace zth::windows {

/// All registers of the table as rows, each with the value last read from its address. Knows nothing of the link:
/// whoever reads a register passes the value in.
class RegisterModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kAddress, kName, kValue, kDefault, kChange, kReadAt, kFields, kColumns };
  /// Role of the value by which a column is sorted.
  static constexpr int kSortRole = Qt::UserRole;

  using QAbstractTableModel::QAbstractTableModel;

  /// Records the value of a read. Every row with that address shows it.
  void Note(std::int32_t address, int value, const QDateTime& at);
  /// Shows everything recorded since the last call: one change of the table for a whole run of reads.
  void ShowNoted();
  bool IsRead(std::int32_t address) const { return At(address).has_value(); }
  /// Forgets the values of all registers.
  void Forget();
  /// Sets the colours that match the window's palette.
  void SetPalette(const QPalette& palette);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Reading {
    int value;
    std::optional<int> before;  ///< the value of the previous read, if it was different
    QDateTime at;
  };
  const std::optional<Reading>& At(std::int32_t address) const { return readings_.at(address & 0xFF); }
  QString Text(int row, int column) const;
  QVariant SortKey(int row, int column) const;

  std::array<std::optional<Reading>, 256> readings_;
  QPalette palette_;
};

/// The rows of a group that match a search.
class RegisterFilter final : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  explicit RegisterFilter(QObject* parent);

  /// `group` is a group of RegisterGroups, or empty for all; with `outside`, only registers that are in no group.
  void Show(const QString& text, const QString& group, bool outside);

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  QString text_;
  QString group_;
  bool outside_ = false;
};

}  // namespace zth::windows
