#include "link/RegisterHooks.h"

#include <map>

#include "base/BitField.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"

namespace zth::link {
namespace {

std::map<std::int32_t, std::function<void()>> hooks;

constexpr std::int32_t kPwm1Config = 0x21;
constexpr base::BitField kBehaviour{5, 3};
constexpr unsigned kManual = 7;

void ReadPwmManual(int pwm) {
  const auto config = static_cast<unsigned>(ReadRegister(DeviceAddress, kPwm1Config + pwm - 1));
  const auto index = static_cast<std::size_t>(pwm);
  PwmManual[index] = base::GetField(config, kBehaviour) == kManual;
  PwmManualFrom[index] = ChipInUse();
}

}  // namespace

void OnRegisterWrite(std::int32_t reg, std::function<void()> routine) {
  hooks[reg] = std::move(routine);
}

void AfterRegisterWrite(std::int32_t reg) {
  const auto hook = hooks.find(reg);
  if (hook != hooks.end()) hook->second();
}

void EnterPwmHooks() {
  for (int pwm = 1; pwm <= 4; ++pwm) {
    OnRegisterWrite(kPwm1Config + pwm - 1, [pwm] { ReadPwmManual(pwm); });
  }
}

void ResetHooks() {
  hooks.clear();
}

}  // namespace zth::link
