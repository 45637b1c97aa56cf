#include "simulator/Bus.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "simulator/ChipTime.h"

namespace zth::simulator {
namespace {

constexpr std::chrono::minutes kLongestPause{10};
constexpr std::chrono::seconds kUnderPower{2};
constexpr std::uint8_t kNobody = 0xFF;  // what floating bus lines read as

BoardOptions OptionsOf(const Settings& settings, std::uint8_t address, bool switches) {
  BoardOptions options;
  options.chip.revision = settings.revision;
  options.chip.seed = settings.seed ^ (std::uint64_t{address} << 32U);
  options.chip.noise = settings.noise;
  options.plant = settings.plant;
  options.plant.seed = options.chip.seed + 1;
  options.plant.ambientC = settings.ambientC;
  options.plant.ripple = settings.noise;
  options.plant.fanPulses = settings.fanPulses;
  options.switches = switches;
  options.diodeAtD2Connector = settings.diodeAtD2Connector;
  return options;
}

}  // namespace

Bus::Bus(const Settings& settings, Link link)
    : setUp_(settings.setUp), faults_(settings.faults, link), timeFactor_(settings.timeFactor) {
  const std::vector<std::uint8_t>& addresses = link == Link::Usb ? settings.usbChips : settings.smbusChips;
  for (const std::uint8_t address : addresses) {
    // The switches are on the adapter and belong to the first board; on other boards all connections are permanently
    // closed.
    const bool switches = link == Link::Usb && address == addresses.front();
    boards_[address] = std::make_unique<Board>(OptionsOf(settings, address, switches));
    if (first_ == nullptr) first_ = boards_[address].get();
  }
}

void Bus::PowerUp() {
  for (auto& [address, board] : boards_) {
    for (std::size_t i = 0; i + 1 < setUp_.size(); i += 2) board->TheChip().Write(setUp_[i], setUp_[i + 1]);
    board->Advance(kUnderPower);
  }
}

void Bus::Owe(std::chrono::nanoseconds elapsed) {
  elapsed = std::clamp<std::chrono::nanoseconds>(elapsed, std::chrono::nanoseconds{0}, kLongestPause);
  owed_ += std::chrono::nanoseconds{static_cast<std::int64_t>(static_cast<double>(elapsed.count()) * timeFactor_)};
  // However slow the boards catch up, never more than the longest pause is outstanding.
  const double most = static_cast<double>(std::chrono::nanoseconds(kLongestPause).count()) * timeFactor_;
  owed_ = std::min(owed_, std::chrono::nanoseconds{static_cast<std::int64_t>(most)});
}

bool Bus::CatchUp() {
  // Faults start and end between ticks, so time passes in short pieces while a plan runs. Time also passes when there
  // is no board.
  const auto each = std::max<std::int64_t>(1, static_cast<std::int64_t>(boards_.size()));
  const std::int64_t pieces = std::max<std::int64_t>(1, kTicksInASlice / each);
  for (std::int64_t i = 0; i < pieces && owed_.count() > 0; ++i) {
    ticksRun_ += each;
    const std::chrono::nanoseconds piece = std::min<std::chrono::nanoseconds>(owed_, kTick);
    for (auto& [address, board] : boards_) {
      board->SetFaults(faults_.OnBoard(now_));
      board->Advance(piece);
    }
    now_ += piece;
    owed_ -= piece;
  }
  return owed_.count() > 0;
}

bool Bus::Admit(const Transfer& transfer) {
  delay_ += faults_.Delay(now_, transfer);
  return !faults_.Fails(now_, transfer);
}

std::chrono::milliseconds Bus::TakeDelay() {
  const std::chrono::milliseconds delay = delay_;
  delay_ = std::chrono::milliseconds{0};
  return delay;
}

Board* Bus::At(int address) {
  const auto found = boards_.find(address);
  return found == boards_.end() ? nullptr : found->second.get();
}

std::uint8_t Bus::Read(int address, std::uint8_t reg) {
  Board* board = At(address);
  return board == nullptr ? kNobody : faults_.Seen(now_, reg, board->TheChip().Read(reg));
}

void Bus::Write(int address, std::uint8_t reg, std::uint8_t value) {
  Board* board = At(address);
  if (board != nullptr && !faults_.WriteLost(now_, reg)) board->TheChip().Write(reg, value);
}

}  // namespace zth::simulator
