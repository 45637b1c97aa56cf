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

/// Data roles of a node besides its text.
inline constexpr int kKeyRole = Qt::UserRole;       ///< QString, unique in the tree
inline constexpr int kReadRole = Qt::UserRole + 1;  ///< int, the last value read; none before the first read

void BuildRegisterTree(QTreeWidget& tree);

/// Sets colours for the levels that are readable on the background of `palette`, the window's palette, which is the
/// first to change.
void ColourRegisterTree(QTreeWidget& tree, const QPalette& palette);

/// The groups in the tree's order, each with its root: "Fan, PWM".
QStringList RegisterGroups();
/// The group of the register with that name; empty for one that is not in the tree.
QString GroupOf(const std::string& name);

/// Shows only the registers that match the search, with their parents. True when there is one.
bool FilterRegisterTree(QTreeWidget& tree, const QString& text);
/// The first visible register; null when there is none.
QTreeWidgetItem* FirstRegister(QTreeWidget& tree);
/// The addresses that match the search and have no node: those of registers outside the tree, or the address in the
/// text when no register has it.
std::vector<std::int32_t> AddressesBesideTree(const QString& text);

/// The texts from the root to the node, separated by backslashes.
QString FullPath(const QTreeWidgetItem& node);

}  // namespace zth::windows
