#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <benchmark/benchmark.h>

#include "bench/shell/Running.h"
#include "tests/support/EveryWindow.h"

/// The times that a user waits: for a window from its menu entry to its first frame, for the program from its first
/// step to the first frame of the main window. The counter "empty" compares each with an empty Qt window of the same
/// kind.
namespace zth {
namespace {

/// A user notices a window that takes longer than this many empty ones; an empty one takes about 0.8 ms.
constexpr double kMostEmptyWindows = 50;

/// The lowest CPU time of thirty runs, in seconds: noise can only raise the reference.
template <typename Work>
double LeastSeconds(const Work& work) {
  double least = 1e9;
  for (int run = 0; run < 30; ++run) {
    const double before = CpuSeconds();
    work();
    least = std::min(least, CpuSeconds() - before);
  }
  return least;
}

/// A main window with the same bars as ours and nothing in them.
class EmptyMain : public QMainWindow {
 public:
  EmptyMain() {
    menuBar()->addMenu("File");
    addToolBar("Tool Bar");
    statusBar();
    setCentralWidget(new QMdiArea);
    resize(1366, 768);
  }
};

void CompareTo(benchmark::State& state, double empty, double seconds) {
  const double ratio = seconds / static_cast<double>(state.iterations()) / empty;
  state.counters["empty"] = ratio;
  if (ratio > kMostEmptyWindows) state.SkipWithError("takes as long as fifty empty windows");
}

void OpenWindow(benchmark::State& state, const QString& name) {
  static const double empty = [] {
    EmptyMain main;
    main.show();
    QApplication::processEvents();
    return LeastSeconds([&main] {
      auto* area = qobject_cast<QMdiArea*>(main.centralWidget());
      auto* inner = new QWidget;
      inner->setMinimumSize(400, 300);
      QMdiSubWindow* frame = area->addSubWindow(inner);
      frame->setAttribute(Qt::WA_DeleteOnClose);
      frame->show();
      QApplication::processEvents();
      frame->close();
      testing::Desk::Settle();
    });
  }();
  Running running;
  running.desk.Main().resize(1366, 768);
  running.desk.Main().show();
  QApplication::processEvents();
  double seconds = 0;
  for (auto _ : state) {
    const double before = CpuSeconds();
    windows::ChildWindow& window = running.desk.Open(name);
    QApplication::processEvents();
    window.Unload();
    testing::Desk::Settle();
    seconds += CpuSeconds() - before;
  }
  CompareTo(state, empty, seconds);
}

/// From the first step of Main to the first frame of the main window, without the prescribed waits.
void StartToMainWindow(benchmark::State& state) {
  const double empty = LeastSeconds([] {
    EmptyMain main;
    main.show();
    QApplication::processEvents();
  });
  double seconds = 0;
  for (auto _ : state) {
    const double before = CpuSeconds();
    testing::Desk desk;
    desk.Start();
    desk.Main().show();
    QApplication::processEvents();
    benchmark::DoNotOptimize(desk.Main());
    seconds += CpuSeconds() - before;
  }
  CompareTo(state, empty, seconds);
}
BENCHMARK(StartToMainWindow)->Unit(benchmark::kMillisecond);

}  // namespace

void RegisterOpenings() {
  for (const std::string& name : testing::EveryWindow()) {
    benchmark::RegisterBenchmark(("Open/" + name).c_str(), OpenWindow, QString::fromStdString(name))
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace zth
