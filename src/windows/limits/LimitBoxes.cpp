#include "windows/limits/LimitBoxes.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QLabel>

#include "platform/Guard.h"
#include "widgets/LGauge.h"
#include "widgets/Named.h"
#include "widgets/NumberBox.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

/// The limit that is `steps` steps away from a limit, which need not be one that the chip can hold.
double Stepped(const LimitPlaces& places, double from, int steps) {
  const std::vector<double> stops = LimitStops(places, from);
  const auto here = std::ranges::find(stops, from) - stops.begin();
  const auto to = std::clamp<std::ptrdiff_t>(here + steps, 0, std::ssize(stops) - 1);
  return stops[static_cast<std::size_t>(to)];
}

}  // namespace

LimitBoxes::LimitBoxes(const GaugeTab& tab, widgets::LGauge& gauge, QWidget* parent)
    : QWidget(parent), gauge_(gauge), firstSlider_(tab.lowAndHigh ? 0 : 1) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  boxes_[0] = AddBox(tab, "Low", "Low li&mit", *row);
  row->addStretch();
  boxes_[1] = AddBox(tab, "High", tab.lowAndHigh ? "Hi&gh limit" : "L&imit", *row);
  for (std::size_t box = 0; box < boxes_.size(); ++box) {
    const int position = static_cast<int>(box) - firstSlider_;
    if (position < 0) continue;
    connect(boxes_[box], &widgets::NumberBox::Entered, this, [this, position](double value) {
      platform::Guarded([this, position, value] { Move(position, value); })();
    });
    connect(boxes_[box], &widgets::NumberBox::Stepped, this, [this, position](double from, int steps) {
      platform::Guarded([this, position, from, steps] { Move(position, Stepped(places_, from, steps)); })();
    });
  }
  ShowSliders(false, {});
}

widgets::NumberBox* LimitBoxes::AddBox(const GaugeTab& tab, const char* which, const QString& caption,
                                       QHBoxLayout& row) {
  auto* box = widgets::Named<widgets::NumberBox>(QString(tab.gauge).replace("gge", "txt") + which, this);
  box->setAccessibleName(QString("%1 %2 limit, %3").arg(tab.subject, QString(which).toLower(), tab.unit));
  box->setToolTip("Enter writes the limit to the chip, an arrow the next one that the chip can hold");
  // A step writes at once, so one accidental notch of the wheel must not change a limit.
  LimitWheel(*box, Wheel::Never);
  auto* label = new QLabel(QString("%1 (%2)").arg(caption, tab.unit), this);
  label->setBuddy(box);
  row.addWidget(label);
  row.addWidget(box);
  return box;
}

void LimitBoxes::Move(int position, double value) {
  // A box with unfinished typing also reports its number when its window closes, because it loses the focus. That
  // number is not written.
  if (Shared.LimitsOpen) gauge_.MoveByUser(position, value);
}

void LimitBoxes::ShowSliders(bool hasChannel, const LimitPlaces& places) {
  places_ = places;
  const widgets::DialScale scale = gauge_.Scale();
  const auto textOf = [&scale](double value) { return QString::fromStdString(scale.Text(value)); };
  for (int box = 0; box < static_cast<int>(boxes_.size()); ++box) {
    widgets::NumberBox& shown = *boxes_[static_cast<std::size_t>(box)];
    const int position = box - firstSlider_;
    const bool there = hasChannel && position >= 0;
    shown.SetRange(gauge_.ScaleMin(), gauge_.ScaleMax());
    shown.SetRoom(std::max(textOf(gauge_.ScaleMin()), textOf(gauge_.ScaleMax()),
                           [](const QString& a, const QString& b) { return a.size() < b.size(); }));
    shown.setEnabled(there);
    if (there) {
      const double value = gauge_.SliderValue(position);
      shown.Show(value, textOf(value));
    } else {
      shown.ShowNothing();
    }
  }
}

}  // namespace zth::windows
