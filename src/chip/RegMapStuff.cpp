#include "chip/RegMapStuff.h"

#include <algorithm>

#include "chip/RegisterRows.h"

namespace zth::chip {

std::array<RegisterEntry, kRegisterCount> RegisterTable;

static_assert(kRegisterRows.size() == kRegisterCount);

namespace {

template <typename Matches>
int FirstRow(Matches matches) {
  const auto row = std::find_if(RegisterTable.begin(), RegisterTable.end(), matches);
  return row == RegisterTable.end() ? -1 : static_cast<int>(row - RegisterTable.begin());
}

}  // namespace

void InitRegisterTable() {
  std::transform(kRegisterRows.begin(), kRegisterRows.end(), RegisterTable.begin(), [](const RegisterRow& row) {
    return RegisterEntry{row.address, row.name, row.name, row.bitNames, row.defaultValue, row.readOnly, row.shared};
  });
}

int RowOfName(std::string_view name) {
  return FirstRow([name](const RegisterEntry& entry) { return entry.Name == name; });
}

int RowOfAddress(std::int32_t address) {
  return FirstRow([address](const RegisterEntry& entry) { return entry.Address == address; });
}

}  // namespace zth::chip
