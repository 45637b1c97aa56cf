#pragma once

#include <QIcon>
#include <QString>

namespace zth::shell {

/// A tool bar icon by its key ("Save"), drawn at any requested size in the palette's current text colour.
QIcon ToolIcon(const QString& key);

/// The program's own icon.
QIcon ProgramIcon();

}  // namespace zth::shell
