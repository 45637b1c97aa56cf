#pragma once

#include <optional>
#include <vector>

#include <QStringList>
#include <QWidget>

#include "windows/limits/LimitTables.h"

class QCheckBox;
class QGridLayout;
class QLabel;

namespace zth::widgets {
class Toggle;
}

namespace zth::windows {

/// The alerts of a tab under their headings, each with a label, a mask check box and a lamp. Clicking a mask changes
/// that one bit in the chip at once.
class AlertTable final : public QWidget {
  Q_OBJECT

 public:
  AlertTable(const AlertTab& tab, QWidget* parent);

  /// Sets the check boxes of the rows masked in `reg` from its value. A box that changes runs its handler, which writes
  /// back the bit just read.
  void ShowMasks(int reg, int value);
  /// Sets the lamps of the rows whose status stands in `reg` from its value, and tells of those that show and turn. The
  /// first value of a lamp tells of it if it is red. Without a value, since its read failed, they keep their state and
  /// are marked as stale.
  void ShowStatus(int reg, std::optional<int> value);
  /// The next value of each lamp counts as its first: it is of another chip.
  void ForgetStatus();
  /// The channels whose lamps show and are red.
  QStringList Alerts() const;
  QString Channel(int row) const;

  /// If a row is not live, its label and box are disabled and its lamp is hidden.
  void SetLive(int row, bool live);
  /// SetLive according to the pins alone, for all rows with a condition.
  void SetLiveByPins();
  void EnableLabel(int row, bool on);
  void SetCaption(int row, const QString& caption);

  const AlertTab& Tab() const { return tab_; }

 signals:
  void LampTurned(int row, bool alert);

 private:
  struct Row {
    QLabel* label;
    QCheckBox* mask;  ///< null if there is no mask
    widgets::Toggle* lamp;
    std::optional<bool> alert;  ///< what the lamp tells; nothing while it does not show or has not been read
  };
  void AddHeading(const AlertHeading& heading, int column, QGridLayout& grid);
  void AddRow(int row, QGridLayout& grid);
  void Describe(const Row& row);
  void Mask_Click(int row);

  const AlertTab& tab_;
  std::vector<Row> rows_;
};

}  // namespace zth::windows
