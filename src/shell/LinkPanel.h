#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include <QLabel>

#include "link/ChipId.h"

namespace zth::shell {

/// The link's panel in the status bar: "24 transfers/s, 3 failures, the last 2 s ago". While reads fail it raises a
/// notice, which the status bar shows as its message and a screen reader speaks. Makes no transfer.
class LinkPanel final : public QLabel {
 public:
  explicit LinkPanel(QWidget* parent);

  /// Checks the link at `now`, in seconds of the clock. Updates the text once a second; a new failure, another chip and
  /// the notice show at once.
  void Look(double now);

  /// The text for the status bar to show instead of its message; empty otherwise.
  const QString& Notice() const { return notice_; }

  /// What the link's library has begun to say of its hardware; empty if nothing, or once it has been taken.
  QString TakeNews() { return std::exchange(news_, {}); }

  QSize sizeHint() const override;

 private:
  /// True when there is news about failures.
  bool CountFailures(double now);
  void HearLibrary();
  QString FailuresText(double now) const;
  void ShowText(double now);

  double shownAt_ = 0;               ///< when the text was last updated
  std::int64_t transfersThen_ = -1;  ///< count at that time; below 0 before the first look
  int perSecond_ = 0;
  link::ChipId chip_;                     ///< the chip that the failures belong to
  std::optional<std::int32_t> failures_;  ///< nothing while the count is not known
  std::optional<double> failedAt_;        ///< when this panel last saw the count change
  bool isOfOther_ = false;                ///< the current notice was raised by a chip that is no longer in use
  QString notice_;
  std::map<std::int16_t, QString> troubles_;  ///< what each link's library has last said
  QString news_;
};

}  // namespace zth::shell
