#include "windows/fancontrol/ChipHint.h"

#include <utility>

#include <QLabel>
#include <QLineEdit>

#include "base/Rounding.h"
#include "chip/Conversions.h"
#include "chip/DegreesText.h"
#include "chip/Measurements.h"
#include "windows/Handlers.h"

namespace zth::windows {
namespace {

constexpr std::size_t kPolledGroup = 6;
constexpr int kTminRow = 39;
constexpr int kOpPointRow = 42;  // of remote 0, which there is none of

/// The log's table keeps what the chip holds, whatever the demo does to the measurements.
int Logged(int row) {
  return base::RoundToInt(static_cast<double>(chip::LogChannelTable[static_cast<std::size_t>(row)].Value));
}

/// What the demo had added to a remote's values when they were polled.
int Lift(int remote) {
  return chip::Measurements.PolledTmin[static_cast<std::size_t>(remote)] - PolledTmin(remote);
}

}  // namespace

ChipHint::ChipHint(QLineEdit& box, QLabel& label, Polled polled)
    : box_(box), label_(label), polled_(std::move(polled)) {
  OnChange(box_, [this] { Settle(); });
}

void ChipHint::Settle() {
  readsThen_ = chip::Measurements.Reads[kPolledGroup];
  label_.clear();
}

bool ChipHint::IsMoved() const {
  if (chip::Measurements.Reads[kPolledGroup] == readsThen_) return false;
  return polled_() != chip::DegreesFromByte(chip::DegreesByte(box_.text().toStdString()));
}

void ChipHint::Refresh(bool otherChip) {
  const QString text = !otherChip && IsMoved() ? QString("chip: %1").arg(polled_()) : QString();
  if (text == label_.text()) return;
  label_.setText(text);
  box_.setAccessibleDescription(text.isEmpty() ? QString() : QString("The chip holds %1").arg(polled_()));
}

int PolledTmin(int channel) {
  return Logged(kTminRow + channel);
}

int PolledOpPoint(int remote) {
  return Logged(kOpPointRow + remote);
}

int PolledLowLimit(int remote) {
  return chip::Measurements.PolledLowLimit[static_cast<std::size_t>(remote)] - Lift(remote);
}

int PolledHighLimit(int remote) {
  return chip::Measurements.PolledHighLimit[static_cast<std::size_t>(remote)] - Lift(remote);
}

}  // namespace zth::windows
