#include "windows/regmap/RegisterTree.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QHash>
#include <QPalette>
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "widgets/Colours.h"
#include "windows/regmap/RegisterTexts.h"

namespace zth::windows {
namespace {

struct RegisterGroup {
  const char* root;
  const char* name;
  std::vector<const char*> registers;  ///< their names in RegisterTable
};

// By topic, in display order, which differs from RegisterTable's. If an address has two names, both are here. Only two
// of the status registers' Host copies have a node.
// clang-format off
const std::array<RegisterGroup, 21> kRegisterGroups{{
    {"General",
     "Configuration",
     {"Configuration 0", "Configuration 1", "Configuration 2", "Configuration 3", "Tach Configuration",
      "THERM Configuration", "Conf_Therm1", "Conf_Therm2", "EDO Enable"}},
    {"General",
     "Pin Configuration",
     {"Pin Config 1", "Pin Config 2", "Pin Config 3", "Pin Config 4", "Easy Config"}},
    {"General",
     "Status",
     {"Thermal Status 1,BMC", "Thermal Status 2,BMC", "Thermal Status 3,Host", "Voltage Status 1,BMC",
      "Voltage Status 2,BMC", "Fan Status,BMC", "Digital Status,BMC", "Thermal Mask 1", "Thermal Mask 2",
      "Voltage Mask 1", "Voltage Mask 2", "Fan Mask", "Digital Mask", "GPIO Mask", "EDO Mask 1", "EDO Mask 2"}},
    {"General",
     "ID/Revision",
     {"Device ID", "Company ID", "Revision Number"}},
    {"Temperature",
     "Values",
     {"Local Temp LSBs", "Local Temp MSB", "Remote 1 Temp LSBs", "Remote 1 Temp MSB", "Remote 2 Temp LSBs",
      "Remote 2 Temp MSB", "Remote 3 Temp LSBs", "Remote 3 Temp MSB"}},
    {"Temperature",
     "Limits",
     {"Local Low Limit", "Remote 1 Low Limit", "Remote 2 Low Limit", "Remote 3 Low Limit", "Local High Limit",
      "Remote 1 High Limit", "Remote 2 High Limit", "Remote 3 High Limit"}},
    {"Temperature",
     "Offsets",
     {"Local Offset", "Remote 1 Offset", "Remote 2 Offset", "Remote 3 Offset"}},
    {"Fan",
     "Fan Control",
     {"Tach Enable", "Enhance Acoustics 1", "Enhance Acoustics 2", "Free Wheel Test", "Fans Present",
      "Free Wheel Test En"}},
    {"Fan",
     "PWM",
     {"PWM 1 Value", "PWM 2 Value", "PWM 3 Value", "PWM 4 Value", "PWM1 Config", "PWM2 Config", "PWM3 Config",
      "PWM4 Config", "PWM 1&2 Freq", "PWM 3&4 Freq", "PWM1 Min", "PWM2 Min", "PWM3 Min", "PWM4 Min",
      "PWM 1-4 Max"}},
    {"Fan",
     "Tmin",
     {"Tmin_Cal1", "Tmin_Cal2", "Local Tmin", "Remote 1 Tmin", "Remote 2 Tmin", "Remote 3 Tmin"}},
    {"Fan",
     "Trange/Hys",
     {"Local Trange/Hys", "Remote 1 Trans/Hys", "Remote 2 Trans/Hys", "Remote 3 Trans/Hys"}},
    {"Fan",
     "Operating Point",
     {"Remote 1 Operating Point", "Remote 2 Operating Point", "Operating Point Hyst"}},
    {"Fan",
     "THERM Limits",
     {"Local THERM1 Limit", "Remote 1 THERM1 Limit", "Remote 2 THERM1 Limit", "Remote 3 THERM1 Limit",
      "Local THERM2 Limit", "Remote 1 THERM2 Limit", "Remote 2 THERM2 Limit", "Remote 3 THERM2 Limit",
      "Local/Remote 1 Hyst", "Remote 2 / Remote 3 Hyst"}},
    {"Fan",
     "Tach",
     {"Tach 1 Limit", "Tach 2 Limit", "Tach 3 Limit", "Tach 4 Limit", "Tach 5 Limit", "Tach 6 Limit",
      "Tach 7 Limit", "Tach 8 Limit", "Tach 1 LSB's", "Tach 1 MSB's", "Tach 2 LSB's", "Tach 2 MSB's",
      "Tach 3 LSB's", "Tach 3 MSB's", "Tach 4 LSB's", "Tach 4 MSB", "Tach 5 LSB", "Tach 5 MSB", "Tach 6 LSB",
      "Tach 6 MSB", "Tach 7 LSB", "Tach 7 MSB", "Tach 8 LSB", "Tach 8 MSB"}},
    {"Voltage",
     "Voltage Control",
     {"Attenuators 1 En", "Attenuators 2 En", "VID"}},
    {"Voltage",
     "Voltage Limits",
     {"+3.3V High Limit", "Pin 23 V High Limit", "Pin 24 V High Limit", "Pin 15 Low Limit", "Pin 19 Low Limit",
      "Pin 15 High Limit", "Pin 19 High Limit", "1.5V2 (ICH) High Limit", "1.5V1 (3GIO) High Limit",
      "Pin 25 V High Limit", "Pin 26 V High Limit", "+12V1 Low Limit", "+12V2 Low Limit", "+12V3 Low Limit",
      "+3.3V Low Limit", "+5V Low Limit", "Pin 23 V Low Limit", "Pin 24 V Low Limit", "Pin 25 V Low Limit",
      "Pin 26 V Low Limit", "+1.5V2 (ICH) Low Limit", "+1.5V1 (3GIO) Low Limit", "+12V1 High Limit",
      "+12V2 High Limit", "+5V High Limit", "+12V3 High Limit"}},
    {"Voltage",
     "Voltage Values",
     {"Pin 23 Voltage", "Pin 24 Voltage", "Pin 25 Voltage", "Pin 26 Voltage", "+1.5V1 (3GIO) Voltage",
      "+1.5V2 (ICH) Voltage", "+3.3V Voltage", "Pin 15 Voltage", "Pin 19 Voltage", "+12V1 Voltage",
      "+12V2 Voltage", "+5V Voltage", "+12V3 Voltage"}},
    {"GPIO",
     "Behaviour",
     {"GPIO1_Bhvr", "GPIO2_Bhvr"}},
    {"GPIO",
     "GPIO  Values",
     {"GPIO Status,Host"}},
    {"THERM Timer",
     "Timer Limits",
     {"THERM 1 Timer Limit", "THERM 2 Timer Limit"}},
    {"THERM Timer",
     "Timer Values",
     {"THERM 1% Ontime", "THERM 2% Ontime"}},
}};
// clang-format on

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

QString TextOf(const RegisterGroup& group) {
  return QString("%1, %2").arg(group.root, QString(group.name).simplified());
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
  for (const RegisterGroup& group : kRegisterGroups) {
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
  for (const RegisterGroup& group : kRegisterGroups) texts << TextOf(group);
  return texts;
}

QString GroupOf(const std::string& name) {
  const auto group = std::ranges::find_if(
      kRegisterGroups, [&name](const RegisterGroup& each) { return std::ranges::count(each.registers, name) != 0; });
  return group == kRegisterGroups.end() ? QString() : TextOf(*group);
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
