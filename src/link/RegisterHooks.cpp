#include "link/RegisterHooks.h"

#include "link/Declarations.h"

namespace zth::link {

void OnRegisterWrite(std::int32_t reg, std::function<void()> routine) {
  Bus.hooks[reg] = std::move(routine);
}

void AfterRegisterWrite(std::int32_t reg) {
  const auto hook = Bus.hooks.find(reg);
  if (hook != Bus.hooks.end()) hook->second();
}

}  // namespace zth::link
