#include "windows/fancontrol/DynTminModel.h"

#include <algorithm>

#include "base/BitField.h"
#include "chip/RegisterNames.h"

namespace zth::windows {
namespace {

constexpr unsigned kRemote1 = 1;
constexpr unsigned kRemote2 = 2;
constexpr unsigned kMaxOf4Channels = 6;

void Append(DutyTraceList& list, std::int16_t pwm) {
  const auto place = static_cast<std::size_t>(list.Count++);
  list.Pwm[place] = pwm;
  list.Name[place] = QString("PWM%1").arg(pwm + 1);
}

}  // namespace

std::array<DutyTraceList, kRemotes> ListDutyTraces(const std::array<std::uint8_t, 4>& configs) {
  std::array<DutyTraceList, kRemotes> lists;
  for (std::int16_t pwm = 0; pwm < 4; ++pwm) {
    const unsigned behaviour = base::GetField(configs[static_cast<std::size_t>(pwm)], chip::kBehaviour);
    if (behaviour == kRemote1 || behaviour == kMaxOf4Channels) Append(lists[0], pwm);
    if (behaviour == kRemote2 || behaviour == kMaxOf4Channels) Append(lists[1], pwm);
  }
  return lists;
}

float TraceLabelTop(const TraceZone& zone, std::int32_t value) {
  // Leaves room for the name at the chart's top edge.
  constexpr float kTop = 0.03F;
  const float k = (kTop - zone.bottom) / (zone.max - zone.min);
  const float c = ((zone.bottom + kTop) - (zone.min + zone.max) * k) / 2.0F;
  const float y = static_cast<float>(value) * k + c;
  return std::min(std::max(y, kTop), zone.bottom);
}

}  // namespace zth::windows
