#include "link/USBStuff.h"

#include <algorithm>

#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/RegisterHooks.h"
#include "link/SMBusStuff.h"
#include "link/Transfers.h"

namespace zth::link {
namespace {

// The adapter's requests. 0xDB is not used.
enum Request : std::int16_t {
  kHeaters = 0xDA,
  kBlockRead = 0xDC,
  kConnect = 0xDD,
  kRegister = 0xDE,
  kBoardPort = 0xDF,
};

constexpr std::int16_t kToAdapter = 0;
constexpr std::int16_t kFromAdapter = 1;

constexpr std::int16_t kNoLibrary = -1;

bool OnUsb() {
  return Bus.InterfaceMode == kModeUsb && LinkOpen();
}
bool OnSmbus() {
  return Bus.InterfaceMode == kModeSmbus && LinkOpen();
}

std::int16_t Call(Request request, std::int32_t value, std::int32_t index, std::int16_t direction, int length,
                  std::uint8_t* buffer) {
  if (Bus.UsbFunctions.VendorIORequest == nullptr) return kNoLibrary;
  NoteTransfer();
  const TransferTime time(direction == kFromAdapter ? Direction::Read : Direction::Write);
  Bus.UsbResult =
      Bus.UsbFunctions.VendorIORequest(request, value, index, direction, static_cast<std::int16_t>(length), buffer);
  // The adapter may be asked for contact many times before it has woken up. That is no failed transfer with a chip.
  if (Bus.UsbResult != 0 && request != kConnect) ++Bus.usbFailures;
  return Bus.UsbResult;
}

std::int16_t ReadIntoBuffer(Request request, std::int32_t value, std::int32_t index, int length) {
  return Call(request, value, index, kFromAdapter, length, Bus.ReadBuffer.data());
}

/// A command with all its data in value and index. The buffer is required but unused.
std::int16_t Command(Request request, std::int32_t value, std::int32_t index) {
  std::uint8_t nothing = 0;
  return Call(request, value, index, kToAdapter, 0, &nothing);
}

/// A command that passes one byte of ReadBuffer; the adapter ignores its contents.
std::int16_t CommandWithByte(Request request, std::int32_t value, std::int32_t index) {
  return Call(request, value, index, kToAdapter, 1, Bus.ReadBuffer.data());
}

std::int16_t Checked(std::int16_t result, int code) {
  if (result != 0) ReportLinkError(code);
  return result;
}

bool IsByte(std::int32_t number) {
  return number >= 0 && number <= 0xFF;
}

}  // namespace

std::int16_t ReadRegister(std::int32_t address, std::int32_t reg) {
  if (!IsByte(reg)) return 0;
  if (OnUsb()) {
    Bus.ReadBuffer[0] = 0;
    Checked(ReadIntoBuffer(kRegister, address, reg, 1), kCommunicationsInterrupted);
    return Bus.ReadBuffer[0];
  }
  return OnSmbus() ? ReadSmbusByte(address, reg) : std::int16_t{0};
}

std::int16_t ReadRegisterBlock(std::int32_t address, std::int32_t first, std::int16_t count) {
  if (count > kReadBufferSize || !IsByte(first) || !IsByte(first + std::max<std::int32_t>(count, 1) - 1)) return 0;
  if (OnUsb()) return Checked(ReadIntoBuffer(kBlockRead, address, first, count), kCommunicationsInterrupted);
  if (OnSmbus()) ReadSmbusBytes(address, first, count);
  return 0;
}

std::int16_t WriteRegister(std::int32_t address, std::int32_t reg, std::int32_t& value) {
  if (!IsByte(reg)) return 0;
  // Clamped on both links: neither can carry more than a byte.
  value = std::clamp(value, 0, 0xFF);
  if (OnUsb()) {
    const std::int16_t result = Command(kRegister, address, value * 256 + reg);
    if (result == 0) AfterRegisterWrite(reg);
    return Checked(result, kCommunicationsInterrupted);
  }
  if (OnSmbus()) {
    WriteSmbusByte(address, reg, static_cast<std::uint8_t>(value));
    // As on USB: the windows expect the state derived from the register to be up to date after a write.
    AfterRegisterWrite(reg);
  }
  return 0;
}

std::int16_t WriteRegisterValue(std::int32_t address, std::int32_t reg, std::int32_t value) {
  return WriteRegister(address, reg, value);
}

void ModifyRegister(std::int32_t address, std::int32_t reg, unsigned own, unsigned bits) {
  const auto before = static_cast<unsigned>(ReadRegister(address, reg));
  WriteRegisterValue(address, reg, static_cast<std::int32_t>((before & ~own) | bits));
}

std::int16_t SetHeater(std::int32_t heater, std::int32_t& percent) {
  if (!OnUsb()) return 0;
  percent = std::clamp(percent, 0, 100);
  const std::int16_t result = CommandWithByte(kHeaters, heater, percent);
  if (heater == 1 || heater == 2) {
    auto& known = Bus.HeaterPercent[static_cast<std::size_t>(heater)];
    if (result == 0 || percent > known.value_or(0)) known = percent;
  }
  return Checked(result, kHeaterError);
}

std::int16_t ReadHeaterState() {
  if (!OnUsb()) return 0;
  const std::int16_t result = ReadIntoBuffer(kHeaters, 0, 0, 3);
  if (result == 0) {
    // The adapter reports twice the percentage.
    for (std::size_t heater = 1; heater <= 2; ++heater) Bus.HeaterPercent[heater] = Bus.ReadBuffer[heater - 1] / 2.0;
  }
  return Checked(result, kHeaterError);
}

std::int16_t ReadBoardPort(std::int32_t address) {
  if (!OnUsb()) return 0;
  Checked(ReadIntoBuffer(kBoardPort, address, 0, 1), kCommunicationsInterrupted);
  return Bus.ReadBuffer[0];
}

std::int16_t WriteBoardPort(std::int32_t address, std::int32_t port) {
  if (!IsByte(port) || !OnUsb()) return 0;
  return Checked(Command(kBoardPort, address, port), kCommunicationsInterrupted);
}

void WriteBoardPortUnchecked(std::int32_t address, std::int32_t port) {
  if (IsByte(port) && OnUsb()) CommandWithByte(kBoardPort, address, port);
}

std::int16_t ConnectAdapter() {
  // Called before a link is chosen, so it does not check the mode.
  return LinkOpen() ? Command(kConnect, 0x30, 0x33) : kNoLibrary;
}

}  // namespace zth::link
