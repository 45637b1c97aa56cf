#include "command/Session.h"

#include <algorithm>
#include <utility>

#include <QDir>

#include "base/Counted.h"
#include "base/NumberText.h"
#include "chip/ChipModel.h"
#include "chip/ChipState.h"
#include "chip/Freshness.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/PwmModes.h"
#include "command/Readings.h"
#include "link/ChipId.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "tasks/Discovery.h"
#include "tasks/Recorder.h"
#include "tasks/TasksState.h"
#include "tasks/TrafficReader.h"

namespace zth::command {
namespace {

constexpr char kReplay[] = "replay:";

/// The library of a link that a recording does not use was not there.
QString ReplayBoard(const std::string& file, platform::Services& services) {
  const QString path = QDir().absoluteFilePath(QString::fromStdString(file));
  const auto bytes = services.files.Read(path, tasks::kMostTrafficBytes);
  if (!bytes) throw Failure{kUsage, "The recording '" + file + "' cannot be read", "Check its name"};
  bool isRead = false;
  tasks::TrafficReader reader([&] { return std::exchange(isRead, true) ? std::string() : bytes->toStdString(); });
  bool hasUsb = false;
  bool hasSmbus = false;
  while (reader.Next()) {
    if (reader.Record().isNote) continue;
    (reader.Record().mode == link::kModeUsb ? hasUsb : hasSmbus) = true;
  }
  if (!reader.Fault().empty()) {
    throw Failure{kUsage, "'" + file + "' is no recording: " + reader.Fault(), "Make one with --record FILE"};
  }
  services.process.SetVariable("ZTH4718_REPLAY", path);
  if (hasUsb == hasSmbus) return "replay";
  return hasUsb ? "replay/usb-only" : "replay/smbus-only";
}

/// Looks for a signal while the chips are searched.
class EndSigns final : public tasks::SearchSigns {
 public:
  explicit EndSigns(std::function<void()> check) : check_(std::move(check)) {}
  void SetProgress(double /*percent*/) override { check_(); }

 private:
  std::function<void()> check_;
};

Failure TransferFailed() {
  return {kLinkFailed, "A transfer with the chip at " + link::TextOf(link::ChipInUse()).toStdString() + " failed",
          "Check its power and its wiring, and ask zth4718 doctor"};
}

/// A failed start or transfer of the USB adapter, in the program's words.
Failure OfBox(const platform::BoxQuestion& question) {
  const std::string text = question.text.toStdString();
  const std::size_t dash = text.find(" - ");
  if (dash == std::string::npos) return {kLinkFailed, text, "Ask zth4718 doctor"};
  return {kLinkFailed, text.substr(0, text.find_last_not_of(' ', dash) + 1), text.substr(dash + 3)};
}

}  // namespace

Session::Session(Setting setting, Options options) : setting_(setting), options_(std::move(options)) {}

void Session::TakeBoard(const std::string& board, platform::Services& services) {
  if (board.empty()) return;
  QString taken = QString::fromStdString(board);
  if (board.starts_with(kReplay)) {
    taken = ReplayBoard(board.substr(sizeof kReplay - 1), services);
  } else if (board.find('/') != std::string::npos) {
    taken = QDir().absoluteFilePath(taken);
  } else if (const QStringList boards = services.libraries.Boards(); !boards.contains(taken)) {
    throw Failure{kUsage, "There is no board '" + board + "'",
                  "There are " + boards.join(", ").toStdString() + "; a folder is written with a slash"};
  }
  services.libraries.TakeBoard(taken);
}

std::string Session::ChipOf(const std::string& device) {
  const std::size_t at = device.find('@');
  const std::string address = device.substr(0, at);
  const std::string bus = at == std::string::npos ? "" : device.substr(at + 1);
  const bool isHex = !address.empty() && address.size() <= 2 &&
                     address.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  if (!isHex || (bus != "usb" && bus != "smbus")) {
    throw Failure{kUsage, "'" + device + "' names no chip", "Give --device 58@usb or --device 2c@smbus"};
  }
  return link::TextOf({bus == "usb" ? link::kModeUsb : link::kModeSmbus, base::LeadingHex(address)}).toStdString();
}

void Session::Attach() {
  platform::Services& services = setting_.services;
  services.process.OnEndOrders({[] {}, [ended = ended_] { *ended = true; }});
  link::Attach(services, [] {});
  link::Bus.reporter.ask = [](const platform::BoxQuestion& question) -> platform::BoxAnswer { throw OfBox(question); };
  link::Bus.observer = tasks::Work.traffic.get();
  listening_ = tasks::Work.traffic->Listen([this](const tasks::TrafficRecord& record, const std::string& /*text*/) {
    if (record.isNote || (record.form != link::Form::Read && record.form != link::Form::ReadBlock)) return;
    for (std::size_t i = 0; i < record.count; ++i) bytes_[(record.reg + i) % bytes_.size()] = record.bytes[i];
  });
  chip::EnterPwmHooks();
  chip::EnterPinHooks();
  // Before there is a link, so that nothing is sent: a write to the pins' registers goes on from what the program has
  // set the board's switches to.
  chip::ResetBoardSwitches();
  chip::InitRegisterTable();
  chip::InitVoltageNames();
  chip::Model.TachClock = 90000;
}

void Session::Record() {
  if (options_.record.empty()) return tasks::StartRecording(setting_.services);
  tasks::Work.recorder = std::make_unique<tasks::Recorder>(
      *tasks::Work.traffic, setting_.services, QString::fromStdString(options_.record), tasks::kMostTrafficBytes);
}

void Session::Start() {
  const link::Asker start(link::Asker::Kind::Job, [] { return "start"; });
  Attach();
  Record();
  if (!tasks::ProbeLinks(setting_.services)) {
    throw Failure{kNoHardware, "USB/SMBus Hardware not detected", "Ask zth4718 doctor what was looked for"};
  }
  tasks::SetDeviceName();
  EndSigns signs([this] { Check(); });
  chips_ = tasks::FindDevices(signs, setting_.services);
  Select();
}

void Session::Select() {
  if (chips_.empty()) throw Failure{kNoHardware, "Failed to find the ZTH4718", "Ask zth4718 doctor"};
  QString chosen = chips_.front();
  if (!options_.device.empty()) {
    chosen = QString::fromStdString(ChipOf(options_.device));
    if (std::ranges::find(chips_, chosen) == chips_.end()) {
      std::string found;
      for (const QString& chip : chips_) found += (found.empty() ? "" : ", ") + chip.toStdString();
      throw Failure{kNoHardware, "There is no chip at " + chosen.toStdString(), "Found: " + found};
    }
  }
  tasks::SelectDevice(chosen);
}

std::vector<link::ChipId> Session::ChipsMeant() const {
  if (!options_.device.empty()) return {link::ChipInUse()};
  std::vector<link::ChipId> chips;
  for (const QString& chip : chips_) chips.push_back(link::ChipOf(chip));
  return chips;
}

void Session::Check() const {
  setting_.services.events.Pump();
  if (*ended_) throw Failure{kEnded, "Ended between two transfers", ""};
}

unsigned Session::Read(std::uint8_t reg) {
  Check();
  const link::FailureWatch watch;
  const auto value = static_cast<unsigned>(link::ReadRegister(link::Bus.DeviceAddress, reg));
  if (watch.Failed()) throw TransferFailed();
  return value;
}

void Session::Note(std::uint8_t reg, unsigned value) {
  writes_ += (writes_.empty() ? "" : ", ") + ByteText(reg) + " = " + ByteText(value);
}

void Session::Write(std::uint8_t reg, unsigned value) {
  Check();
  const link::FailureWatch watch;
  link::WriteRegisterValue(link::Bus.DeviceAddress, reg, static_cast<std::int32_t>(value));
  if (watch.Failed()) throw TransferFailed();
  Note(reg, value);
}

void Session::Modify(std::uint8_t reg, base::BitField bits, unsigned value) {
  // In two steps, so that nothing made up from a failed read is written.
  const unsigned before = Read(reg);
  Write(reg, base::PutField(before, bits, value));
}

void Session::ReadPins() {
  if (std::exchange(hasPins_, true)) return;
  Check();
  const link::FailureWatch watch;
  chip::ReadPinConfiguration();
  if (watch.Failed()) throw TransferFailed();
}

void Session::ReadGroup(int group, bool goesOn) {
  Check();
  if (group == chip::kPwmGroup && !std::exchange(hasRevision_, true)) {
    const link::FailureWatch watch;
    chip::ReadChipRevision();
    if (watch.Failed()) throw TransferFailed();
  }
  chip::Model.Freshness.now = Now();
  chip::ReadMeasurementGroup(static_cast<std::int16_t>(group));
  if (chip::IsStale(group) && !goesOn) throw TransferFailed();
}

std::vector<Sample> Session::Take(const std::vector<Target>& targets, bool goesOn) {
  std::array<bool, 7> hasRead{};
  std::vector<Sample> samples;
  for (const Target& target : targets) {
    if (target.kind == Kind::Register || target.kind == Kind::Field) {
      const unsigned raw = Read(target.reg);
      samples.push_back({&target, std::nullopt, static_cast<double>(base::GetField(raw, target.bits)), raw, false});
      continue;
    }
    if (target.kind == Kind::Group) ReadPins();
    for (const std::size_t row : target.rows) {
      if (target.kind == Kind::Group && !IsProvided(row)) continue;
      const int group = MeasurementGroupOf(row);
      if (!std::exchange(hasRead.at(static_cast<std::size_t>(group)), true)) ReadGroup(group, goesOn);
      samples.push_back({&target, row, ValueOfReading(row), RawOfReading(row, bytes_), chip::IsStale(group)});
    }
  }
  return samples;
}

void Session::Wait(double seconds) {
  constexpr double kPiece = 0.05;
  const double end = Now() + seconds;
  double left = seconds;
  while (left > 0) {
    Check();
    setting_.services.clock.WaitMs(static_cast<float>(1000 * std::min(left, kPiece)));
    left = end - Now();
  }
  Check();
}

}  // namespace zth::command
