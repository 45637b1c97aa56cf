#include "shell/Icons.h"

#include <QResource>

#include "widgets/PaletteIcon.h"

/// The drawings stand in a static library, from which a program takes only what it names. Q_INIT_RESOURCE wants to
/// stand outside every namespace.
static void NameResources() {
  Q_INIT_RESOURCE(icons);
}

namespace zth::shell {
namespace {

QIcon FromResource(const QString& name) {
  NameResources();
  const QResource drawing(":/shell/icons/" + name + ".svg");
  return drawing.isValid() ? widgets::PaletteIcon(drawing.uncompressedData()) : QIcon();
}

}  // namespace

QIcon ToolIcon(const QString& key) {
  return FromResource(key);
}

QIcon ProgramIcon() {
  return FromResource("Program");
}

}  // namespace zth::shell
