#include "shell/WindowFactory.h"

#include <algorithm>
#include <array>

#include "shell/frmAbout.h"
#include "windows/data/frmLogging.h"
#include "windows/data/frmSave.h"

namespace zth::shell {
namespace {

using Maker = windows::ChildWindow* (*)(const windows::Context&);

struct Row {
  const char* name;
  Maker make;
};

template <typename Window>
windows::ChildWindow* Make(const windows::Context& context) {
  return new Window(context);
}

// One row for each window that stands.
constexpr std::array kWindows{
    Row{"frmAbout", Make<frmAbout>},
    Row{"frmLogging", Make<windows::frmLogging>},
    Row{"frmSave", Make<windows::frmSave>},
};

const Row* FindRow(const QString& name) {
  const auto* row = std::find_if(kWindows.begin(), kWindows.end(), [&](const Row& r) { return name == r.name; });
  return row == kWindows.end() ? nullptr : row;
}

}  // namespace

bool WindowExists(const QString& name) {
  return FindRow(name) != nullptr;
}

windows::ChildWindow* MakeWindow(const QString& name, const windows::Context& context) {
  const Row* row = FindRow(name);
  return row == nullptr ? nullptr : row->make(context);
}

}  // namespace zth::shell
