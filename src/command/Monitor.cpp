#include "command/Monitor.h"

#include <algorithm>
#include <utility>

#include "chip/ChipModel.h"
#include "chip/Freshness.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "command/Alerts.h"
#include "link/Asker.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "tasks/Firmware.h"

namespace zth::command {
namespace {

constexpr std::int16_t kRotation = 6;
constexpr int kLostAfter = 3;        // failures in a row
constexpr double kFirstRetry = 5;    // seconds; an adapter needs them to return with its firmware
constexpr double kRarestRetry = 60;  // seconds

std::string DeviceOf(const link::ChipId& chip) {
  const std::string text = link::TextOf(chip).toLower().toStdString();
  return text.substr(0, text.find('h')) + (chip.mode == link::kModeUsb ? "@usb" : "@smbus");
}

}  // namespace

Monitor::InUse::InUse(PolledChip& chip) : chip_(chip), meanwhile_(chip.id) {
  std::swap(chip::Model, chip_.model);
}

Monitor::InUse::~InUse() {
  std::swap(chip::Model, chip_.model);
}

Monitor::Monitor(Session& session, const std::vector<link::ChipId>& chips, bool readsAlerts)
    : session_(session), readsAlerts_(readsAlerts) {
  for (const link::ChipId& id : chips) {
    PolledChip chip;
    chip.id = id;
    chip.device = DeviceOf(id);
    chip.board = link::BoardNameOf(id.mode).toStdString();
    chip.model = chip::Model;
    chip.since = session.Services().clock.WallTime().toUTC();
    chips_.push_back(std::move(chip));
  }
}

bool Monitor::Tick() {
  bool hasRead = false;
  for (PolledChip& chip : chips_) {
    const double pause = chip.waits > 0 ? chip.waits : chip.model.PollPeriodMs / 1000.0;
    if (session_.Now() - chip.endedAt <= pause) continue;
    session_.Wait(0);
    Visit(chip);
    chip.endedAt = session_.Now();
    hasRead = true;
  }
  return hasRead;
}

void Monitor::Visit(PolledChip& chip) {
  const InUse use(chip);
  const link::Asker asker(link::Asker::Kind::Job, [] { return "monitor"; });
  const std::int64_t sent = link::Bus.transfers;
  const auto failed = link::FailedTransfers();
  const bool isGood = Read(chip);
  chip.transfers += link::Bus.transfers - sent;
  if (const auto now = link::FailedTransfers(); now && failed) {
    // The count of a library may begin again.
    chip.failures = chip.failures.value_or(0) + std::max(0, *now - *failed);
  }
  if (isGood) {
    NoteSuccess(chip);
  } else {
    NoteFailure(chip);
  }
}

bool Monitor::Read(PolledChip& chip) {
  try {
    if (chip.id.mode == link::kModeUsb && std::exchange(hasNewFirmware_, false) && link::ConnectAdapter() != 0) {
      return false;
    }
    return ReadNext(chip);
  } catch (const Failure& failure) {
    if (failure.status != kLinkFailed) throw;
    link::OpenAfterFailure();
    chip::NoteReading(chip.phase + 1, true);
    return false;
  }
}

bool Monitor::ReadNext(PolledChip& chip) {
  const link::FailureWatch watch;
  if (!chip.hasPins) {
    chip::ReadPinConfiguration();
    chip::ReadChipRevision();
    if (watch.Failed()) return false;
    chip.hasPins = true;
  }
  chip::Model.Freshness.now = session_.Now();
  const auto group = static_cast<std::int16_t>(chip.phase + 1);
  chip::ReadMeasurementGroup(group);
  bool isGood = !chip::IsStale(group);
  if (readsAlerts_ && group == kRotation) isGood = ReadStatus(chip) && isGood;
  chip.phase = static_cast<std::int16_t>(group % kRotation);
  return isGood;
}

bool Monitor::ReadStatus(PolledChip& chip) {
  bool isGood = true;
  chip.status.clear();
  for (const std::uint8_t reg : HostStatusRegisters()) {
    const link::FailureWatch watch;
    const auto value = static_cast<unsigned>(link::ReadRegister(link::Bus.DeviceAddress, reg));
    if (watch.Failed()) {
      isGood = false;
    } else {
      chip.status[reg] = value;
    }
  }
  return isGood;
}

void Monitor::NoteSuccess(PolledChip& chip) {
  chip.readAt = session_.Services().clock.WallTime().toUTC();
  chip.failedInARow = 0;
  chip.waits = 0;
  if (!std::exchange(chip.isLost, false)) return;
  session_.Out().Remark("zth4718: " + link::TextOf(chip.id).toStdString() + " answers again");
}

void Monitor::NoteFailure(PolledChip& chip) {
  if (++chip.failedInARow < kLostAfter) return;
  chip.waits = chip.waits > 0 ? std::min(2 * chip.waits, kRarestRetry) : kFirstRetry;
  if (!std::exchange(chip.isLost, true)) {
    session_.Out().Error("zth4718: " + link::TextOf(chip.id).toStdString() +
                         " does not answer. Check its power and its wiring; it is tried again.");
  }
  // It may come back after a power-up, with other pins.
  chip.hasPins = false;
  chip.status.clear();
  for (int group = 1; group <= kRotation; ++group) chip::NoteReading(group, true);
  if (chip.id.mode == link::kModeUsb && AdapterIsLost()) {
    hasNewFirmware_ = tasks::LoadFirmwareFile(session_.Services().process) > 0;
  }
}

bool Monitor::AdapterIsLost() const {
  return std::ranges::all_of(chips_,
                             [](const PolledChip& chip) { return chip.id.mode != link::kModeUsb || chip.isLost; });
}

}  // namespace zth::command
