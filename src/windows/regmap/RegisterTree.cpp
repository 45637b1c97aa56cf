#include "windows/regmap/RegisterTree.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QHash>
#include <QPalette>
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "chip/RegisterGroups.h"
#include "widgets/Colours.h"
#include "windows/regmap/RegisterTexts.h"

namespace zth::windows {
namespace {

// The only group whose key differs from its text: the key has one blank.
constexpr const char* kGpioValues = "GPIO  Values";
constexpr const char* kGpioValuesKey = "GPIO Values";

struct Nodes {
  QTreeWidget& tree;
  QHash<QString, QTreeWidgetItem*> byKey;

  /// Adds a node as the last child of the node with the key `parent`, or as a root if that is empty.
  void Add(const QString& parent, const QString& key, const QString& text) {
    auto* node = new QTreeWidgetItem(QStringList{text});
    node->setData(0, kKeyRole, key);
    if (parent.isEmpty()) {
      tree.addTopLevelItem(node);
    } else {
      byKey.value(parent)->addChild(node);
    }
    byKey.insert(key, node);
  }
};

QString WordsOf(const chip::RegisterGroup& group) {
  return QString::fromStdString(chip::TextOf(group));
}

bool Filter(QTreeWidgetItem& node, const QString& text) {
  bool any = false;
  const int row = node.childCount() == 0 ? chip::RowOfName(node.text(0).toStdString()) : -1;
  if (row >= 0) any = FitsSearch(chip::Model.RegisterTable.at(static_cast<std::size_t>(row)), text);
  for (int i = 0; i < node.childCount(); ++i) any = Filter(*node.child(i), text) || any;
  node.setHidden(!any);
  if (any && !text.isEmpty()) node.setExpanded(true);
  return any;
}

int LevelOf(const QTreeWidgetItem& node) {
  return node.parent() == nullptr ? 0 : LevelOf(*node.parent()) + 1;
}

}  // namespace

void BuildRegisterTree(QTreeWidget& tree) {
  tree.clear();
  Nodes nodes{tree, {}};
  for (const chip::RegisterGroup& group : chip::kRegisterGroups) {
    if (!nodes.byKey.contains(group.root)) nodes.Add({}, group.root, group.root);
    const QString key = group.name == QLatin1String(kGpioValues) ? kGpioValuesKey : group.name;
    nodes.Add(group.root, key, group.name);
    for (const char* name : group.registers) nodes.Add(key, name, name);
  }
  ColourRegisterTree(tree, tree.palette());
}

void ColourRegisterTree(QTreeWidget& tree, const QPalette& palette) {
  // Dark green, dark red and dark blue; lighter shades of the same hues on a dark background.
  static constexpr std::array kOnLight{0x008000, 0xC00000, 0x0000C0};
  static constexpr std::array kOnDark{0x7FD68A, 0xFF9C94, 0xA3BFFF};
  const bool dark = widgets::IsDark(palette, QPalette::Base);
  for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) {
    const auto level = static_cast<std::size_t>(LevelOf(**at));
    (*at)->setForeground(0, QColor::fromRgb(static_cast<QRgb>((dark ? kOnDark : kOnLight).at(level))));
  }
}

QStringList RegisterGroups() {
  QStringList texts;
  for (const chip::RegisterGroup& group : chip::kRegisterGroups) texts << WordsOf(group);
  return texts;
}

QString GroupOf(const std::string& name) {
  const auto group = std::ranges::find_if(chip::kRegisterGroups, [&name](const chip::RegisterGroup& each) {
    return std::ranges::count(each.registers, name) != 0;
  });
  return group == chip::kRegisterGroups.end() ? QString() : WordsOf(*group);
}

bool FilterRegisterTree(QTreeWidget& tree, const QString& text) {
  bool any = false;
  for (int i = 0; i < tree.topLevelItemCount(); ++i) any = Filter(*tree.topLevelItem(i), text) || any;
  return any;
}

QTreeWidgetItem* FirstRegister(QTreeWidget& tree) {
  for (QTreeWidgetItemIterator at(&tree, QTreeWidgetItemIterator::NoChildren); *at != nullptr; ++at) {
    if (!(*at)->isHidden()) return *at;
  }
  return nullptr;
}

std::vector<std::int32_t> AddressesBesideTree(const QString& text) {
  std::vector<std::int32_t> addresses;
  for (const chip::RegisterEntry& entry : chip::Model.RegisterTable) {
    if (FitsSearch(entry, text) && GroupOf(entry.Name).isEmpty()) addresses.push_back(entry.Address);
  }
  const int own = AddressOf(text.trimmed());
  if (own >= 0 && own <= 0xFF && chip::RowOfAddress(own) < 0) addresses.push_back(own);
  return addresses;
}

QString FullPath(const QTreeWidgetItem& node) {
  return node.parent() == nullptr ? node.text(0) : FullPath(*node.parent()) + '\\' + node.text(0);
}

}  // namespace zth::windows
