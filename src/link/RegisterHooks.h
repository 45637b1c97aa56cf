#pragma once

#include <cstdint>
#include <functional>

/// What has to be read anew after a register has been written, so that the shared state stays true. The rooms above
/// enter their routines here.
namespace zth::link {

/// Enters `routine` for a register (0 to 255); a second one for the same register replaces the first.
void OnRegisterWrite(std::int32_t reg, std::function<void()> routine);

/// Runs the register's routine, if it has one. The value written plays no part.
void AfterRegisterWrite(std::int32_t reg);

}  // namespace zth::link
