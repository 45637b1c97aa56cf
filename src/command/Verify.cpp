#include "command/Verify.h"

#include "base/Counted.h"
#include "chip/RegisterNames.h"
#include "chip/WriteEffects.h"

namespace zth::command {

void Expected::Put(std::uint8_t reg, unsigned mask, unsigned value) {
  Bits& bits = registers_[reg];
  bits.value = (bits.value & ~mask) | (value & mask);
  bits.mask |= mask;
}

void Expected::Verify(Session& session) const {
  for (const auto& [reg, bits] : registers_) {
    const unsigned mask = bits.mask & ~unsigned{chip::BitsNotPutBack(reg)};
    if (mask == 0) continue;
    const unsigned held = session.Read(reg);
    if ((held & mask) == (bits.value & mask)) continue;
    const chip::RegisterRow* row = chip::RowAt(reg);
    throw Failure{kNotVerified,
                  std::string(row == nullptr ? "" : row->name) + " (" + ByteText(reg) + ") holds " + ByteText(held) +
                      " after " + ByteText(bits.value) + " was written to its bits " + ByteText(mask),
                  "Check whether the chip is locked (Configuration_1.LCK) or sets this register itself"};
  }
  session.Out().Remark("Verified: " + base::Counted(static_cast<std::int64_t>(registers_.size()), "registers"));
}

}  // namespace zth::command
