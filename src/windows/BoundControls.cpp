#include "windows/BoundControls.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <QAbstractButton>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QWidget>

#include "base/NumberText.h"
#include "chip/FieldTexts.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/Handlers.h"
#include "windows/PendingMarks.h"

namespace zth::windows {

const TextCode kDuty{chip::DutyText, [](std::string_view text, int) { return chip::DutyByte(text); }, 0, 100, "%"};
const TextCode kNibble{chip::WholeText, chip::WholeByte, 0, 15, ""};

namespace {

/// The value of a list's field for the item at `position`, and the other way round.
unsigned Turned(const Binding& row, unsigned value) {
  return row.sense == Sense::Inverted ? base::GetField(~(value << row.bits.shift), row.bits) : value;
}

/// What a row's control gives to its register, in place.
unsigned Given(const Binding& row, const QWidget& control) {
  if (const auto* list = qobject_cast<const QComboBox*>(&control)) {
    // An item that stands more than once counts at all of its positions.
    const std::string text = list->currentText().toStdString();
    unsigned value = 0;
    for (unsigned position = 0; position < row.items.size(); ++position) {
      if (text == row.items[position]) value |= Turned(row, position);
    }
    return base::PutField(0, row.bits, value);
  }
  if (const auto* box = qobject_cast<const QLineEdit*>(&control)) {
    return row.code->byte(box->text().toStdString(), row.bits.shift);
  }
  const bool ticked = qobject_cast<const QAbstractButton*>(&control)->isChecked();
  return base::PutField(0, row.bits, ticked == (row.sense == Sense::Straight) ? 1 : 0);
}

/// What the control holds, as a text to compare.
QString Held(const QWidget& control) {
  if (const auto* list = qobject_cast<const QComboBox*>(&control)) return QString::number(list->currentIndex());
  if (const auto* box = qobject_cast<const QLineEdit*>(&control)) return box->text();
  return qobject_cast<const QAbstractButton*>(&control)->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
}

/// The text reads as the number that the chip would show for it.
bool ReadsAs(const std::string& text, const std::string& shown) {
  return base::IsDecimal(text) && base::LeadingDecimal(text) == base::LeadingDecimal(shown);
}

}  // namespace

QString NameOf(const ControlName& control) {
  const QString base = QString::fromLatin1(control.base);
  return control.index < 0 ? base : QString("%1(%2)").arg(base).arg(control.index);
}

QString CaptionOf(const Binding& row) {
  return QString::fromLatin1(row.caption).replace("%1", QString::number(row.control.index + 1));
}

QString PlaceOf(const Binding& row) {
  const int low = row.bits.shift;
  const QString bits =
      row.bits.width == 1 ? QString("bit %1").arg(low) : QString("bits %1:%2").arg(low + row.bits.width - 1).arg(low);
  // Every row has a name: IsSound and _reg see to that.
  return QString::asprintf("0x%02X ", row.reg) + bits + ", " + QString::fromLatin1(chip::RowAt(row.reg)->name);
}

BoundControls::BoundControls(QWidget& window, std::span<const Binding> rows) : QObject(&window), window_(window) {
  bounds_.reserve(rows.size());
  for (const Binding& row : rows) {
    auto* control = window.findChild<QWidget*>(NameOf(row.control));
    if (control == nullptr) throw std::logic_error("no control " + NameOf(row.control).toStdString());
    const QString place = PlaceOf(row);
    control->setToolTip(place);
    bounds_.push_back({&row, control, place, {}, {}, Mark::None});
    Hang(bounds_.back());
    KeepRoomForMark(*control);
  }
  window.installEventFilter(this);
}

void BoundControls::Hang(const Bound& bound) {
  const auto changed = [this, reg = bound.row->reg] { JudgeRegister(reg); };
  if (auto* list = qobject_cast<QComboBox*>(bound.control)) {
    OnSelect(*list, changed, Wheel::WithFocus);  // no more than a pending value
  } else if (auto* box = qobject_cast<QLineEdit*>(bound.control)) {
    OnChange(*box, changed);
  } else {
    OnToggle(*qobject_cast<QAbstractButton*>(bound.control), changed);
  }
}

void BoundControls::Load(std::span<const ReadStep> reads) {
  const QScopedValueRollback loading(loading_, true);
  for (const ReadStep& step : reads) {
    // The buffer is good until the next link call, which a control's handler may make.
    std::array<std::uint8_t, link::kReadBufferSize> bytes{};
    if (step.count == 1) {
      bytes[0] = static_cast<std::uint8_t>(link::ReadRegister(link::DeviceAddress, step.first));
    } else {
      link::ReadRegisterBlock(link::DeviceAddress, step.first, step.count);
      bytes = link::ReadBuffer;
    }
    for (Bound& bound : bounds_) {
      if (Covers(step, bound.row->reg)) Show(bound, bytes[static_cast<std::size_t>(bound.row->reg - step.first)]);
    }
  }
  for (Bound& bound : bounds_) {
    const auto read = [&](const ReadStep& step) { return Covers(step, bound.row->reg); };
    if (std::ranges::any_of(reads, read)) bound.applied = Held(*bound.control);
  }
  JudgeAll();
}

void BoundControls::Show(Bound& bound, unsigned whole) {
  const Binding& row = *bound.row;
  const unsigned field = base::GetField(whole, row.bits);
  bound.field = field;
  if (auto* list = qobject_cast<QComboBox*>(bound.control)) {
    list->setCurrentIndex(static_cast<int>(Turned(row, field)));
  } else if (auto* box = qobject_cast<QLineEdit*>(bound.control)) {
    box->setText(QString::fromStdString(row.code->text(field)));
  } else {
    auto* check = qobject_cast<QAbstractButton*>(bound.control);
    check->setChecked((field != 0) == (row.sense == Sense::Straight));
  }
}

void BoundControls::Apply(std::span<const WriteStep> writes) {
  for (const WriteStep& step : writes) {
    unsigned old = 0;
    if (step.mode == WriteStep::Mode::Modify) {
      old = static_cast<unsigned>(link::ReadRegister(link::DeviceAddress, step.reg));
    }
    link::WriteRegisterValue(link::DeviceAddress, step.reg, Compose(step.reg, old));
  }
  for (Bound& bound : bounds_) {
    if (std::ranges::count(writes, bound.row->reg, &WriteStep::reg) == 0) continue;
    bound.applied = Held(*bound.control);
    bound.field = base::GetField(Compose(bound.row->reg), bound.row->bits);
  }
  JudgeAll();
}

bool BoundControls::HoldsChanges() const {
  return std::ranges::any_of(bounds_, [](const Bound& bound) { return Held(*bound.control) != bound.applied; });
}

std::uint8_t BoundControls::Compose(std::uint8_t reg, unsigned old) const {
  unsigned own = 0;
  unsigned given = 0;
  for (const Bound& bound : bounds_) {
    if (bound.row->reg != reg) continue;
    own |= base::Mask(bound.row->bits);
    given |= Given(*bound.row, *bound.control);
  }
  return static_cast<std::uint8_t>((old & ~own) | given);
}

void BoundControls::JudgeAll() {
  for (Bound& bound : bounds_) Judge(bound);
  PaintTabs();
}

void BoundControls::JudgeRegister(std::uint8_t reg) {
  if (loading_) return;
  // A text that spills changes what its neighbours would read as.
  for (Bound& bound : bounds_) {
    if (bound.row->reg == reg) Judge(bound);
  }
  PaintTabs();
}

void BoundControls::Judge(Bound& bound) {
  const bool pending = Held(*bound.control) != bound.applied;
  const unsigned field = base::GetField(Compose(bound.row->reg), bound.row->bits);
  bool odd = false;
  QString tip = bound.place;
  if (const auto* box = qobject_cast<const QLineEdit*>(bound.control)) {
    const std::string shown = bound.row->code->text(field);
    odd = !ReadsAs(box->text().toStdString(), shown);
    if (odd) tip += QString::asprintf("\nGoes out as %s (0x%02X)", shown.c_str(), field);
  }
  if (!odd && !pending && bound.field && *bound.field != field) {
    odd = true;
    tip += QString::asprintf("\nHolds 0x%02X, goes out as 0x%02X", *bound.field, field);
  }
  const Mark mark = odd ? (pending ? Mark::PendingOdd : Mark::Odd) : (pending ? Mark::Pending : Mark::None);
  if (tip != bound.control->toolTip()) bound.control->setToolTip(tip);
  if (mark == bound.mark) return;
  bound.mark = mark;
  Paint(bound);
}

void BoundControls::Paint(const Bound& bound) const {
  const bool pending = bound.mark == Mark::Pending || bound.mark == Mark::PendingOdd;
  const bool odd = bound.mark == Mark::Odd || bound.mark == Mark::PendingOdd;
  MarkControl(*bound.control, window_, pending, odd);
}

void BoundControls::PaintTabs() const {
  std::vector<std::pair<QWidget*, bool>> states;
  states.reserve(bounds_.size());
  for (const Bound& bound : bounds_) {
    states.emplace_back(bound.control, bound.mark == Mark::Pending || bound.mark == Mark::PendingOdd);
  }
  MarkTabs(window_, states);
}

void BoundControls::Repaint() {
  for (const Bound& bound : bounds_) {
    Paint(bound);
    KeepRoomForMark(*bound.control);
  }
  PaintTabs();
}

bool BoundControls::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (watched == &window_ &&
      (type == QEvent::PaletteChange || type == QEvent::FontChange || type == QEvent::StyleChange)) {
    Repaint();
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace zth::windows
