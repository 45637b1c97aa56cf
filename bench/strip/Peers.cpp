#include "Peers.h"

#include <algorithm>
#include <random>
#include <vector>

#include <QChart>
#include <QChartView>
#include <QLineSeries>
#include <QValueAxis>
#include <qcustomplot.h>

namespace bench {
namespace {

/// All traces share one axis rectangle; two would slow it down further.
class PlotPeer final : public Competitor {
 public:
  PlotPeer() {
    plot_.resize(kWidth, kHeight);
    plot_.legend->setVisible(true);
    for (int t = 0; t < kTraces; ++t) {
      plot_.addGraph();
      plot_.graph(t)->setPen(QPen(QColor::fromHsv(t * 30, 255, 160), 1));
    }
    plot_.yAxis->setRange(0, 12000);
    for (int i = 0; i < kPoints; ++i) Feed();
    plot_.show();
  }
  QWidget& Widget() override { return plot_; }
  void Feed() override {
    const double x = next_ * kPeriod;
    for (int t = 0; t < kTraces; ++t) {
      plot_.graph(t)->addData(x, ValueAt(t, next_));
      plot_.graph(t)->data()->removeBefore(x - kPoints * kPeriod);
      plot_.graph(t)->setName(LegendText(t, next_));
    }
    plot_.xAxis->setRange(x - kPoints * kPeriod, x);
    ++next_;
  }
  void Draw() override { plot_.replot(QCustomPlot::rpImmediateRefresh); }

 private:
  QCustomPlot plot_;
  int next_ = 0;
};

class ChartsPeer final : public Competitor {
 public:
  ChartsPeer() {
    auto* chart = new QChart;
    x_ = new QValueAxis;
    auto* y = new QValueAxis;
    y->setRange(0, 12000);
    chart->addAxis(x_, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    for (int t = 0; t < kTraces; ++t) {
      auto* line = new QLineSeries;
      line->setPen(QPen(QColor::fromHsv(t * 30, 255, 160), 1));
      chart->addSeries(line);
      line->attachAxis(x_);
      line->attachAxis(y);
      lines_.push_back(line);
    }
    points_.resize(kTraces);
    view_.setChart(chart);
    view_.resize(kWidth, kHeight);
    for (int i = 0; i < kPoints; ++i) Add();
    Feed();
    view_.show();
  }
  QWidget& Widget() override { return view_; }
  void Feed() override {
    Add();
    for (std::size_t t = 0; t < lines_.size(); ++t) {
      lines_[t]->replace(points_[t]);
      lines_[t]->setName(LegendText(static_cast<int>(t), next_ - 1));
    }
    const double x = (next_ - 1) * kPeriod;
    x_->setRange(x - kPoints * kPeriod, x);
  }
  void Draw() override { view_.viewport()->repaint(); }

 private:
  void Add() {
    for (int t = 0; t < kTraces; ++t) {
      QList<QPointF>& points = points_[static_cast<std::size_t>(t)];
      if (points.size() >= kPoints) points.removeFirst();
      points.append(QPointF(next_ * kPeriod, ValueAt(t, next_)));
    }
    ++next_;
  }

  QChartView view_;
  QValueAxis* x_;
  std::vector<QLineSeries*> lines_;
  std::vector<QList<QPointF>> points_;
  int next_ = 0;
};

}  // namespace

double ValueAt(int trace, int index) {
  // A random walk with a memory of its own length, folded back into the scale.
  static const std::vector<double> kWalk = [] {
    std::vector<double> walk(1 << 16);
    std::mt19937 random(5);
    std::normal_distribution<double> step(0, 60);
    double value = 6000;
    for (double& slot : walk) slot = value = std::clamp(value + step(random), 0.0, 12000.0);
    return walk;
  }();
  return kWalk[static_cast<std::size_t>(index + trace * 5003) % kWalk.size()];
}

QString LegendText(int trace, int index) {
  return QStringLiteral("Tach%1=%2").arg(trace + 1).arg(static_cast<int>(ValueAt(trace, index)));
}

std::unique_ptr<Competitor> MakeQCustomPlot() {
  return std::make_unique<PlotPeer>();
}
std::unique_ptr<Competitor> MakeQtCharts() {
  return std::make_unique<ChartsPeer>();
}

}  // namespace bench
