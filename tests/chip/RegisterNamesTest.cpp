#include <string_view>
#include <type_traits>

#include "chip/RegisterNames.h"

// Nothing here runs: it compiles or it does not.
namespace zth::chip {
namespace {

// What the program's text names is looked up while it is compiled; a wrong name must stop the compiler.
struct Edo {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Temp";
};
struct UnknownRegister {
  static constexpr std::string_view reg = "EDO Mask 3", bits = "Temp";
};
struct UnknownBits {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Tem";
};
struct Reserved {
  static constexpr std::string_view reg = "EDO Mask 1", bits = "Res";
};
template <typename T>
concept Compiles = requires {
  typename std::integral_constant<unsigned, Field(T::reg, T::bits).shift>;
};
static_assert(Compiles<Edo> && !Compiles<UnknownRegister> && !Compiles<UnknownBits> && !Compiles<Reserved>);

constexpr bool Is(RegisterField field, int reg, int high, int low) {
  return field.reg == reg && field.bits.shift == low && field.bits.width == high - low + 1;
}
static_assert(Is(At("Pin Config 1", "VID"), 0x10, 7, 7) && Is(At("Pin Config 1", "P7"), 0x10, 0, 0));
static_assert(Is(At("Pin Config 2", "P23"), 0x11, 1, 0) && Is(At("Tmin_Cal2", "CYR2"), 0x0C, 5, 3));
static_assert(Is(At("PWM4 Config", "Bhvr"), 0x24, 7, 5) && Is(At("Local/Remote 1 Hyst", "LH"), 0x54, 3, 0));
static_assert("Pin 19 High Limit"_reg == 0x4B && "Remote 3 High Limit"_reg == 0x4B, "two names of one address");

}  // namespace
}  // namespace zth::chip
