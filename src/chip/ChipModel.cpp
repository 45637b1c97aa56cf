#include "chip/ChipModel.h"

#include <algorithm>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/PwmModes.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/RegisterHooks.h"
#include "link/USBStuff.h"

namespace zth::chip {

ModelOrigin ModelReadFrom() {
  ModelOrigin origin{Model.PinFunctionsFrom, {}, Model.ChipRevisionFrom};
  std::copy_n(Model.PwmManualFrom.begin() + 1, origin.manual.size(), origin.manual.begin());
  return origin;
}

bool ModelIsOfChipInUse() {
  const link::ChipId inUse = link::ChipInUse();
  const ModelOrigin origin = ModelReadFrom();
  return origin.pins == inUse && origin.revision == inUse &&
         std::ranges::all_of(origin.manual, [&](const link::ChipId& from) { return from == inUse; });
}

bool ModelIsUnread() {
  const ModelOrigin origin = ModelReadFrom();
  return origin.pins == kUnread || origin.revision == kUnread || std::ranges::count(origin.manual, kUnread) != 0;
}

link::ChipId OriginOfRead(const link::FailureWatch& watch) {
  return watch.Failed() ? kUnread : link::ChipInUse();
}

void ReadManualFlags() {
  for (int pwm = 0; pwm < kPwmChannels; ++pwm) link::AfterRegisterWrite("PWM1 Config"_reg + pwm);
}

void ReadChipRevision() {
  const link::FailureWatch watch;
  const std::int16_t revision = link::ReadRegister(link::Bus.DeviceAddress, "Revision Number"_reg);
  Model.ChipRevisionFrom = OriginOfRead(watch);
  if (!watch.Failed()) Model.ChipRevision = revision;
}

void ReadChipModel() {
  ReadManualFlags();
  ReadChipRevision();
  ReadPinConfiguration();
}

}  // namespace zth::chip
