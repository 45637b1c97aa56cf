#include "shell/Icons.h"

#include "widgets/PaletteIcon.h"

/// The icons are in a static library, and a program links only what it refers to. Q_INIT_RESOURCE must be outside any
/// namespace.
static void NameResources() {
  Q_INIT_RESOURCE(icons);
}

namespace zth::shell {
namespace {

QIcon FromResource(const QString& name) {
  NameResources();
  return widgets::PaletteIcon(":/shell/icons/" + name);
}

}  // namespace

QIcon ToolIcon(const QString& key) {
  return FromResource(key);
}

QIcon ProgramIcon() {
  return FromResource("Program");
}

}  // namespace zth::shell
