#include "simulator/UsbAdapter.h"

#include <algorithm>
#include <cstdint>

namespace zth::simulator {
namespace {

enum VendorRequest : std::int16_t { kHeater = 0xDA, kBlock = 0xDC, kConnect = 0xDD, kRegister = 0xDE, kPort = 0xDF };

constexpr int kLongestBlock = 65;  // the size of the computer's buffer

}  // namespace

UsbAdapter::UsbAdapter(const Settings& settings)
    : bus_(settings, Link::Usb), firmwareRefused_(settings.firmwareRefused), triesToConnect_(settings.connectAtTry) {}

std::int16_t UsbAdapter::LoadFirmware() const {
  return firmwareRefused_ || bus_.Unplugged() ? 0 : 1;
}

std::int16_t UsbAdapter::Request(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                                 std::int16_t length, std::uint8_t* buffer) {
  if (direction != 0 && direction != 1) return kBadRequest;
  const Setup setup{request, value, index, direction == 1, length, buffer};
  if (setup.in && (buffer == nullptr || length < 1 || length > kLongestBlock)) return kBadRequest;
  if (!bus_.Admit(TransferOf(setup))) return kTransferFailed;
  switch (request) {
    case kHeater:
      return Heater(setup);
    case kBlock:
      return ReadBlock(setup);
    case kConnect:
      return Connect(setup);
    case kRegister:
      return Register(setup);
    case kPort:
      return Port(setup);
    default:
      return kBadRequest;
  }
}

Transfer UsbAdapter::TransferOf(const Setup& setup) {
  if (setup.request == kBlock) return {setup.request, setup.index, setup.length};
  if (setup.request == kRegister) return {setup.request, setup.index & 0xFF, 1};
  return {setup.request, -1, 0};
}

std::int16_t UsbAdapter::Heater(const Setup& setup) {
  Board* board = bus_.First();
  if (board == nullptr) return kTransferFailed;
  if (!setup.in) return board->SetHeater(setup.value, setup.index) ? kDone : kBadRequest;
  // Two drives, and an extra byte that the adapter sends and nobody uses.
  const std::uint8_t state[3] = {board->HeaterState(1), board->HeaterState(2), 0};
  if (setup.length > 3) return kBadRequest;
  std::copy_n(state, setup.length, setup.buffer);
  return kDone;
}

std::int16_t UsbAdapter::ReadBlock(const Setup& setup) {
  if (!setup.in || setup.index < 0 || setup.index + setup.length > 0x100) return kBadRequest;
  for (int i = 0; i < setup.length; ++i) {
    setup.buffer[i] = bus_.Read(setup.value, static_cast<std::uint8_t>(setup.index + i));
  }
  return kDone;
}

std::int16_t UsbAdapter::Connect(const Setup& setup) {
  if (setup.in || setup.value != 0x30 || setup.index != 0x33) return kBadRequest;
  if (triesToConnect_ > 1) {
    --triesToConnect_;
    return kTransferFailed;
  }
  return kDone;
}

std::int16_t UsbAdapter::Register(const Setup& setup) {
  if (setup.index < 0 || setup.index > (setup.in ? 0xFF : 0xFFFF)) return kBadRequest;
  const auto reg = static_cast<std::uint8_t>(setup.index & 0xFF);
  // An address without a chip is not a failure: the adapter reports success, and the data are those of open bus lines,
  // so that a search over addresses can continue.
  if (setup.in) {
    if (setup.length != 1) return kBadRequest;
    setup.buffer[0] = bus_.Read(setup.value, reg);
  } else {
    bus_.Write(setup.value, reg, static_cast<std::uint8_t>(setup.index >> 8));
  }
  return kDone;
}

std::int16_t UsbAdapter::Port(const Setup& setup) {
  Board* board = bus_.First();
  if (board == nullptr || setup.value < 0 || setup.value > 0x7F) return kTransferFailed;
  const auto address = static_cast<std::uint8_t>(setup.value);
  // A write has a length of 0 or 1; in both cases the port byte is in the index.
  if (!setup.in) {
    if (setup.index < 0 || setup.index > 0xFF) return kBadRequest;
    return board->WritePort(address, static_cast<std::uint8_t>(setup.index)) ? kDone : kTransferFailed;
  }
  if (setup.length != 1) return kBadRequest;
  return board->ReadPort(address, setup.buffer[0]) ? kDone : kTransferFailed;
}

}  // namespace zth::simulator
