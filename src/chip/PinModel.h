#pragma once

#include <array>
#include <cstdint>

/// The current function of each multi-function pin, decoded from the pin configuration registers, and the board's two
/// ADG715 switches, which follow it.
namespace zth::chip {

/// A one-bit flag is 0 or 1. `Pin25`, `Pin26`, `Pin28` and `Pin29` are 0, 1 or 2 (fields 2 and 3 both give 2). `Pin23`
/// and `Pin24` hold a state, not the field: 0 +2.5V, 1 +1.8V, 2 Vccp, 3 +1.5V.
struct PinFunctionFlags {
  bool Vid = false;
  bool D1 = false;  ///< pins 15, 16 are the Remote 1 diode pair
  bool D3 = false;  ///< pins 19, 20 are the Remote 3 diode pair
  std::int16_t Pin1 = 0, Pin2 = 0, Pin3 = 0, Pin4 = 0, Pin7 = 0;
  std::int16_t Pin8 = 0, Pin13 = 0, Pin15 = 0, Pin20 = 0, Pin21 = 0, Pin22 = 0;
  std::int16_t Pin23 = 0, Pin24 = 0, Pin25 = 0, Pin26 = 0, Pin27 = 0;
  std::int16_t Pin28 = 0, Pin29 = 0, Pin31 = 0, Pin32 = 0;

  bool operator==(const PinFunctionFlags&) const = default;
};

inline constexpr int kVoltageChannels = 23;

/// Bus addresses of the two ADG715s.
inline constexpr std::int32_t kSwitchDevice0 = 0x4A;
inline constexpr std::int32_t kSwitchDevice1 = 0x48;

/// Decodes the bytes of "Pin Config 1" to "Pin Config 4".
PinFunctionFlags DecodePinFunctions(const std::array<std::uint8_t, 4>& configs);

/// Reads the four pin configurations of the chip in use in one block and updates `PinFunctions`, `VoltagePresent` and
/// the `Available` column of `LogChannelTable`.
void ReadPinConfiguration();

/// Derives the routing switches from `PinFunctions` and writes both devices, device 0 first. Each is derived just
/// before it is written.
void UpdateBoardSwitches();

/// Writes the start pattern of the switches to both devices.
void ResetBoardSwitches();

/// The port byte of device 0 or 1.
std::uint8_t PackSwitchByte(int device);

void InitVoltageNames();

/// Registers hooks with the link: a write to "Pin Config 1" to "Easy Config" updates the flags and the switches. "Easy
/// Config" has no pin field, but writing it makes the chip set the other registers.
void EnterPinHooks();

}  // namespace zth::chip
