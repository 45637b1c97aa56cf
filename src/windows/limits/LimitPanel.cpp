#include "windows/limits/LimitPanel.h"

#include <algorithm>
#include <utility>

#include <QComboBox>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/NumberText.h"
#include "chip/ChipState.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/LGauge.h"
#include "windows/Handlers.h"
#include "windows/limits/LimitBoxes.h"

namespace zth::windows {
namespace {

constexpr int kScaleEndNeedle = 0;
constexpr int kReadingNeedle = 1;
constexpr int kLowSlider = 2;
constexpr int kHighSlider = 3;

/// A blank takes the place of the sign in a value that is not negative.
QString ReadingText(float value, const char* unit) {
  return (value < 0 ? "" : " ") + QString::fromStdString(base::GeneralText(value)) + unit;
}

}  // namespace

LimitPanel::LimitPanel(const GaugeTab& tab, QWidget* parent)
    : QWidget(parent), tab_(tab), list_(new QComboBox(this)), gauge_(new widgets::LGauge(this)) {
  const QString subject(tab.subject);
  list_->setObjectName(tab.list);
  list_->setAccessibleName(subject + " channel");
  list_->setAccessibleDescription(list_->accessibleName());  // some desktops announce only this for a list without a
                                                             // label
  list_->setToolTip("The channel that the gauge shows");
  gauge_->setObjectName(tab.gauge);
  gauge_->setAccessibleName(subject + " limits");
  gauge_->setToolTip("Drag the sliders to change the limits");
  gauge_->SetSliders(tab.lowAndHigh ? widgets::LGauge::LowAndHighSliders() : widgets::LGauge::SoleSlider());
  gauge_->SetScaleMin(tab.scaleMin);
  gauge_->SetScaleMax(tab.scaleMax);
  gauge_->SetCaption("Present");

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(list_);
  column->addWidget(gauge_, 1);
  boxes_ = new LimitBoxes(tab, *gauge_, this);
  column->addWidget(boxes_);

  OnSelect(*list_, [this] { ShowLimits(); });
  connect(gauge_, &widgets::LGauge::SliderChanged, this, ByUser(*gauge_, [this] { ApplyLimits(); }));
}

void LimitPanel::FillList() {
  const QSignalBlocker quiet(list_);  // filling a list also selects an item
  list_->clear();
  read_.clear();
  for (const LimitChannel& channel : tab_.channels) {
    if (channel.listed == nullptr || channel.listed(chip::Model.PinFunctions)) list_->addItem(channel.item);
  }
  list_->setCurrentIndex(-1);
}

void LimitPanel::SelectStart() {
  const int kept = list_->findText(std::exchange(kept_, {}));
  if (kept >= 0) {
    list_->setCurrentIndex(kept);
    return;
  }
  if (tab_.startItem < list_->count()) list_->setCurrentIndex(tab_.startItem);
}

void LimitPanel::KeepSelection() {
  kept_ = list_->currentText();
}

int LimitPanel::Count() const {
  return list_->count();
}

bool LimitPanel::Lists(const LimitChannel& channel) const {
  return list_->findText(channel.item) >= 0;
}

void LimitPanel::EnableList(bool on) {
  list_->setEnabled(on);
}

const LimitChannel* LimitPanel::Selected() const {
  const QString item = list_->currentText().trimmed();
  const auto found = std::find_if(tab_.channels.begin(), tab_.channels.end(),
                                  [&item](const LimitChannel& channel) { return item == channel.item; });
  return found == tab_.channels.end() ? nullptr : &*found;
}

double LimitPanel::Slider(int number) const {
  gauge_->SetPointerIndex(number);
  return gauge_->PointerValue();
}

void LimitPanel::SetSlider(int number, double value) {
  gauge_->SetPointerIndex(number);
  gauge_->SetPointerValue(value);
}

void LimitPanel::SetNeedle(int number, double value) {
  gauge_->SetNeedleIndex(number);
  gauge_->SetNeedleValue(value);
}

void LimitPanel::ShowLimits() {
  const LimitChannel* channel = Selected();
  if (channel == nullptr) {
    if (tab_.lowAndHigh) SetSlider(kLowSlider, 0);
    SetSlider(kHighSlider, 0);
    boxes_->ShowSliders(false, {});
    return;
  }
  const auto read = [channel, this](int reg) {
    return tab_.show(static_cast<std::uint8_t>(link::ReadRegister(link::Bus.DeviceAddress, reg)), *channel);
  };
  const double low = tab_.lowAndHigh ? read(channel->lowRegister) : 0;
  const double high = read(channel->highRegister);
  if (tab_.scaleFollowsChannel) {
    const double top = tab_.show(255, *channel);
    gauge_->SetScaleMin(0);
    gauge_->SetScaleMax(top);
    SetNeedle(kScaleEndNeedle, top);
    SetNeedle(kReadingNeedle, top / 2);
  }
  if (std::exchange(placesOf_, channel) != channel) places_ = PlacesOf(tab_, *channel);
  for (const auto& [number, value] : {std::pair{kLowSlider, low}, {kHighSlider, high}}) {
    if (number == kLowSlider && !tab_.lowAndHigh) continue;
    SetSlider(number, value);
    gauge_->SetSliderStops(number, LimitStops(places_, value));
  }
  boxes_->ShowSliders(true, places_);
  const auto text = [this](double value) { return QString::fromStdString(gauge_->Scale().Text(value)); };
  read_[channel] = (tab_.lowAndHigh ? text(low) + " to " : QString()) + text(high) + tab_.unit;
}

ChannelFacts LimitPanel::FactsOf(int row) const {
  for (const LimitChannel& channel : tab_.channels) {
    const bool listed = channel.listed == nullptr || channel.listed(chip::Model.PinFunctions);
    if (channel.row != row || !listed) continue;
    const auto limit = read_.find(&channel);
    return {ReadingText(tab_.reading(static_cast<std::size_t>(channel.index)), tab_.unit).trimmed(),
            limit == read_.end() ? QString() : limit->second};
  }
  return {};
}

void LimitPanel::ApplyLimits() {
  if (const LimitChannel* channel = Selected()) {
    const auto write = [channel, this](int reg, int slider) {
      link::WriteRegisterValue(link::Bus.DeviceAddress, reg, tab_.encode(Slider(slider), *channel));
    };
    // Every drag writes both, whichever was moved, without checking them against each other.
    if (tab_.lowAndHigh) write(channel->lowRegister, kLowSlider);
    write(channel->highRegister, kHighSlider);
  }
  ShowLimits();
}

void LimitPanel::RefreshGauge() {
  const LimitChannel* channel = Selected();
  const bool none = channel == nullptr && tab_.emptyCaption != nullptr;
  gauge_->SetStale(!none && chip::IsStale(tab_.group));
  if (none) {
    SetNeedle(kReadingNeedle, 0);
    gauge_->SetCaption(tab_.emptyCaption);
    return;
  }
  const float value = tab_.reading(channel == nullptr ? 0 : static_cast<std::size_t>(channel->index));
  SetNeedle(kReadingNeedle, static_cast<double>(value));
  gauge_->SetCaption(ReadingText(value, tab_.unit) + chip::AgeSuffix(tab_.group));
}

}  // namespace zth::windows
