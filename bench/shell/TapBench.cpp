#include <array>
#include <cstdint>

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include "bench/shell/Running.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "tasks/Recorder.h"
#include "tasks/TasksState.h"

/// What it costs a transfer to be shown to an observer.
namespace zth {
namespace {

/// The most that a transfer may pay, in seconds.
constexpr double kMostWithoutObserver = 10e-9;
constexpr double kMostWithRing = 100e-9;

constexpr std::array<std::uint8_t, 4> kBytes{1, 2, 3, 4};

/// Shows a million calls, as a block read does each.
double SecondsToShow(int calls) {
  const double before = CpuSeconds();
  for (int i = 0; i < calls; ++i) {
    benchmark::DoNotOptimize(link::Bus.observer);
    link::ShowCall({.mode = link::kModeUsb,
                    .form = link::Form::ReadBlock,
                    .address = 0x58,
                    .reg = static_cast<std::uint8_t>(i & 0x7F),
                    .bytes = kBytes});
  }
  return CpuSeconds() - before;
}

void Show(benchmark::State& state, double most) {
  constexpr int kCalls = 1'000'000;
  double seconds = 0;
  for (auto _ : state) {
    const double taken = SecondsToShow(kCalls);
    state.SetIterationTime(taken);
    seconds += taken;
  }
  const double one = seconds / static_cast<double>(state.iterations()) / kCalls;
  state.counters["ns_a_call"] = one * 1e9;
  if (one > most) state.SkipWithError("a shown call costs too much");
}

void ShowToNobody(benchmark::State& state) {
  link::Bus = {};
  Show(state, kMostWithoutObserver);
}
BENCHMARK(ShowToNobody)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The ring is full, so that each call also takes the oldest out.
void ShowToRing(benchmark::State& state) {
  link::Bus = {};
  tasks::Traffic ring;
  link::Bus.observer = &ring;
  SecondsToShow(static_cast<int>(tasks::Traffic::kMostRecords));
  Show(state, kMostWithRing);
  link::Bus = {};
}
BENCHMARK(ShowToRing)->UseManualTime()->Unit(benchmark::kMillisecond);

/// A read over a link that takes no time, without and with a recorder behind the ring.
void ReadARegister(benchmark::State& state) {
  const QTemporaryDir folder;
  Running running;
  platform::DesktopFiles files;
  platform::Services& all = running.desk.services;
  platform::Services services{all.prompts, all.fileDialogs, all.settings, all.shell,     all.clock,
                              all.events,  all.libraries,   files,        all.clipboard, all.process};
  if (state.range(0) != 0) {
    tasks::Work.recorder = std::make_unique<tasks::Recorder>(*tasks::Work.traffic, services,
                                                             folder.filePath("recording.txt"), 256 * 1024 * 1024);
  }
  for (auto _ : state) link::ReadRegister(0x58, 0x3E);
  if (!tasks::RecordingTrouble().isEmpty()) state.SkipWithError("the recording has ended");
  tasks::Work.recorder.reset();
}
BENCHMARK(ReadARegister)->ArgName("recorded")->Arg(0)->Arg(1);

}  // namespace
}  // namespace zth
