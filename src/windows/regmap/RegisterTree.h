#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <QString>
#include <QStringList>
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

/// The groups in the tree's order, each with its root, "Fan, PWM".
QStringList RegisterGroups();
/// The group in which the register of that name stands; empty for one that the tree does not hold.
QString GroupOf(const std::string& name);

/// Shows the registers that fit the search and what leads to them. True when there is one.
bool FilterRegisterTree(QTreeWidget& tree, const QString& text);
/// The first register that shows; null when there is none.
QTreeWidgetItem* FirstRegister(QTreeWidget& tree);
/// The addresses that fit the search and have no node: those of registers outside the tree, or the text's own when no
/// register has it.
std::vector<std::int32_t> AddressesBesideTree(const QString& text);

/// The texts from the root to the node, joined by backslashes.
QString FullPath(const QTreeWidgetItem& node);

}  // namespace zth::windows
