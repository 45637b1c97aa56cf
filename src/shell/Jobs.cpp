#include "shell/Jobs.h"

#include "link/LinkErrors.h"

namespace zth::shell {

void JobList::Add(Job job) {
  rows_.push_back({std::move(job)});
}

void JobList::Tick() {
  for (Row& row : rows_) {
    // A box of the link lets timer events through; nothing may touch the board meanwhile.
    if (link::LinkHeld()) return;
    if (!row.job.condition()) continue;
    const double now = clock_.Now();
    // The clock is monotonic, so a stamp in the future means that it was set back; the job then runs at once.
    const bool due = row.stamp + row.job.period() < now || row.stamp > now;
    if (!due) continue;
    row.job.action();
    row.stamp = clock_.Now();
  }
}

}  // namespace zth::shell
