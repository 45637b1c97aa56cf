// The register table and the tree of the register map, compared with registers.txt and tree.txt.
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "tests/support/Steps.h"
#include "tests/words/Words.h"

namespace zth::testing {
namespace {

constexpr const char* kPlainBits = "7:6:5:4:3:2:1:0";

/// A row in the form of the list.
std::string Told(int row, const chip::RegisterEntry& entry) {
  const std::string flags = std::string(entry.ReadOnly ? "r" : "") + (entry.Shared ? "s" : "");
  const QString numbers = QString::asprintf("%d %02X %02X ", row, static_cast<unsigned>(entry.Address),
                                            static_cast<unsigned>(entry.Default));
  return numbers.toStdString() + (flags.empty() ? "-" : flags) + " \"" + entry.Name + "\" " + entry.BitNames;
}

TEST(Words, OfTheRegisterTable) {
  chip::InitRegisterTable();
  const std::vector<Entry> rows = ReadWords("registers.txt");
  ASSERT_EQ(rows.size(), chip::Model.RegisterTable.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Entry& row = rows[i];
    const QString bits = row.texts.value(1, kPlainBits);
    const QString expected = row.kind + ' ' + row.words.join(' ') + " \"" + row.Text() + "\" " + bits;
    EXPECT_EQ(Told(static_cast<int>(i), chip::Model.RegisterTable[i]), expected.toStdString())
        << row.where.toStdString();
    EXPECT_EQ(chip::Model.RegisterTable[i].Caption, row.Text().toStdString());
    EXPECT_EQ(chip::RowOfName(row.Text().toStdString()), static_cast<int>(i)) << "each name is one row's";
    const auto first = std::ranges::find(rows, row.Word(0), [](const Entry& other) { return other.Word(0); });
    EXPECT_EQ(chip::RowOfAddress(row.Word(0).toInt(nullptr, 16)), first - rows.begin());
  }
  EXPECT_EQ(chip::RowOfName("Remote 1 low limit"), -1);
  for (const int address : {-1, 0x04, 0x15, 0x43, 0x87, 0x97, 0xA0, 0xC2, 0xC7, 0x145}) {
    EXPECT_EQ(chip::RowOfAddress(address), -1) << address;
  }
}

TEST(Words, OfTheRegisterTree) {
  std::vector<QStringList> expected;  // the path of each node, by text
  QStringList keys;
  for (const Entry& entry : ReadWords("tree.txt")) {
    const bool root = entry.kind == "root";
    const QString parent = root ? QString() : expected.empty() ? "?" : expected.back().at(0);
    expected.push_back(root ? QStringList{entry.Text()} : QStringList{parent, entry.Text()});
    keys << (entry.texts.size() > 1 ? entry.texts.at(1) : entry.Text());
    for (const QString& name : entry.items) {
      expected.push_back({parent, entry.Text(), name});
      keys << name;
    }
  }
  WindowDesk desk("frmRegMap");
  std::size_t node = 0;
  for (QTreeWidgetItemIterator at(&Desk::Get<QTreeWidget>(*desk.window, "TreeView1")); *at != nullptr; ++at, ++node) {
    QStringList path;
    for (const QTreeWidgetItem* up = *at; up != nullptr; up = up->parent()) path.prepend(up->text(0));
    ASSERT_LT(node, expected.size()) << path.join('\\').toStdString();
    EXPECT_EQ(path.join('\\').toStdString(), expected[node].join('\\').toStdString());
    EXPECT_EQ((*at)->data(0, Qt::UserRole).toString().toStdString(),
              keys.at(static_cast<qsizetype>(node)).toStdString());
    EXPECT_EQ((*at)->isExpanded(), node == 0) << "only the first root is open";
  }
  EXPECT_EQ(node, expected.size());
}

}  // namespace
}  // namespace zth::testing
