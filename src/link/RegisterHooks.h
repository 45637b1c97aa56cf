#pragma once

#include <cstdint>
#include <functional>

/// Routines that update shared state after a register write. The rooms above register them here.
namespace zth::link {

/// Sets the routine of a register (0 to 255), replacing any earlier one.
void OnRegisterWrite(std::int32_t reg, std::function<void()> routine);

/// Runs the register's routine, if it has one. The value written does not matter.
void AfterRegisterWrite(std::int32_t reg);

}  // namespace zth::link
