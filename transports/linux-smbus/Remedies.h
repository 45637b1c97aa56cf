#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"

namespace zth::smbus {

/// Texts that tell the user why the bus cannot be used and what helps. docs/hardware.md explains the same at length.

/// "i2c-0 (SMBus I801 adapter at f040)".
std::string Describe(const Adapter& adapter);
/// "SMBus I801 adapter at f040 (i2c-0)".
std::string NameOf(const Adapter& adapter);
/// "Permission denied (errno 13)".
std::string ErrorText(int error);

/// The kernel has no buses at all.
std::string NoAdapterText();
/// There are buses, but none of them is used.
std::string NoneChosenText(const std::vector<Adapter>& present);
/// A bus was chosen, but its node cannot be opened.
std::string CannotOpenText(const Adapter& adapter, const std::string& node, int error);
/// A kernel driver is bound to the address; `driver` may be empty.
std::string HeldText(int adapter, std::uint8_t address, const std::string& driver);

}  // namespace zth::smbus
