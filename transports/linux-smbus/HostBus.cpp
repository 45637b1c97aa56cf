#include "linux-smbus/HostBus.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "linux-smbus/AdapterChoice.h"
#include "linux-smbus/Remedies.h"

namespace zth::smbus {

namespace {

// An adapter can go while its chips still answer: a kernel driver is waiting to be unbound, and waits for our
// descriptor. Looking after so many transfers lets it go within seconds of the program's usual polling.
constexpr unsigned kTransfersBetweenLooks = 256;

std::string Hex(std::uint8_t byte) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned>(byte));
  return text.data();
}

}  // namespace

HostBus::HostBus(I2cSystem& system, Journal& journal, Settings settings)
    : system_(system), journal_(journal), settings_(std::move(settings)) {}

HostBus::~HostBus() {
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

std::optional<std::uint8_t> HostBus::Run(const Transfer& transfer) {
  if (IsForbidden(transfer.address)) return std::nullopt;
  if (!hasDetected_) Detect();

  std::optional<std::size_t>& owner = owner_.at(transfer.address);
  // A write to an address that nobody has read yet looks for its chip by the write itself: where no chip is, nothing
  // takes the byte, and a read beforehand could clear a register that clears on reading.
  const std::size_t first = owner.value_or(0);
  const std::size_t end = owner ? first + 1 : ports_.size();
  for (std::size_t index = first; index < end; ++index) {
    bool isHeld = false;
    const int result = RunOn(ports_[index], transfer, isHeld);
    if (result >= 0) {
      owner = index;
      return static_cast<std::uint8_t>(result);
    }
    if (isHeld) break;
  }
  return std::nullopt;
}

int HostBus::RunOn(Port& port, const Transfer& transfer, bool& isHeld) {
  if (transfersUntilLook_ == 0) {
    transfersUntilLook_ = kTransfersBetweenLooks;
    for (Port& each : ports_) LookAfter(each);
  }
  --transfersUntilLook_;
  if (port.isGone) return -ENODEV;

  // Selected anew for each transfer: only then does the kernel say that a driver has taken the address meanwhile.
  int result = system_.Select(port.descriptor, transfer.address);
  isHeld = result == -EBUSY;
  if (result >= 0) {
    result = transfer.direction == Direction::Read
                 ? system_.ReadByteData(port.descriptor, transfer.reg)
                 : system_.WriteByteData(port.descriptor, transfer.reg, transfer.value);
  }
  if (result < 0) {
    LookAfter(port);
    if (!port.isGone) TellFailure(port, transfer, -result, isHeld);
  }
  return result;
}

/// Lets go of an adapter that the kernel no longer has. What it last read is not asked for elsewhere.
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
