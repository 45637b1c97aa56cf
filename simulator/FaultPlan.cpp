#include "simulator/FaultPlan.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ratio>

namespace zth::simulator {
namespace {

bool Stands(const Fault& fault, std::chrono::nanoseconds now) {
  return fault.from <= now && (!fault.until || now < *fault.until);
}

bool Touches(const Fault& fault, const Transfer& transfer) {
  if (fault.request && *fault.request != transfer.request) return false;
  if (!fault.address) return true;
  return transfer.first <= *fault.address && *fault.address < transfer.first + transfer.count;
}

/// Applies an active fault that wears or drifts.
void Degrade(BoardFaults& board, const Fault& fault, std::chrono::nanoseconds now) {
  const auto i = At(fault.index);
  const double drift = fault.value * std::chrono::duration<double, std::ratio<60>>(now - fault.from).count();
  if (fault.kind == FaultKind::FanWorn) board.fanShare[i] = fault.value / 100;
  if (fault.kind == FaultKind::TachNoisy) board.tachNoise[i] = fault.value / 100;
  if (fault.kind == FaultKind::TachMisses) board.tachLost[i] = fault.value / 100;
  if (fault.kind == FaultKind::SensorDrifts) board.sensorDriftC[i] += drift;
  if (fault.kind == FaultKind::SensorFrozen) board.sensorFrozen[i] = true;
  if (fault.kind == FaultKind::AmbientAt) board.ambientC = fault.value;
  if (fault.kind == FaultKind::AmbientDrifts) board.ambientDriftC += drift;
}

}  // namespace

FaultClock::FaultClock(const FaultPlan& plan, Link link) {
  for (const Fault& fault : plan) {
    if (fault.link.value_or(link) != link) continue;
    plan_.push_back(fault);
    left_.push_back(fault.count);
  }
}

BoardFaults FaultClock::OnBoard(std::chrono::nanoseconds now) const {
  BoardFaults board;
  for (const Fault& fault : plan_) {
    if (!Stands(fault, now)) continue;
    if (fault.kind == FaultKind::FanStalled) board.fanStalled[At(fault.index)] = true;
    if (fault.kind == FaultKind::HeaterStuck) board.heaterStuck[At(fault.index)] = fault.value / 100;
    if (fault.kind == FaultKind::DiodeOpen) board.diodeOpen[At(fault.index)] = true;
    if (fault.kind == FaultKind::ThermLow) board.thermPulledLow[At(fault.index)] = true;
    if (fault.kind == FaultKind::VrHot) board.vrHot[At(fault.index)] = true;
    if (fault.kind == FaultKind::Pin27Asserted) board.pin27Asserted = true;
    if (fault.kind == FaultKind::GpioLow) board.gpioPulledLow[At(fault.index)] = true;
    if (fault.kind == FaultKind::SupplyFactor) board.supplyFactor[At(fault.pin)] = fault.value / 100;
    if (fault.kind == FaultKind::VidCode) board.vid = static_cast<std::uint8_t>(fault.value);
    Degrade(board, fault, now);
  }
  return board;
}

bool FaultClock::Unplugged(std::chrono::nanoseconds now) const {
  return std::any_of(plan_.begin(), plan_.end(), [now](const Fault& fault) {
    return fault.kind == FaultKind::AdapterUnplugged && Stands(fault, now);
  });
}

bool FaultClock::Fails(std::chrono::nanoseconds now, const Transfer& transfer) {
  if (Unplugged(now)) return true;
  for (std::size_t i = 0; i < plan_.size(); ++i) {
    const Fault& fault = plan_[i];
    if (fault.kind != FaultKind::TransferFails || !Stands(fault, now) || !Touches(fault, transfer)) continue;
    const bool forGood = fault.count == 0;
    if (forGood) return true;
    if (left_[i] == 0) continue;
    --left_[i];
    return true;
  }
  return false;
}

std::chrono::milliseconds FaultClock::Delay(std::chrono::nanoseconds now, const Transfer& transfer) const {
  std::chrono::milliseconds delay{0};
  for (const Fault& fault : plan_) {
    if (fault.kind != FaultKind::TransferSlow || !Stands(fault, now) || !Touches(fault, transfer)) continue;
    delay = std::max(delay, std::chrono::milliseconds(fault.milliseconds));
  }
  return delay;
}

std::uint8_t FaultClock::Seen(std::chrono::nanoseconds now, std::uint8_t address, std::uint8_t value) const {
  for (const Fault& fault : plan_) {
    if (fault.address != address || !Stands(fault, now)) continue;
    if (fault.kind == FaultKind::RegisterStuck) value = static_cast<std::uint8_t>(fault.value);
    if (fault.kind == FaultKind::BitFlipped) value ^= static_cast<std::uint8_t>(1 << static_cast<int>(fault.value));
  }
  return value;
}

bool FaultClock::WriteLost(std::chrono::nanoseconds now, std::uint8_t address) const {
  return std::any_of(plan_.begin(), plan_.end(), [&](const Fault& fault) {
    return fault.kind == FaultKind::RegisterStuck && fault.address == address && Stands(fault, now);
  });
}

}  // namespace zth::simulator
