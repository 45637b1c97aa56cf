#include <set>

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "tests/support/Desk.h"
#include "widgets/GSlider.h"
#include "widgets/Strip.h"

namespace zth::testing {
namespace {

bool IsControl(const QWidget& widget) {
  return qobject_cast<const QLineEdit*>(&widget) != nullptr || qobject_cast<const QComboBox*>(&widget) != nullptr ||
         qobject_cast<const widgets::GSlider*>(&widget) != nullptr ||
         qobject_cast<const widgets::Strip*>(&widget) != nullptr ||
         (qobject_cast<const QAbstractButton*>(&widget) != nullptr && !widget.objectName().isEmpty());
}

QString MnemonicOf(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    return label->buddy() == nullptr ? QString() : QKeySequence::mnemonic(label->text()).toString();
  }
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  return button == nullptr ? QString() : QKeySequence::mnemonic(button->text()).toString();
}

class ByKeyboard : public ::testing::TestWithParam<const char*> {};

TEST_P(ByKeyboard, EveryControlIsReachedNamedAndApart) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open(GetParam());
  desk.Main().show();
  Desk::Settle();

  std::set<QWidget*> reached;
  for (QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain()) {
    if ((next->focusPolicy() & Qt::TabFocus) != 0) reached.insert(next);
  }
  // The main window's menus answer to these.
  std::set<QString> taken{"Alt+F", "Alt+V", "Alt+C", "Alt+O", "Alt+H", "Alt+W", "Alt+A"};
  int controls = 0;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&window)) continue;
    const QString name = widget->objectName();
    if (const QString key = MnemonicOf(*widget); !key.isEmpty()) {
      EXPECT_TRUE(taken.insert(key).second) << key.toStdString() << " of " << name.toStdString() << " is taken";
    }
    if (!IsControl(*widget)) continue;
    ++controls;
    EXPECT_TRUE(reached.contains(widget)) << name.toStdString();
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(access, nullptr) << name.toStdString();
    EXPECT_FALSE(access->text(QAccessible::Name).isEmpty()) << name.toStdString() << " has no name";
  }
  EXPECT_GE(controls, 3);

  QTest::keyClick(&window, Qt::Key_Escape);
  Desk::Settle();
  EXPECT_EQ(desk.Main().FindWindow(GetParam()), nullptr) << "Escape closes";
}

INSTANTIATE_TEST_SUITE_P(Windows, ByKeyboard,
                         ::testing::Values("frmAutoGraph", "frmDynamicTmin", "frmHeaters", "frmManualControl",
                                           "frmSwitches"),
                         [](const auto& row) { return std::string(row.param); });

}  // namespace
}  // namespace zth::testing
