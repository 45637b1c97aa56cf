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

static_assert("Pin 19 High Limit"_reg == 0x4B && "Remote 3 High Limit"_reg == 0x4B, "two names of one address");

}  // namespace
}  // namespace zth::chip
