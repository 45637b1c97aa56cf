#include "windows/fancontrol/DotTrail.h"

#include <algorithm>

namespace zth::windows {

void DotTrail::Add(const Dot& dot) {
  std::erase_if(dots_, [&dot](const Dot& old) { return old.source == dot.source && old.x == dot.x && old.y == dot.y; });
  dots_.push_back(dot);
}

void DotTrail::Expire(double now) {
  std::erase_if(dots_, [now](const Dot& dot) { return dot.time + kSeconds <= now; });
}

int DotTrail::AgeOf(const Dot& dot, double now) {
  return std::clamp(static_cast<int>((now - dot.time) * kAges / kSeconds), 0, kAges - 1);
}

}  // namespace zth::windows
