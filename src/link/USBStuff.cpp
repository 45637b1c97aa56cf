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
enum RequestCode : std::int16_t {
  kHeaters = 0xDA,
  kBlockRead = 0xDC,
  kConnect = 0xDD,
  kRegister = 0xDE,
  kBoardPort = 0xDF,
};

constexpr std::int16_t kToAdapter = 0;
constexpr std::int16_t kFromAdapter = 1;

constexpr std::int16_t kNoLibrary = -1;

/// Value and index of the request for contact.
constexpr std::array<std::uint8_t, 2> kContact{0x30, 0x33};

bool OnUsb() {
  return Bus.InterfaceMode == kModeUsb && LinkOpen();
}
bool OnSmbus() {
  return Bus.InterfaceMode == kModeSmbus && LinkOpen();
}

/// What the observer is shown of a request besides its result.
struct Shown {
  Form form;
  std::int32_t address = 0;
  std::int32_t reg = 0;
  std::span<const std::uint8_t> bytes;
};

std::int16_t Request(RequestCode request, std::int32_t value, std::int32_t index, std::int16_t direction, int length,
                     std::uint8_t* buffer, const Shown& shown) {
  if (Bus.UsbFunctions.VendorIORequest == nullptr) return kNoLibrary;
  NoteTransfer();
  {
    const TransferTime time(direction == kFromAdapter ? Direction::Read : Direction::Write);
    Bus.UsbResult =
        Bus.UsbFunctions.VendorIORequest(request, value, index, direction, static_cast<std::int16_t>(length), buffer);
  }
  // The adapter may be asked for contact many times before it has woken up. That is no failed transfer with a chip.
  if (Bus.UsbResult != 0 && request != kConnect) ++Bus.usbFailures;
  ShowCall({.mode = kModeUsb,
            .form = shown.form,
            .address = static_cast<std::uint8_t>(shown.address),
            .reg = static_cast<std::uint8_t>(shown.reg),
            .bytes = shown.bytes,
            .succeeded = Bus.UsbResult == 0,
            .result = Bus.UsbResult});
  return Bus.UsbResult;
}

/// Reads into ReadBuffer. The register, if the form has one, is the index.
std::int16_t ReadIntoBuffer(Form form, RequestCode request, std::int32_t value, std::int32_t index, int length) {
  const auto size = static_cast<std::size_t>(std::max(length, 0));
  return Request(request, value, index, kFromAdapter, length, Bus.ReadBuffer.data(),
                 {form, value, index, {Bus.ReadBuffer.data(), size}});
}

/// A command with all its data in value and index. The buffer is required but unused.
std::int16_t Command(RequestCode request, std::int32_t value, std::int32_t index, const Shown& shown) {
  std::uint8_t nothing = 0;
  return Request(request, value, index, kToAdapter, 0, &nothing, shown);
}

/// A command that passes one byte of ReadBuffer; the adapter ignores its contents.
std::int16_t CommandWithByte(RequestCode request, std::int32_t value, std::int32_t index, const Shown& shown) {
  return Request(request, value, index, kToAdapter, 1, Bus.ReadBuffer.data(), shown);
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
    Checked(ReadIntoBuffer(Form::Read, kRegister, address, reg, 1), kCommunicationsInterrupted);
    return Bus.ReadBuffer[0];
  }
  return OnSmbus() ? ReadSmbusByte(address, reg) : std::int16_t{0};
}

std::int16_t ReadRegisterBlock(std::int32_t address, std::int32_t first, std::int16_t count) {
  if (count > kReadBufferSize || !IsByte(first) || !IsByte(first + std::max<std::int32_t>(count, 1) - 1)) return 0;
  if (OnUsb())
    return Checked(ReadIntoBuffer(Form::ReadBlock, kBlockRead, address, first, count), kCommunicationsInterrupted);
  if (OnSmbus()) ReadSmbusBytes(address, first, count);
  return 0;
}

std::int16_t WriteRegister(std::int32_t address, std::int32_t reg, std::int32_t& value) {
  if (!IsByte(reg)) return 0;
  // Clamped on both links: neither can carry more than a byte.
  value = std::clamp(value, 0, 0xFF);
  if (OnUsb()) {
    const auto byte = static_cast<std::uint8_t>(value);
    const std::int16_t result = Command(kRegister, address, value * 256 + reg, {Form::Write, address, reg, {&byte, 1}});
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
  const auto byte = static_cast<std::uint8_t>(percent);
  const std::int16_t result = CommandWithByte(kHeaters, heater, percent, {Form::SetHeater, heater, 0, {&byte, 1}});
  if (heater == 1 || heater == 2) {
    auto& known = Bus.HeaterPercent[static_cast<std::size_t>(heater)];
    if (result == 0 || percent > known.value_or(0)) known = percent;
  }
  return Checked(result, kHeaterError);
}

std::int16_t ReadHeaterState() {
  if (!OnUsb()) return 0;
  const std::int16_t result = ReadIntoBuffer(Form::ReadHeaters, kHeaters, 0, 0, 3);
  if (result == 0) {
    // The adapter reports twice the percentage.
    for (std::size_t heater = 1; heater <= 2; ++heater) Bus.HeaterPercent[heater] = Bus.ReadBuffer[heater - 1] / 2.0;
  }
  return Checked(result, kHeaterError);
}

std::int16_t ReadBoardPort(std::int32_t address) {
  if (!OnUsb()) return 0;
  Checked(ReadIntoBuffer(Form::ReadPort, kBoardPort, address, 0, 1), kCommunicationsInterrupted);
  return Bus.ReadBuffer[0];
}

std::int16_t WriteBoardPort(std::int32_t address, std::int32_t port) {
  if (!IsByte(port) || !OnUsb()) return 0;
  const auto byte = static_cast<std::uint8_t>(port);
  return Checked(Command(kBoardPort, address, port, {Form::WritePort, address, 0, {&byte, 1}}),
                 kCommunicationsInterrupted);
}

void WriteBoardPortUnchecked(std::int32_t address, std::int32_t port) {
  if (!IsByte(port) || !OnUsb()) return;
  const auto byte = static_cast<std::uint8_t>(port);
  CommandWithByte(kBoardPort, address, port, {Form::WritePortWithByte, address, 0, {&byte, 1}});
}

std::int16_t LoadFirmware(const char* path) {
  if (Bus.UsbFunctions.LoadFirmWare == nullptr) return 0;
  std::int16_t result = 0;
  {
    const TransferTime time(Direction::Write);
    result = Bus.UsbFunctions.LoadFirmWare(path);
  }
  ShowCall({.mode = kModeUsb, .form = Form::Firmware, .succeeded = result > 0, .result = result});
  return result;
}

std::int16_t ConnectAdapter() {
  // Called before a link is chosen, so it does not check the mode.
  return LinkOpen() ? Command(kConnect, kContact[0], kContact[1], {Form::Connect, 0, 0, kContact}) : kNoLibrary;
}

}  // namespace zth::link
