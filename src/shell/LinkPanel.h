#pragma once

#include <cstdint>
#include <optional>

#include <QLabel>

#include "link/ChipId.h"

namespace zth::shell {

/// The status bar's panel of the link: "24 transfers/s, 3 failures, the last 2 s ago". While readings fail it raises a
/// notice, which stands in the status bar's message and is spoken by a screen reader. Makes no transfer.
class LinkPanel final : public QLabel {
 public:
  explicit LinkPanel(QWidget* parent);

  /// Looks at the link at `now`, in seconds of the clock. Renews the text once a second; a new failure, another chip
  /// and the notice show at once.
  void Look(double now);

  /// What the status bar is to say in place of its message; empty as a rule.
  const QString& Notice() const { return notice_; }

  QSize sizeHint() const override;

 private:
  /// True when there is something new to say of failures.
  bool CountFailures(double now);
  QString FailuresText(double now) const;
  void ShowText(double now);

  double shownAt_ = 0;               ///< when the text was renewed last
  std::int64_t transfersThen_ = -1;  ///< made by then; below 0 before the first look
  int perSecond_ = 0;
  link::ChipId chip_;                     ///< the one that the failures are of
  std::optional<std::int32_t> failures_;  ///< nothing while they are not known
  std::optional<double> failedAt_;        ///< the last one that this panel has seen come
  bool isOfOther_ = false;  ///< the notice, if there is one, was raised by a chip that is no longer in use
  QString notice_;
};

}  // namespace zth::shell
