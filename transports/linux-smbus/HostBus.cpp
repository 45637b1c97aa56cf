#include "linux-smbus/HostBus.h"

#include <cerrno>
#include <utility>

#include "linux-smbus/AdapterChoice.h"
#include "linux-smbus/Remedies.h"
#include "linux-smbus/Text.h"

namespace zth::smbus {

namespace {

// An adapter can be removed while its chips still answer: unbinding its kernel driver waits until our descriptor is
// closed. Checking every so many transfers releases it within seconds of the program's usual polling.
constexpr unsigned kTransfersBetweenLooks = 256;

constexpr int kTimeOutsInARow = 3;
constexpr std::chrono::seconds kRest{1};

/// Whether the error means that nothing acknowledged the address. The kernel's drivers have several codes for that.
bool IsAbsent(int error) {
  return error == ENXIO || error == EREMOTEIO || error == ENODEV;
}

}  // namespace

HostBus::HostBus(I2cSystem& system, Journal& journal, Settings settings)
    : system_(system), journal_(journal), settings_(std::move(settings)) {}

HostBus::~HostBus() {
  NoteAbsent();
  for (const Port& port : ports_) {
    if (!port.isGone) system_.Close(port.descriptor);
  }
}

void HostBus::Detect() {
  if (!ports_.empty()) return;
  hasDetected_ = true;
  trouble_.clear();
  for (const std::string& fault : settings_.faults) TellTrouble(fault);

  const std::vector<Adapter> present = system_.Adapters();
  const AdapterChoice choice = ChooseAdapters(present, settings_);
  for (const std::string& remark : choice.remarks) TellTrouble(remark);
  if (present.empty()) {
    TellTrouble(NoAdapterText());
  } else if (choice.chosen.empty()) {
    TellTrouble(NoneChosenText(present));
  }
  for (const Adapter& adapter : choice.chosen) Open(adapter);
}

void HostBus::Open(const Adapter& adapter) {
  const int descriptor = system_.Open(adapter.number);
  if (descriptor < 0) {
    TellTrouble(CannotOpenText(adapter, system_.NodeOf(adapter.number), -descriptor));
    return;
  }
  Abilities abilities;
  const int result = system_.QueryAbilities(descriptor, abilities);
  if (result < 0 || !abilities.readByteData || !abilities.writeByteData) {
    system_.Close(descriptor);
    TellTrouble(Describe(adapter) + ": " +
                (result < 0 ? "does not tell what it can do, " + ErrorText(-result)
                            : std::string("cannot do byte-data transfers")) +
                ": not used.");
    return;
  }
  ports_.push_back({adapter, descriptor});
  journal_.Note("using " + Describe(adapter));
}

void HostBus::TellTrouble(const std::string& text) {
  journal_.Tell(text);
  trouble_ += text + "\n";
}

std::string HostBus::Name() const {
  std::string name;
  for (const Port& port : ports_) {
    if (port.isGone) continue;
    if (!name.empty()) name += ", ";
    name += NameOf(port.adapter);
  }
  return name;
}

std::uint8_t HostBus::Read(std::uint8_t address, std::uint8_t reg) {
  return RunCounted({Direction::Read, address, reg, 0}).value_or(kNoAnswer);
}

void HostBus::Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  RunCounted({Direction::Write, address, reg, value});
}

std::optional<std::uint8_t> HostBus::RunCounted(const Transfer& transfer) {
  const std::optional<std::uint8_t> done = Run(transfer);
  std::int32_t& failures = failures_.at(transfer.address);
  if (!done) failures = (failures + 1) & 0x7FFFFFFF;
  return done;
}

std::optional<std::uint8_t> HostBus::Run(Transfer transfer) {
  if (IsForbidden(transfer.address)) return std::nullopt;
  if (!hasDetected_) Detect();
  transfer.isFirst = !absent_.Asks(transfer.address);
  if (!transfer.isFirst) NoteAbsent();

  std::optional<std::size_t>& owner = owner_.at(transfer.address);
  // A write to an address that nobody has read yet finds the chip by the write itself: without a chip nothing accepts
  // the byte, and reading first could clear a register that clears on reading.
  const std::size_t first = owner.value_or(0);
  const std::size_t end = owner ? first + 1 : ports_.size();
  bool isAbsent = transfer.isFirst && !ports_.empty();
  for (std::size_t index = first; index < end; ++index) {
    bool isHeld = false;
    const int result = RunOn(ports_[index], transfer, isHeld);
    if (result >= 0) {
      owner = index;
      return static_cast<std::uint8_t>(result);
    }
    isAbsent = isAbsent && IsAbsent(-result) && !ports_[index].isGone;
    if (isHeld) break;
  }
  if (isAbsent) absent_.Add(transfer.address);
  return std::nullopt;
}

int HostBus::RunOn(Port& port, const Transfer& transfer, bool& isHeld) {
  if (transfersUntilLook_ == 0) {
    transfersUntilLook_ = kTransfersBetweenLooks;
    for (Port& each : ports_) LookAfter(each);
  }
  --transfersUntilLook_;
  if (port.isGone) return -ENODEV;
  if (Rests(port)) return -ETIMEDOUT;

  // Selected again for each transfer: only then does the kernel report that a driver has claimed the address meanwhile.
  int result = system_.Select(port.descriptor, transfer.address);
  isHeld = result == -EBUSY;
  if (result >= 0) {
    result = transfer.direction == Direction::Read
                 ? system_.ReadByteData(port.descriptor, transfer.reg)
                 : system_.WriteByteData(port.descriptor, transfer.reg, transfer.value);
  }
  if (!isHeld) port.timeOuts = result == -ETIMEDOUT ? port.timeOuts + 1 : 0;
  if (result < 0) {
    LookAfter(port);
    if (port.isGone) return result;
    const bool isEmptyPlace = transfer.isFirst && IsAbsent(-result);
    if (!isEmptyPlace) TellFailure(port, transfer, -result, isHeld);
    if (port.timeOuts >= kTimeOutsInARow) Rest(port);
  }
  return result;
}

bool HostBus::Rests(const Port& port) {
  return port.timeOuts >= kTimeOutsInARow && system_.Now() < port.rests;
}

void HostBus::Rest(Port& port) {
  port.rests = system_.Now() + kRest;
  if (std::exchange(port.restTold, true)) return;
  journal_.Tell(Describe(port.adapter) + ": " + std::to_string(kTimeOutsInARow) +
                " transfers in a row have timed out. While that goes on the bus is left alone for a second after each, "
                "and its chips read 0xFF.");
}

void HostBus::NoteAbsent() {
  const std::string addresses = absent_.Take();
  if (!addresses.empty()) journal_.Note("no chip answers at " + addresses);
}

/// Closes an adapter that the kernel no longer has. Its chips are not searched for on other adapters.
void HostBus::LookAfter(Port& port) {
  if (port.isGone || system_.IsThere(port.adapter.number)) return;
  port.isGone = true;
  system_.Close(port.descriptor);
  journal_.Tell(Describe(port.adapter) + " has gone. Its chips read 0xFF until the program is started again.");
}

void HostBus::TellFailure(const Port& port, const Transfer& transfer, int error, bool isHeld) {
  if (!told_.emplace(port.adapter.number, transfer.address, error).second) return;
  const std::string where = "i2c-" + std::to_string(port.adapter.number) + ", address " + Hex(transfer.address) + ": ";
  if (isHeld) {
    const std::string driver = system_.DriverAt(port.adapter.number, transfer.address);
    journal_.Tell(where + HeldText(port.adapter.number, transfer.address, driver) + " " + ErrorText(error) + ".");
    return;
  }
  const char* const what = transfer.direction == Direction::Read ? "read" : "write";
  journal_.Tell(where + what + " of register " + Hex(transfer.reg) + " failed, " + ErrorText(error));
}

}  // namespace zth::smbus
