#pragma once

#include <QTest>
#include <QTreeWidget>

#include "chip/Measurements.h"
#include "tests/support/Steps.h"

namespace zth::testing {

/// The register map, with the measurement cycle standing still.
class RegisterMap : public ::testing::Test {
 protected:
  RegisterMap() { chip::PollEnabled = false; }

  windows::ChildWindow& window() const { return *desk.window; }
  QTreeWidget& Tree() const { return Desk::Get<QTreeWidget>(window(), "TreeView1"); }
  QTreeWidgetItem& Node(const QString& text) const {
    return *Tree().findItems(text, Qt::MatchExactly | Qt::MatchRecursive).at(0);
  }
  /// The transfers of a click on a node, and on a bit.
  Traffic Click(const QString& text) {
    QTreeWidgetItem& node = Node(text);
    Tree().scrollToItem(&node);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(&node).center());
    return desk.board.TakeTraffic();
  }
  Traffic ClickBit(int bit) {
    desk.board.TakeTraffic();
    QTest::mouseClick(&Desk::Get<QWidget>(window(), QString("lblBit(%1)").arg(bit)), Qt::LeftButton);
    return desk.board.TakeTraffic();
  }
  QString Digits() const {
    QString digits;
    for (int bit = 7; bit >= 0; --bit) digits += Desk::Text(window(), QString("lblBit(%1)").arg(bit));
    return digits;
  }

  WindowDesk desk{"frmRegMap", Desk::Buses::Usb};
};

}  // namespace zth::testing
