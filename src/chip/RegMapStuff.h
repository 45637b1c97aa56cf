#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// The program's catalogue of the chip's registers.
namespace zth::chip {

struct RegisterEntry {
  std::int32_t Address = 0;
  std::string Name;      ///< unique; the key by which a register is found
  std::string Caption;   ///< what is shown for it; a copy of Name
  std::string BitNames;  ///< eight names joined by ":", bit 7 first
  std::int16_t Default = 0;
  bool ReadOnly = false;
  bool Shared = false;  ///< its address has two rows
};

inline constexpr int kRegisterCount = 176;

/// Fills all rows. Touches no hardware.
void InitRegisterTable();

/// The first row, from 0 upwards, with the name or the address; -1 when there is none. Where two rows share an address
/// the lower one wins.
int RowOfName(std::string_view name);
int RowOfAddress(std::int32_t address);

}  // namespace zth::chip
