#pragma once

#include <cstdint>
#include <optional>

#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"

namespace zth::simulator {

/// The six VID inputs: pins 1 to 4, 31 and 32 where 0x10 makes them those. Register 0x78 shows their levels then.
class VidInputs {
 public:
  VidInputs(RegisterFile& registers, const PinModel& pins) : registers_(registers), pins_(pins) {}

  /// One tick. True when the code on the pins is another than at the tick before.
  bool Tick(const PinInputs& inputs) {
    const std::optional<std::uint8_t> before = code_;
    code_.reset();
    if (!pins_.Vid()) return false;
    code_ = inputs.vid & kPins;
    registers_.Put(kRegister, (registers_[kRegister] & ~kPins) | *code_);
    return before && before != code_;
  }
  void Reset() { code_.reset(); }

  /// The bits of the register that are the pins'.
  int OwnBits() const { return pins_.Vid() ? kPins : 0; }

 private:
  static constexpr int kRegister = 0x78;
  static constexpr int kPins = 0x3F;

  RegisterFile& registers_;
  const PinModel& pins_;
  std::optional<std::uint8_t> code_;
};

}  // namespace zth::simulator
