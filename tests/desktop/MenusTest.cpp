#include <algorithm>
#include <set>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTreeWidget>

#include "tests/desktop/RealDesktop.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Seen.h"
#include "widgets/Strip.h"

namespace zth::testing {
namespace {

/// The enabled entries of a menu and its submenus, each as the path to it.
std::vector<std::vector<QAction*>> Entries(const QMenu& menu) {
  std::vector<std::vector<QAction*>> entries;
  for (QAction* action : menu.actions()) {
    if (!action->isEnabled() || action->isSeparator() || !action->isVisible()) continue;
    if (action->menu() == nullptr) {
      entries.push_back({action});
      continue;
    }
    for (std::vector<QAction*> way : Entries(*action->menu())) {
      way.insert(way.begin(), action);
      entries.push_back(way);
    }
  }
  return entries;
}

/// Goes to the n-th entry by keys and selects it. Returns its name, or nothing if the menu has fewer entries.
std::string TakeEntry(QMenu& menu, std::size_t n) {
  const auto entries = Entries(menu);
  if (n >= entries.size()) return menu.close(), std::string();
  QMenu* at = &menu;
  for (QAction* action : entries[n]) {
    at->setActiveAction(action);
    if (action->menu() != nullptr) {
      QTest::keyClick(at, Qt::Key_Right);
      at = action->menu();
    }
  }
  const std::string name = entries[n].back()->text().toStdString();
  QTest::keyClick(at, Qt::Key_Return);
  return name;
}

QMenu* OpenContextMenu(QWidget& control) {
  QContextMenuEvent event(QContextMenuEvent::Keyboard, control.rect().center(),
                          control.mapToGlobal(control.rect().center()));
  QApplication::sendEvent(&control, &event);
  return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

class Menus : public ::testing::TestWithParam<std::string> {};

/// Selects each entry of a control's context menu, if it has one.
void TakeEach(RealDesktop& real, const QPointer<QWidget>& control, const std::string& page) {
  for (std::size_t n = 0; control != nullptr; ++n) {
    std::string name;
    real.Do([&] {
      if (QMenu* menu = OpenContextMenu(*control)) name = TakeEntry(*menu, n);
    });
    if (name.empty()) return;
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << page << ": " << name;
  }
}

TEST_P(Menus, EveryEntryOfEveryContextMenuWorks) {
  RealDesktop real;
  real.Start();
  auto& window = real.desk.Open(GetParam().c_str());
  const ModalHand cancel([](QWidget& modal) { dynamic_cast<QDialog&>(modal).reject(); });
  ForEachPage(window, [&](const std::string& page) {
    for (const QPointer<QWidget> control : Shown(window)) {
      if (control == nullptr || !control->isEnabled() || control->property("menusDone").toBool()) continue;
      control->setProperty("menusDone", true);
      TakeEach(real, control, page);
    }
  });
  EXPECT_EQ(real.desk.Main().FindWindow(GetParam().c_str()), &window);
  real.ExpectAlive();
}

TEST_P(Menus, AWindowMayCloseUnderItsContextMenus) {
  RealDesktop real;
  real.Start();
  std::set<std::string> kinds;
  for (;;) {
    const QPointer window = &real.desk.Open(GetParam().c_str());
    const std::vector<QWidget*> controls = Shown(*window);
    const auto control = std::ranges::find_if(
        controls, [&](const QWidget* each) { return kinds.insert(each->metaObject()->className()).second; });
    if (control == controls.end()) break;
    real.Do([&] {
      QTimer::singleShot(0, window, [&] { RealDesktop::CloseFrame(*window); });
      OpenContextMenu(**control);
    });
    EXPECT_EQ(window, nullptr);
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
  }
  EXPECT_GT(kinds.size(), 1U);
  real.ExpectAlive();
}

INSTANTIATE_TEST_SUITE_P(Windows, Menus, ::testing::ValuesIn(EveryWindow()), WindowOf);

TEST(Menus, EveryEntryOfTheMenuBarWorks) {
  RealDesktop real;
  real.Start();
  for (QAction* top : real.desk.Main().menuBar()->actions()) {
    if (top->menu() == nullptr) continue;
    for (std::size_t n = 0;; ++n) {
      std::string name;
      real.Do([&] {
        top->menu()->popup({});
        name = TakeEntry(*top->menu(), n);
      });
      if (name.empty() || name == "E&xit") break;  // the last entry of its menu
      EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << name;
      if (real.desk.process.ends.empty()) real.ExpectAlive();
    }
  }
  EXPECT_EQ(real.desk.process.ends, std::vector<int>{0});
}

TEST(Clipboard, TakesPicturesDataAndRows) {
  RealDesktop real;
  real.Start();
  auto& chart = Desk::Get<widgets::Strip>(real.desk.Open("frmGraph"), "stpGraph(3)");
  real.desk.Advance(500);
  QClipboard& clipboard = *QApplication::clipboard();
  real.Do([&] { TakeEntry(*OpenContextMenu(chart), 0); });
  EXPECT_EQ(clipboard.image(), chart.Picture());
  real.Do([&] { TakeEntry(*OpenContextMenu(chart), 3); });
  EXPECT_EQ(clipboard.text(), chart.VisibleData());
  auto& tree = Desk::Get<QTreeWidget>(real.desk.Open("frmRegMap"), "TreeView1");
  tree.setCurrentItem(tree.topLevelItem(0));
  real.Do([&] { TakeEntry(*OpenContextMenu(*tree.viewport()), 0); });
  EXPECT_TRUE(clipboard.text().contains('\t')) << clipboard.text().toStdString();
}

}  // namespace
}  // namespace zth::testing
