#include "windows/fancontrol/ChipHint.h"

#include <array>
#include <utility>

#include <QLabel>
#include <QLineEdit>

#include "base/Rounding.h"
#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/DegreesText.h"
#include "chip/Measurements.h"
#include "chip/RegisterNames.h"
#include "widgets/Pale.h"
#include "windows/Handlers.h"

namespace zth::windows {
namespace {

constexpr std::size_t kPolledGroup = 6;
constexpr std::size_t kTminRow = 39;
constexpr std::size_t kOpPointRow = 42;  // the row for remote 0, which does not exist

int Logged(std::size_t row) {
  return base::RoundToInt(static_cast<double>(chip::Model.LogChannelTable[row].Value));
}

int PolledTmin(std::size_t channel) {
  return Logged(kTminRow + channel);
}

int PolledOpPoint(std::size_t remote) {
  return Logged(kOpPointRow + remote);
}

/// What the demo had added to a remote's values when they were polled.
int Lift(std::size_t remote) {
  return chip::Model.Measurements.PolledTmin[remote] - PolledTmin(remote);
}

int PolledLowLimit(std::size_t remote) {
  return chip::Model.Measurements.PolledLowLimit[remote] - Lift(remote);
}

int PolledHighLimit(std::size_t remote) {
  return chip::Model.Measurements.PolledHighLimit[remote] - Lift(remote);
}

/// A run of registers, and the channel of the first one.
struct PolledRun {
  int first;
  int count;
  std::size_t channel;
  int (*degrees)(std::size_t channel);
};
constexpr std::array kPolledRuns{
    PolledRun{"Local Tmin"_reg, 4, 0, PolledTmin},
    PolledRun{"Remote 1 Operating Point"_reg, 2, 1, PolledOpPoint},
    PolledRun{"Remote 1 Low Limit"_reg, 2, 1, PolledLowLimit},
    PolledRun{"Remote 1 High Limit"_reg, 2, 1, PolledHighLimit},
};

}  // namespace

ChipHint::ChipHint(QLineEdit& box, QLabel& label, Polled polled)
    : box_(box), label_(label), polled_(std::move(polled)) {
  OnChange(box_, [this] { Settle(); });
}

void ChipHint::Settle() {
  readsThen_ = chip::Model.Measurements.Reads[kPolledGroup];
  label_.clear();
}

bool ChipHint::IsMoved() const {
  if (chip::Model.Measurements.Reads[kPolledGroup] == readsThen_) return false;
  return polled_() != chip::DegreesFromByte(chip::DegreesByte(box_.text().toStdString()));
}

void ChipHint::Refresh(bool otherChip) {
  const QString text = !otherChip && IsMoved() ? QString("chip: %1").arg(polled_()) : QString();
  const QString age = text.isEmpty() ? QString() : chip::AgeSuffix(chip::kDynamicTminGroup);
  widgets::MakePale(label_, !age.isEmpty());
  // Every set tip tells the label's window of a change, even of none.
  const QString tip = age.isEmpty() ? QString() : text + age;
  if (tip != label_.toolTip()) label_.setToolTip(tip);
  const QString spoken = text.isEmpty() ? QString() : QString("The chip holds %1").arg(polled_()) + age;
  if (text == label_.text() && spoken == box_.accessibleDescription()) return;
  label_.setText(text);
  box_.setAccessibleDescription(spoken);
}

ChipHint::Polled PolledDegrees(int reg) {
  for (const PolledRun& run : kPolledRuns) {
    if (reg < run.first || reg >= run.first + run.count) continue;
    return [&run, channel = run.channel + static_cast<std::size_t>(reg - run.first)] { return run.degrees(channel); };
  }
  return {};
}

}  // namespace zth::windows
