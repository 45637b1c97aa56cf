#include "shell/LinkPanel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>

#include "base/Counted.h"
#include "chip/ChipModel.h"
#include "chip/Freshness.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "link/Transfers.h"

namespace zth::shell {
namespace {

constexpr double kPeriod = 1;
constexpr char kUnread[] = "The chip's pins, PWM modes or revision could not be read: press F5 to read them again";

QString Counted(std::int64_t count, const char* nouns) {
  return QString::fromStdString(base::Counted(count, nouns));
}

}  // namespace

LinkPanel::LinkPanel(QWidget* parent) : QLabel(parent) {
  setObjectName("lblLink");
  setTextFormat(Qt::PlainText);
  setContentsMargins(4, 0, 4, 0);
  setMinimumWidth(1);  // in a narrow window it shrinks before date and time do
}

QSize LinkPanel::sizeHint() const {
  // The usual text has its room from the start, so that nothing next to it moves every second.
  const int usual = fontMetrics().horizontalAdvance("188 transfers/s, no failures") + 8;
  const QSize hint = QLabel::sizeHint();
  return {std::max(hint.width(), usual), hint.height()};
}

void LinkPanel::Look(double now) {
  // A link that fails all the time counts up many times a second, too fast to be read or spoken.
  const bool recent = failedAt_ && now - *failedAt_ < kPeriod && chip_ == link::ChipInUse();
  const bool fails = CountFailures(now) && !recent;
  QString notice = chip::FreshnessNotice();
  if (notice.isEmpty()) isOfOther_ = false;
  if (isOfOther_) notice.clear();
  if (notice.isEmpty() && chip::ModelIsUnread()) notice = kUnread;
  const bool raised = notice != std::exchange(notice_, notice);
  const double passed = now - shownAt_;
  const bool due = transfersThen_ < 0 || passed >= kPeriod || passed < 0;
  if (due) {
    if (transfersThen_ >= 0 && passed > 0) {
      perSecond_ = static_cast<int>(std::lround(static_cast<double>(link::Bus.transfers - transfersThen_) / passed));
    }
    transfersThen_ = link::Bus.transfers;
    shownAt_ = now;
    HearLibrary();
  }
  if (due || fails || raised) ShowText(now);
  if (!raised || notice_.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

bool LinkPanel::CountFailures(double now) {
  const link::ChipId chip = link::ChipInUse();
  const auto failures = link::FailedTransfers();
  if (std::exchange(chip_, chip) != chip) {
    // When the failures of another chip happened is not known.
    failures_ = failures;
    failedAt_.reset();
    isOfOther_ = true;
    return true;
  }
  if (failures == failures_) return false;
  failures_ = failures;
  failedAt_ = now;
  isOfOther_ = false;
  return true;
}

void LinkPanel::HearLibrary() {
  const std::int16_t mode = link::Bus.InterfaceMode;
  const QString trouble = link::BoardTrouble(mode);
  if (std::exchange(troubles_[mode], trouble) != trouble) news_ = QString(trouble).replace('\n', ' ');
}

QString LinkPanel::FailuresText(double now) const {
  if (!failures_) return "failures not known";
  if (*failures_ == 0) return "no failures";
  const QString count = Counted(*failures_, "failures");
  if (!failedAt_) return count;
  const QString when = chip::TimeText(now - *failedAt_) + " ago";
  return count + (*failures_ == 1 ? ", " : ", the last ") + when;
}

void LinkPanel::ShowText(double now) {
  const QString failures = FailuresText(now);
  setText(Counted(perSecond_, "transfers") + "/s, " + failures);
  const QString words = Counted(perSecond_, "transfers") + " a second, " + failures;
  const QString& trouble = troubles_[link::Bus.InterfaceMode];
  setToolTip("The link to " + link::TextOf(chip_) + ": " + words +
             (failures_ ? "" : ".\nIts library does not tell whether a transfer has failed") +
             (trouble.isEmpty() ? "" : ".\nIts library says: " + trouble));
  setAccessibleName(notice_ + (notice_.isEmpty() ? "" : ". ") + "Link: " + words);
}

}  // namespace zth::shell
