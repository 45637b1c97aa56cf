#pragma once

#include <map>

#include <QWidget>

#include "windows/limits/LimitStops.h"
#include "windows/limits/LimitTables.h"

class QComboBox;

namespace zth::widgets {
class LGauge;
}

namespace zth::windows {

class LimitBoxes;

/// What the window currently knows about a channel, with units; empty for anything unknown.
struct ChannelFacts {
  QString value;  ///< as last measured
  QString limit;  ///< as last read since this window was loaded
};

/// The list, the gauge and the limit boxes of a tab. The list selects the channel whose limit registers the sliders
/// show. ShowLimits is the tab's ShowTemperatureLimits, ShowFanLimit and so on; ApplyLimits is its
/// ApplyTemperatureLimits and so on. A written value never comes from a copy of a limit.
class LimitPanel final : public QWidget {
  Q_OBJECT

 public:
  LimitPanel(const GaugeTab& tab, QWidget* parent);

  /// Refills the list for the present pins and selects nothing.
  void FillList();
  /// Selects the tab's start item. As with any selection, the list's handler runs if that is a change.
  void SelectStart();
  /// Makes the next SelectStart keep the current selection, if it is still listed.
  void KeepSelection();
  /// The number of channels in the list.
  int Count() const;
  bool Lists(const LimitChannel& channel) const;
  void EnableList(bool on);

  /// Reads the limits of the selected channel, low before high, and sets the sliders; to 0 without a channel.
  void ShowLimits();
  /// Writes the sliders' values, low before high, and shows the chip's resulting values. Without a channel it writes
  /// nothing and moves the slider back.
  void ApplyLimits();
  /// The facts about the channel of a row in the tab's alerts.
  ChannelFacts FactsOf(int row) const;
  /// Discards the limits read so far, because they are from another chip.
  void ForgetLimits() { read_.clear(); }
  /// Shows the current reading with needle 1 and the caption.
  void RefreshGauge();

  const GaugeTab& Tab() const { return tab_; }

 private:
  const LimitChannel* Selected() const;
  double Slider(int number) const;
  void SetSlider(int number, double value);
  void SetNeedle(int number, double value);

  const GaugeTab& tab_;
  QComboBox* list_;
  widgets::LGauge* gauge_;
  LimitBoxes* boxes_;
  const LimitChannel* placesOf_ = nullptr;  ///< the channel that `places_` belongs to
  LimitPlaces places_;
  QString kept_;
  std::map<const LimitChannel*, QString> read_;  ///< for FactsOf
};

}  // namespace zth::windows
