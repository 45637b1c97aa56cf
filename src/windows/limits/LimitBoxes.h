#pragma once

#include <array>

#include <QWidget>

#include "windows/limits/LimitStops.h"
#include "windows/limits/LimitTables.h"

class QHBoxLayout;

namespace zth::widgets {
class LGauge;
class NumberBox;
}  // namespace zth::widgets

namespace zth::windows {

/// A gauge's limits as two boxes to type in, low and high. They store nothing: a typed number moves the gauge's slider
/// as a drag does, and the boxes then show the result. Their arrows go to the next limit that the chip can hold.
class LimitBoxes final : public QWidget {
  Q_OBJECT

 public:
  LimitBoxes(const GaugeTab& tab, widgets::LGauge& gauge, QWidget* parent);

  /// Shows the positions of the sliders. Without a channel both boxes are empty and disabled.
  void ShowSliders(bool hasChannel, const LimitPlaces& places);

 private:
  widgets::NumberBox* AddBox(const GaugeTab& tab, const char* which, const QString& caption, QHBoxLayout& row);
  void Move(int position, double value);

  widgets::LGauge& gauge_;
  LimitPlaces places_;
  std::array<widgets::NumberBox*, 2> boxes_{};  ///< low, high
  int firstSlider_;                             ///< the box that belongs to the gauge's first slider
};

}  // namespace zth::windows
