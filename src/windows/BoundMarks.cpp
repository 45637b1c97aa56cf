#include "windows/BoundMarks.h"

#include <QEvent>
#include <QWidget>

#include "windows/BoundControls.h"
#include "windows/PendingMarks.h"

namespace zth::windows {

BoundMarks::BoundMarks(QWidget& window, BoundControls& controls)
    : QObject(&window), window_(window), controls_(controls), marks_(controls.Bounds().size()) {
  for (const Bound& bound : controls.Bounds()) {
    bound.editor->Control().setToolTip(PlaceOf(*bound.row));
    KeepRoomForMark(bound.editor->Control(), bound.editor->WidestText());
  }
  controls.SetWatch([this](const Binding* row) { Judge(row); });
  window.installEventFilter(this);
}

void BoundMarks::Judge(const Binding* row) {
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    const Bound& bound = controls_.Bounds()[i];
    // A text whose value spills over also changes how its neighbours would read back.
    if (row == nullptr || bound.row->reg == row->reg) JudgeOne(bound, marks_[i]);
  }
  PaintTabs();
}

void BoundMarks::JudgeOne(const Bound& bound, Mark& mark) {
  const unsigned field = base::GetField(controls_.Compose(bound.row->reg), bound.row->bits);
  Mark now{.pending = bound.IsPending()};
  QString tip = PlaceOf(*bound.row);
  if (const auto shown = bound.editor->ReadsBackAs(field)) {
    now.odd = true;
    tip += QString::asprintf("\nGoes out as %s (0x%02X)", shown->c_str(), field);
  } else if (!now.pending && bound.field && *bound.field != field) {
    now.odd = true;
    tip += QString::asprintf("\nHolds 0x%02X, goes out as 0x%02X", *bound.field, field);
  }
  QWidget& control = bound.editor->Control();
  if (tip != control.toolTip()) control.setToolTip(tip);
  if (now == mark) return;
  mark = now;
  Paint(bound, mark);
}

void BoundMarks::Paint(const Bound& bound, const Mark& mark) const {
  MarkControl(bound.editor->Control(), window_, mark.pending, mark.odd);
}

void BoundMarks::PaintTabs() const {
  std::vector<std::pair<QWidget*, bool>> states;
  states.reserve(marks_.size());
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    states.emplace_back(&controls_.Bounds()[i].editor->Control(), marks_[i].pending);
  }
  MarkTabs(window_, states);
}

void BoundMarks::Repaint() {
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    const Bound& bound = controls_.Bounds()[i];
    Paint(bound, marks_[i]);
    KeepRoomForMark(bound.editor->Control(), bound.editor->WidestText());
  }
  PaintTabs();
}

bool BoundMarks::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (watched == &window_ &&
      (type == QEvent::PaletteChange || type == QEvent::FontChange || type == QEvent::StyleChange)) {
    Repaint();
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace zth::windows
