#pragma once

#include <cstdint>
#include <span>

#include "link/Asker.h"

/// Shows each call of the closed libraries' entries to one observer, as it ends. Plain C++: what reads recordings uses
/// these types without a link.
namespace zth::link {

/// The forms of a call. The SMBus host has Detect, Read and Write; the USB adapter has all others and these two.
enum class Form : std::uint8_t {
  Detect,
  Firmware,
  Connect,
  Read,
  ReadBlock,
  Write,
  ReadPort,
  WritePort,
  WritePortWithByte,  ///< the same write, passing one byte of data that the adapter ignores
  SetHeater,
  ReadHeaters,
};

constexpr bool IsWrite(Form form) {
  return form == Form::Write || form == Form::WritePort || form == Form::WritePortWithByte || form == Form::SetHeater;
}

struct Call {
  std::int16_t mode = 0;  ///< the link, as in `InterfaceMode`
  Form form = Form::Read;
  std::uint8_t address = 0;  ///< on the bus; of SetHeater: the heater; 0 for a form without one
  std::uint8_t reg = 0;      ///< the first register; 0 for a form without one
  /// The bytes read, written or set. Empty for a form without any; what a failed read left in the buffer otherwise.
  /// They are valid for as long as the observer runs.
  std::span<const std::uint8_t> bytes{};
  /// False if the library says that the call failed. An SMBus library says so only if it has the entry SmbusFailures.
  bool succeeded = true;
  std::int16_t result = 0;       ///< what the USB library's entry returned; 0 on SMBus
  double began = 0;              ///< monotonic clock, seconds
  double took = 0;               ///< seconds
  const Asker* asker = nullptr;  ///< for whom the call was made; null if nobody has said so
};

/// Sees the calls. It must not use the link.
class Observer {
 public:
  Observer() = default;
  virtual ~Observer() = default;
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;

  virtual void Saw(const Call& call) = 0;
};

}  // namespace zth::link
