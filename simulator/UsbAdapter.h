#pragma once

#include <cstdint>

#include "simulator/Bus.h"
#include "simulator/Settings.h"

namespace zth::simulator {

/// The USB adapter of the evaluation board, as seen through the closed library `USBFunctions`.
class UsbAdapter {
 public:
  static constexpr std::int16_t kDone = 0;
  static constexpr std::int16_t kTransferFailed = 1;
  static constexpr std::int16_t kBadRequest = 2;

  explicit UsbAdapter(const Settings& settings);

  /// 1 if the adapter accepts its firmware, otherwise 0.
  std::int16_t LoadFirmware() const;

  /// One vendor request; kDone or a failure code. A read fills `length` bytes of the buffer.
  std::int16_t Request(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                       std::int16_t length, std::uint8_t* buffer);

  Bus& TheBus() { return bus_; }

 private:
  struct Setup {
    std::int16_t request;
    std::int32_t value, index;
    bool in;  ///< direction: to the computer
    std::int16_t length;
    std::uint8_t* buffer;
  };

  static Transfer TransferOf(const Setup& setup);
  std::int16_t Heater(const Setup& setup);
  std::int16_t ReadBlock(const Setup& setup);
  std::int16_t Connect(const Setup& setup);
  std::int16_t Register(const Setup& setup);
  std::int16_t Port(const Setup& setup);

  Bus bus_;
  bool firmwareRefused_;
  int triesToConnect_;
};

}  // namespace zth::simulator
