#pragma once

#include <QString>
#include <qnamespace.h>

class QPalette;
class QTreeWidget;
class QTreeWidgetItem;

/// The register map's tree: topics, groups and registers, three levels.
namespace zth::windows {

/// What a node's data holds beside its text.
inline constexpr int kKeyRole = Qt::UserRole;       ///< QString, unique in the tree
inline constexpr int kReadRole = Qt::UserRole + 1;  ///< int, the value last read; none before the first read

/// Fills the tree anew: 6 roots, 21 groups, 170 registers, all collapsed.
void BuildRegisterTree(QTreeWidget& tree);

/// Puts the colours of the levels in, as they can be read on the ground of `palette`: that of the window, which is the
/// first to follow a change.
void ColourRegisterTree(QTreeWidget& tree, const QPalette& palette);

/// The texts from the root to the node, joined by backslashes.
QString FullPath(const QTreeWidgetItem& node);

}  // namespace zth::windows
