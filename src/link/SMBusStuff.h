#pragma once

#include <cstdint>

/// The SMBus side of the register operations: byte-data transfers through the closed library, which reports no
/// failures.
namespace zth::link {

/// The start's two calls: one read of register 0 at address 0, whose value does not matter, and the search for the
/// host. They do nothing if the library lacks the entry, and count as no transfers.
void ProbeSmbusHost();
void DetectSmbusHost();

/// Reads one byte; 0 if the library lacks its entries.
std::uint8_t ReadSmbusByte(std::int32_t address, std::int32_t reg);

void WriteSmbusByte(std::int32_t address, std::int32_t reg, std::uint8_t value);

/// Reads `count` consecutive registers one by one into ReadBuffer from index 0; the host has no block transfer.
void ReadSmbusBytes(std::int32_t address, std::int32_t first, int count);

}  // namespace zth::link
