#include "tests/support/FakeBoard.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "chip/RegisterRows.h"
#include "link/Declarations.h"

namespace zth::testing {
namespace {

BoardEntries* board = nullptr;  // the board that the entries call

template <typename... Numbers>
std::string Text(const char* format, Numbers... numbers) {
  return QString::asprintf(format, numbers...).toStdString();
}

const char* Bus() {
  return link::Bus.InterfaceMode == link::kModeUsb ? "usb" : "smb";
}

std::int16_t ZTH_LIBRARY_CALL LoadFirmWare(const char* path) {
  return board->LoadFirmWare(path);
}
std::int16_t ZTH_LIBRARY_CALL VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index,
                                              std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  return board->VendorIORequest(request, value, index, direction, length, buffer);
}
void ZTH_LIBRARY_CALL DetectSmbus() {
  board->DetectSmbus();
}
std::uint8_t ZTH_LIBRARY_CALL ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  return board->ReadSmbus(address, reg);
}
void ZTH_LIBRARY_CALL WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  board->WriteSmbus(address, reg, value);
}

class BoardLibrary final : public platform::Library {
 public:
  explicit BoardLibrary(const std::set<std::string>& missing) {
    for (const std::string& name : missing) entries_.erase(name);
  }
  void* Symbol(const char* name) const override {
    const auto entry = entries_.find(name);
    return entry == entries_.end() ? nullptr : entry->second;
  }

 private:
  std::map<std::string, void*> entries_{{"LoadFirmWare", reinterpret_cast<void*>(&LoadFirmWare)},
                                        {"VendorIORequest", reinterpret_cast<void*>(&VendorIORequest)},
                                        {"DetectSmbus", reinterpret_cast<void*>(&DetectSmbus)},
                                        {"ReadSmbus", reinterpret_cast<void*>(&ReadSmbus)},
                                        {"WriteSmbus", reinterpret_cast<void*>(&WriteSmbus)}};
};

/// The request as text; empty if it has none of the known forms.
std::string Decode(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                   std::int16_t length, const std::uint8_t* buffer) {
  const bool readBuffer = buffer == link::Bus.ReadBuffer.data();
  const bool nothing = !readBuffer && buffer != nullptr && *buffer == 0;
  const bool read = direction == 1 && readBuffer;
  const bool command = direction == 0 && length == 0 && nothing;
  const bool byteCommand = direction == 0 && length == 1 && readBuffer;
  const bool heater = request == 0xDA, block = request == 0xDC, single = request == 0xDE, port = request == 0xDF;
  if (heater && read && length == 3 && value == 0 && index == 0) return "usb H";
  if (heater && byteCommand) return Text("usb H %d=%d", value, index);
  const bool fits = length >= 0 && length <= link::kReadBufferSize;
  if (block && read && fits) return Text("usb B %02X:%02X+%d", value, index, length);
  if (request == 0xDD && command) return Text("usb C %02X:%02X", value, index);
  if (single && read && length == 1) return Text("usb R %02X:%02X", value, index);
  if (single && command) return Text("usb W %02X:%02X=%02X", value, index & 0xFF, index >> 8);
  if (port && read && length == 1 && index == 0) return Text("usb P %02X", value);
  if (port && command) return Text("usb P %02X=%02X", value, index);
  if (port && byteCommand) return Text("usb D %02X=%02X", value, index);
  return {};
}

}  // namespace

std::shared_ptr<platform::Library> LibraryOf(BoardEntries& entries, const std::set<std::string>& missing) {
  board = &entries;
  return std::make_shared<BoardLibrary>(missing);
}

FakeBoard::Registers DefaultRegisters() {
  FakeBoard::Registers registers{};
  for (const chip::RegisterRow& row : chip::kRegisterRows) registers[row.address] = row.defaultValue;
  registers[0x3F] = 0x01;
  return registers;
}

platform::LoadedLibrary FakeBoard::Load(const QString& name) {
  const auto error = loadErrors.find(name);
  if (error != loadErrors.end()) return {nullptr, error->second};
  return {LibraryOf(*this, missingEntries), {}};
}

FakeBoard::Registers& FakeBoard::Chip() {
  auto& chips = link::Bus.InterfaceMode == link::kModeUsb ? usbChips : smbusChips;
  return chips.at(link::Bus.DeviceAddress);
}

std::int16_t FakeBoard::LoadFirmWare(const char* path) {
  traffic.push_back(std::string("usb F ") + path);
  return firmwareResult;
}

std::int16_t FakeBoard::VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index,
                                        std::int16_t direction, std::int16_t length, std::uint8_t* buffer) {
  std::string text = Decode(request, value, index, direction, length, buffer);
  const bool known = !text.empty();
  if (!known) {
    text = Text("usb ? %02X value %X index %X direction %d length %d", request, value, index, direction, length);
    ADD_FAILURE() << "not a request of the adapter: " << text;
  }
  traffic.push_back(text);
  const int call = usbCalls++;
  const bool fails = (failFrom && call >= *failFrom) || (failOnly && call == *failOnly) ||
                     (!failMatching.empty() && text.rfind(failMatching, 0) == 0);
  if (fails) return failure;
  if (known) Carry(request, value, index, direction, length, buffer);
  return 0;
}

void FakeBoard::Carry(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                      std::int16_t length, std::uint8_t* buffer) {
  const auto chip = usbChips.find(value);
  const bool here = chip != usbChips.end();
  if (request == 0xDA && direction == 1) std::copy_n(heaterState.begin(), 3, buffer);
  if (request == 0xDC || (request == 0xDE && direction == 1)) {
    for (int i = 0; i < length; ++i) {
      buffer[i] = here ? chip->second[static_cast<std::size_t>((index + i) & 0xFF)] : std::uint8_t{0xFF};
    }
  }
  if (request == 0xDE && direction == 0 && here) {
    chip->second[static_cast<std::size_t>(index & 0xFF)] = static_cast<std::uint8_t>(index >> 8);
  }
  if (request == 0xDF && direction == 1) buffer[0] = ports[value];
  if (request == 0xDF && direction == 0) ports[value] = static_cast<std::uint8_t>(index);
}

std::uint8_t FakeBoard::ReadSmbus(std::uint8_t address, std::uint8_t reg) {
  traffic.push_back(Text("smb R %02X:%02X", address, reg));
  const auto chip = smbusChips.find(address);
  return chip == smbusChips.end() ? std::uint8_t{0xFF} : chip->second[reg];
}

void FakeBoard::WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  traffic.push_back(Text("smb W %02X:%02X=%02X", address, reg, value));
  const auto chip = smbusChips.find(address);
  if (chip != smbusChips.end()) chip->second[reg] = value;
}

std::string R(int reg) {
  return Text("%s R %02X:%02X", Bus(), link::Bus.DeviceAddress, reg);
}

std::string W(int reg, int value) {
  return Text("%s W %02X:%02X=%02X", Bus(), link::Bus.DeviceAddress, reg, value);
}

Traffic B(int first, int count) {
  if (link::Bus.InterfaceMode == link::kModeUsb)
    return {Text("usb B %02X:%02X+%d", link::Bus.DeviceAddress, first, count)};
  Traffic reads;
  for (int i = 0; i < count; ++i) reads.push_back(R(first + i));
  return reads;
}

}  // namespace zth::testing
