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
  /// Sets the lamps of the rows whose status is in `reg`, and reports visible lamps that change. The first value of a
  /// lamp is reported if it is red. Without a value, because the read failed, lamps keep their state and are marked as
  /// stale.
  void ShowStatus(int reg, std::optional<int> value);
  /// Treats the next value of each lamp as its first, because it comes from another chip.
  void ForgetStatus();
  /// The channels with visible red lamps.
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
    std::optional<bool> alert;  ///< the lamp's state; nothing while it is hidden or has not been read
  };
  void AddHeading(const AlertHeading& heading, int column, QGridLayout& grid);
  void AddRow(int row, QGridLayout& grid);
  void Describe(const Row& row);
  void Mask_Click(int row);

  const AlertTab& tab_;
  std::vector<Row> rows_;
};

}  // namespace zth::windows
