#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// The table of the chip's registers.
namespace zth::chip {

struct RegisterEntry {
  std::int32_t Address = 0;
  std::string Name;      ///< unique; key for looking up a register
  std::string Caption;   ///< text shown for it; a copy of Name
  std::string BitNames;  ///< eight names separated by ":", bit 7 first
  std::int16_t Default = 0;
  bool ReadOnly = false;
  bool Shared = false;  ///< its address has two rows
};

inline constexpr int kRegisterCount = 176;

/// Fills all rows without accessing the hardware.
void InitRegisterTable();

/// The lowest index of a row with the name or address; -1 if there is none.
int RowOfName(std::string_view name);
int RowOfAddress(std::int32_t address);

}  // namespace zth::chip
