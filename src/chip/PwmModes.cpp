#include "chip/PwmModes.h"

#include <cstddef>

#include "base/BitField.h"
#include "chip/ChipModel.h"
#include "chip/ChipState.h"
#include "chip/RegisterNames.h"
#include "link/Declarations.h"
#include "link/RegisterHooks.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"

namespace zth::chip {

void EnterPwmHooks() {
  for (int pwm = 1; pwm <= kPwmChannels; ++pwm) {
    const std::int32_t reg = "PWM1 Config"_reg + pwm - 1;
    link::OnRegisterWrite(reg, [pwm, reg] {
      const link::FailureWatch watch;
      const auto config = static_cast<unsigned>(link::ReadRegister(link::Bus.DeviceAddress, reg));
      const auto index = static_cast<std::size_t>(pwm);
      Model.PwmManualFrom[index] = OriginOfRead(watch);
      if (!watch.Failed()) Model.PwmManual[index] = base::GetField(config, kBehaviour) == kManualMode;
    });
  }
}

}  // namespace zth::chip
