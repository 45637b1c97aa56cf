#pragma once

#include <cstdint>
#include <optional>

#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"

namespace zth::simulator {

/// The six VID inputs: pins 1 to 4, 31 and 32 when register 0x10 configures them as VID. Register 0x78 then shows their
/// levels.
class VidInputs {
 public:
  VidInputs(RegisterFile& registers, const PinModel& pins) : registers_(registers), pins_(pins) {}

  /// One tick. True when the code on the pins has changed since the tick before.
  bool Tick(const PinInputs& inputs) {
    const std::optional<std::uint8_t> before = code_;
    code_.reset();
    if (!pins_.Vid()) return false;
    code_ = inputs.vid & kPins;
    registers_.Put(kRegister, (registers_[kRegister] & ~kPins) | *code_);
    return before && before != code_;
  }
  void Reset() { code_.reset(); }

  /// The bits of the register that show pins.
  int OwnBits() const { return pins_.Vid() ? kPins : 0; }

 private:
  static constexpr int kRegister = 0x78;
  static constexpr int kPins = 0x3F;

  RegisterFile& registers_;
  const PinModel& pins_;
  std::optional<std::uint8_t> code_;
};

}  // namespace zth::simulator
