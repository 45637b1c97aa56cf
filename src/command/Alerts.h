#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "tasks/LimitTables.h"

/// The chip's alerts, as the limits window lists them. Makes no transfer.
namespace zth::command {

std::span<const tasks::AlertTab* const> AlertTabs();

/// Whether the pins of the model provide what a row of alerts is about.
bool IsLive(const tasks::AlertTab& tab, std::size_t row);

/// Whether a channel or a row exists with the model's pins.
bool IsListed(tasks::PinCondition condition);

/// The copies of the status registers that are the host's. Reading one clears it for every other reader of that copy;
/// the windows read the BMC's copies.
std::span<const std::uint8_t> HostStatusRegisters();

/// The host's copy of a status register in a row of alerts.
std::uint8_t HostCopyOf(int statusRegister);

}  // namespace zth::command
