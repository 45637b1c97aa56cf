#include "windows/BoundControls.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <QScopedValueRollback>
#include <QWidget>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "chip/DegreesText.h"
#include "chip/FieldTexts.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"

namespace zth::windows {
namespace {

std::uint8_t CutNibble(std::string_view text, int shift) {
  const auto value = static_cast<unsigned>(base::RoundToInt(base::LeadingDecimal(text)));
  return base::PutField(0, {static_cast<std::uint8_t>(shift), 4}, value);
}

}  // namespace

const TextCode kDuty{chip::DutyText, [](std::string_view text, int) { return chip::DutyByte(text); }, 0, 100, "%",
                     "Percent"};
const TextCode kNibble{chip::WholeText, chip::WholeByte, 0, 15, "\u00B0C", "Degrees C"};
const TextCode kCutNibble{chip::WholeText, CutNibble, 0, 15, "\u00B0C", "Degrees C"};
const TextCode kDegrees{[](unsigned field) { return chip::DegreesText(static_cast<std::uint8_t>(field)); },
                        [](std::string_view text, int) { return chip::DegreesByte(text); },
                        0,
                        120,
                        "\u00B0C",
                        "Degrees C"};

BoundControls::BoundControls(QWidget& window, std::span<const Binding> rows, Changed live)
    : QObject(&window), live_(std::move(live)) {
  bounds_.reserve(rows.size());
  // The wheel may change only values that wait for Apply.
  const Wheel wheel = live_ ? Wheel::Never : Wheel::WithFocus;
  for (const Binding& row : rows) {
    bounds_.push_back({&row, Editor::Take(row, window), {}, {}});
    const auto changed = [this, &row] {
      if (live_) live_(row);
      if (!loading_) Tell(&row);
    };
    bounds_.back().editor->OnChanged(changed, wheel);
  }
}

void BoundControls::Tell(const Binding* row) const {
  if (watch_) watch_(row);
}

void BoundControls::Load(std::span<const ReadStep> reads) {
  Read(reads, false);
}

bool BoundControls::Refresh(std::span<const ReadStep> reads) {
  return Read(reads, true);
}

bool BoundControls::Read(std::span<const ReadStep> reads, bool keepsUnread) {
  const QScopedValueRollback loading(loading_, true);
  bool all = true;
  for (const ReadStep& step : reads) {
    const link::FailureWatch watch;
    // Copied, since a control's handler may make a link call, which overwrites the buffer.
    std::array<std::uint8_t, link::kReadBufferSize> bytes{};
    if (step.block) {
      link::ReadRegisterBlock(link::Bus.DeviceAddress, step.first, step.count);
      bytes = link::Bus.ReadBuffer;
    } else {
      bytes[0] = static_cast<std::uint8_t>(link::ReadRegister(link::Bus.DeviceAddress, step.first));
    }
    if (keepsUnread && watch.Failed()) {
      all = false;
      continue;
    }
    for (Bound& bound : bounds_) {
      const Binding& row = *bound.row;
      if (!Covers(step, row.reg)) continue;
      const unsigned field = base::GetField(bytes[static_cast<std::size_t>(row.reg - step.first)], row.bits);
      bound.field = field;
      bound.editor->Show(field);
    }
  }
  for (Bound& bound : bounds_) {
    const auto read = [&](const ReadStep& step) { return Covers(step, bound.row->reg); };
    if (std::ranges::any_of(reads, read)) bound.applied = bound.editor->Held();
  }
  Tell(nullptr);
  return all;
}

void BoundControls::Apply(std::span<const WriteStep> writes) {
  for (const WriteStep& step : writes) {
    unsigned old = 0;
    if (step.mode == WriteStep::Mode::Modify) {
      old = static_cast<unsigned>(link::ReadRegister(link::Bus.DeviceAddress, step.reg));
    }
    link::WriteRegisterValue(link::Bus.DeviceAddress, step.reg, Compose(step.reg, old));
  }
  for (Bound& bound : bounds_) {
    if (std::ranges::count(writes, bound.row->reg, &WriteStep::reg) == 0) continue;
    bound.applied = bound.editor->Held();
    bound.field = base::GetField(Compose(bound.row->reg), bound.row->bits);
  }
  Tell(nullptr);
}

void BoundControls::Write(const Binding& row) {
  Bound& bound = bounds_[static_cast<std::size_t>(&row - bounds_.front().row)];
  const unsigned given = bound.editor->Given();
  bound.field = base::GetField(given, row.bits);
  const unsigned own = base::Mask(row.bits);
  if (row.alone || own == 0xFF) {
    link::WriteRegisterValue(link::Bus.DeviceAddress, row.reg, static_cast<std::int32_t>(given));
  } else {
    link::ModifyRegister(link::Bus.DeviceAddress, row.reg, own, given);
  }
}

bool BoundControls::HoldsChanges() const {
  return std::ranges::any_of(bounds_, &Bound::IsPending);
}

std::uint8_t BoundControls::Compose(std::uint8_t reg, unsigned old) const {
  unsigned own = 0;
  unsigned given = 0;
  for (const Bound& bound : bounds_) {
    if (bound.row->reg != reg) continue;
    own |= base::Mask(bound.row->bits);
    given |= bound.editor->Given();
  }
  return static_cast<std::uint8_t>((old & ~own) | given);
}

std::string BoundControls::TextOf(const ControlName& control) const {
  return BoundTo(control).editor->Text().toStdString();
}

unsigned BoundControls::FieldOf(const ControlName& control) const {
  return BoundTo(control).field.value_or(0);
}

const Bound& BoundControls::BoundTo(const ControlName& control) const {
  for (const Bound& bound : bounds_) {
    const ControlName& name = bound.row->control;
    if (name.index == control.index && std::string_view(name.base) == control.base) return bound;
  }
  throw std::logic_error("no row for " + NameOf(control).toStdString());
}

}  // namespace zth::windows
