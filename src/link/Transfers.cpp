#include "link/Transfers.h"

namespace zth::link {

std::optional<std::int32_t> SmbusFailuresOf(std::uint8_t address) {
  if (Bus.Smbus.SmbusFailures == nullptr) return std::nullopt;
  const std::int32_t failures = Bus.Smbus.SmbusFailures(address);
  return failures < 0 ? std::nullopt : std::optional(failures);
}

std::optional<std::int32_t> FailedTransfers() {
  if (Bus.InterfaceMode == kModeUsb) return Bus.usbFailures;
  if (Bus.InterfaceMode != kModeSmbus) return std::nullopt;
  return SmbusFailuresOf(static_cast<std::uint8_t>(Bus.DeviceAddress));
}

bool FailureWatch::Failed() const {
  const auto now = FailedTransfers();
  // Not "more than before": the counter of a long session may wrap around.
  return before_ && now && *now != *before_;
}

}  // namespace zth::link
