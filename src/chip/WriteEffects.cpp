#include "chip/WriteEffects.h"

#include "base/BitField.h"

namespace zth::chip {

std::uint8_t BitsNotPutBack(std::uint8_t reg) {
  const RegisterRow* row = RowAt(reg);
  if (row == nullptr || row->readOnly) return 0xFF;
  unsigned bits = 0;
  for (const RegisterField& field : {kReset, kLock, kReady}) {
    if (field.reg == reg) bits |= base::Mask(field.bits);
  }
  return static_cast<std::uint8_t>(bits);
}

std::vector<std::uint8_t> ChangedByWrite(std::uint8_t reg, std::uint8_t value) {
  const bool resets = reg == kReset.reg && (value & base::Mask(kReset.bits)) != 0;
  std::vector<std::uint8_t> changed;
  for (unsigned other = 0; other <= 0xFF; ++other) {
    const auto address = static_cast<std::uint8_t>(other);
    if (address == reg || BitsNotPutBack(address) == 0xFF) continue;
    const bool isOption = IsOfEasyOption(reg) && IsOfEasyOption(address);
    const bool isMoved = IsOfTminControl(reg) && IsMovedByTminControl(address);
    if (resets || isOption || isMoved) changed.push_back(address);
  }
  return changed;
}

}  // namespace zth::chip
