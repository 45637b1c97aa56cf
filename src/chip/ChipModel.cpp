#include "chip/ChipModel.h"

#include <algorithm>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/RegisterHooks.h"
#include "link/USBStuff.h"

namespace zth::chip {
namespace {

constexpr std::int32_t kPwm1Config = 0x21;
constexpr std::int32_t kRevisionRegister = 0x3F;

}  // namespace

ModelOrigin ModelReadFrom() {
  ModelOrigin origin{PinFunctionsFrom, {}, ChipRevisionFrom};
  std::copy_n(link::PwmManualFrom.begin() + 1, origin.manual.size(), origin.manual.begin());
  return origin;
}

bool ModelIsOfChipInUse() {
  const link::ChipId inUse = link::ChipInUse();
  const ModelOrigin origin = ModelReadFrom();
  return origin.pins == inUse && origin.revision == inUse &&
         std::ranges::all_of(origin.manual, [&](const link::ChipId& from) { return from == inUse; });
}

void ReadManualFlags() {
  for (std::int32_t reg = kPwm1Config; reg < kPwm1Config + 4; ++reg) link::AfterRegisterWrite(reg);
}

void ReadChipRevision() {
  ChipRevision = link::ReadRegister(link::DeviceAddress, kRevisionRegister);
  ChipRevisionFrom = link::ChipInUse();
}

void ReadChipModel() {
  ReadManualFlags();
  ReadChipRevision();
  ReadPinConfiguration();
}

}  // namespace zth::chip
