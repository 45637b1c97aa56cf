#include "link/RegisterHooks.h"

#include <map>

namespace zth::link {
namespace {

std::map<std::int32_t, std::function<void()>> hooks;

}  // namespace

void OnRegisterWrite(std::int32_t reg, std::function<void()> routine) {
  hooks[reg] = std::move(routine);
}

void AfterRegisterWrite(std::int32_t reg) {
  const auto hook = hooks.find(reg);
  if (hook != hooks.end()) hook->second();
}

void ResetHooks() {
  hooks.clear();
}

}  // namespace zth::link
