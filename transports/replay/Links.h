#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "replay/Replay.h"

/// The two libraries' entries, answered from a recording.
namespace zth::replay {

/// What carries a request to the recording: usually Replay::Answer, with the wait that the recording's times ask for.
using Answering = std::function<tasks::TrafficRecord(const tasks::TrafficRecord& request)>;

/// `USBFunctions`.
class UsbLink {
 public:
  explicit UsbLink(Answering answer) : answer_(std::move(answer)) {}

  std::int16_t LoadFirmware();
  std::int16_t Request(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                       std::int16_t length, std::uint8_t* buffer);

 private:
  Answering answer_;
};

/// `smbus`.
class SmbusLink {
 public:
  explicit SmbusLink(Answering answer) : answer_(std::move(answer)) {}

  void Detect();
  std::uint8_t Read(std::uint8_t address, std::uint8_t reg);
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t value);

 private:
  Answering answer_;
};

}  // namespace zth::replay
