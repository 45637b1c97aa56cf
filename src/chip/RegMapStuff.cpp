#include "chip/RegMapStuff.h"

#include <algorithm>

#include "chip/ChipState.h"
#include "chip/RegisterRows.h"

namespace zth::chip {

static_assert(kRegisterRows.size() == kRegisterCount);

namespace {

template <typename Matches>
int FirstRow(Matches matches) {
  const auto row = std::find_if(Model.RegisterTable.begin(), Model.RegisterTable.end(), matches);
  return row == Model.RegisterTable.end() ? -1 : static_cast<int>(row - Model.RegisterTable.begin());
}

}  // namespace

void InitRegisterTable() {
  std::transform(kRegisterRows.begin(), kRegisterRows.end(), Model.RegisterTable.begin(), [](const RegisterRow& row) {
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
