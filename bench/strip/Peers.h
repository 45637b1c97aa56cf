#pragma once

#include <memory>

#include <QString>

class QWidget;

/// The chart libraries that the strip chart is compared with, each drawing live data as its documentation recommends.
namespace bench {

inline constexpr int kTraces = 12;
inline constexpr int kPoints = 2000;
inline constexpr double kPeriod = 0.05;
inline constexpr int kWidth = 800;
inline constexpr int kHeight = 500;

/// The value of a trace's sample `index`, 0 to 12000: a random walk, the same for all competitors.
double ValueAt(int trace, int index);
/// The text of a legend entry for that value.
QString LegendText(int trace, int index);

class Competitor {
 public:
  virtual ~Competitor() = default;
  virtual QWidget& Widget() = 0;
  /// Adds one sample to each trace and moves the window along.
  virtual void Feed() = 0;
  /// Draws now.
  virtual void Draw() = 0;
};

std::unique_ptr<Competitor> MakeQCustomPlot();
std::unique_ptr<Competitor> MakeQtCharts();

}  // namespace bench
