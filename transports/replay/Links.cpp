#include "replay/Links.h"

#include <algorithm>
#include <optional>

namespace zth::replay {
namespace {

using link::Form;
using tasks::TrafficRecord;

constexpr std::int16_t kUsb = 1;
constexpr std::int16_t kSmbus = 2;

// The adapter's requests.
enum RequestCode : std::int16_t { kHeaters = 0xDA, kBlock = 0xDC, kConnect = 0xDD, kRegister = 0xDE, kPort = 0xDF };

TrafficRecord RequestOf(std::int16_t mode, Form form, std::int32_t address = 0, std::int32_t reg = 0) {
  TrafficRecord record;
  record.mode = mode;
  record.form = form;
  record.address = static_cast<std::uint8_t>(address);
  record.reg = static_cast<std::uint8_t>(reg);
  return record;
}

TrafficRecord WriteOf(std::int16_t mode, Form form, std::int32_t address, std::int32_t reg, std::int32_t byte) {
  TrafficRecord record = RequestOf(mode, form, address, reg);
  record.count = 1;
  record.bytes[0] = static_cast<std::uint8_t>(byte);
  return record;
}

std::optional<TrafficRecord> ReadOf(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t length) {
  TrafficRecord record;
  if (request == kRegister) {
    record = RequestOf(kUsb, Form::Read, value, index);
  } else if (request == kBlock) {
    record = RequestOf(kUsb, Form::ReadBlock, value, index);
  } else if (request == kPort) {
    record = RequestOf(kUsb, Form::ReadPort, value);
  } else if (request == kHeaters) {
    record = RequestOf(kUsb, Form::ReadHeaters);
  } else {
    return std::nullopt;
  }
  record.count = static_cast<std::uint8_t>(length);
  return record;
}

std::optional<TrafficRecord> CommandOf(std::int16_t request, std::int32_t value, std::int32_t index,
                                       std::int16_t length) {
  if (request == kRegister) return WriteOf(kUsb, Form::Write, value, index % 256, index / 256);
  if (request == kPort) return WriteOf(kUsb, length == 0 ? Form::WritePort : Form::WritePortWithByte, value, 0, index);
  if (request == kHeaters) return WriteOf(kUsb, Form::SetHeater, value, 0, index);
  if (request == kConnect) {
    TrafficRecord record = RequestOf(kUsb, Form::Connect);
    record.count = 2;
    record.bytes[0] = static_cast<std::uint8_t>(value);
    record.bytes[1] = static_cast<std::uint8_t>(index);
    return record;
  }
  return std::nullopt;
}

}  // namespace

std::int16_t UsbLink::LoadFirmware() {
  return answer_(RequestOf(kUsb, Form::Firmware)).result;
}

std::int16_t UsbLink::Request(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                              std::int16_t length, std::uint8_t* buffer) {
  constexpr std::int16_t kRefused = 2;
  const bool reads = direction == 1;
  if (reads && (buffer == nullptr || length < 1 || length > static_cast<int>(tasks::kMostBytes))) return kRefused;
  const auto asked = reads ? ReadOf(request, value, index, length) : CommandOf(request, value, index, length);
  if (!asked) return kRefused;
  const TrafficRecord answer = answer_(*asked);
  if (!answer.succeeded) return answer.result;
  if (reads) std::copy_n(answer.bytes.begin(), length, buffer);
  return 0;
}

void SmbusLink::Detect() {
  answer_(RequestOf(kSmbus, Form::Detect));
}

std::uint8_t SmbusLink::Read(std::uint8_t address, std::uint8_t reg) {
  return answer_(RequestOf(kSmbus, Form::Read, address, reg)).bytes[0];
}

void SmbusLink::Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value) {
  answer_(WriteOf(kSmbus, Form::Write, address, reg, value));
}

}  // namespace zth::replay
