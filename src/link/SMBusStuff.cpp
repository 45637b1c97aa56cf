#include "link/SMBusStuff.h"

#include "link/Declarations.h"
#include "link/Transfers.h"

namespace zth::link {

namespace {

/// Makes a call and shows it to the observer; `byte` is what it read or wrote. The library reports a failure only by
/// its count, which is asked for only if there is an observer.
template <typename Entry>
void Transfer(Form form, std::uint8_t address, std::uint8_t reg, std::uint8_t& byte, const Entry& entry) {
  const auto failures = Bus.observer == nullptr ? std::nullopt : SmbusFailuresOf(address);
  {
    const TransferTime time(IsWrite(form) ? Direction::Write : Direction::Read);
    entry();
  }
  if (Bus.observer == nullptr) return;
  ShowCall({.mode = kModeSmbus,
            .form = form,
            .address = address,
            .reg = reg,
            .bytes = {&byte, 1},
            .succeeded = !failures || SmbusFailuresOf(address) == failures});
}

std::uint8_t ReadByte(std::uint8_t address, std::uint8_t reg) {
  std::uint8_t byte = 0;
  Transfer(Form::Read, address, reg, byte, [&] { byte = Bus.Smbus.ReadSmbus(address, reg); });
  return byte;
}

}  // namespace

void ProbeSmbusHost() {
  if (Bus.Smbus.ReadSmbus != nullptr) ReadByte(0, 0);
}

void DetectSmbusHost() {
  if (Bus.Smbus.DetectSmbus == nullptr) return;
  {
    const TransferTime time(Direction::Read);
    Bus.Smbus.DetectSmbus();
  }
  ShowCall({.mode = kModeSmbus, .form = Form::Detect});
}

std::uint8_t ReadSmbusByte(std::int32_t address, std::int32_t reg) {
  if (Bus.Smbus.ReadSmbus == nullptr) return 0;
  NoteTransfer();
  return ReadByte(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(reg));
}

void WriteSmbusByte(std::int32_t address, std::int32_t reg, std::uint8_t value) {
  if (Bus.Smbus.WriteSmbus == nullptr) return;
  NoteTransfer();
  const auto device = static_cast<std::uint8_t>(address);
  const auto index = static_cast<std::uint8_t>(reg);
  Transfer(Form::Write, device, index, value, [&] { Bus.Smbus.WriteSmbus(device, index, value); });
}

void ReadSmbusBytes(std::int32_t address, std::int32_t first, int count) {
  for (int i = 0; i < count; ++i) Bus.ReadBuffer[static_cast<std::size_t>(i)] = ReadSmbusByte(address, first + i);
}

}  // namespace zth::link
