// What assistive technology and the keyboard find on every page: names, roles, states, the order of Tab, mnemonics.
#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTest>

#include "tests/accessibility/AccessGround.h"
#include "tests/support/Seen.h"

namespace zth::testing {
namespace {

struct Node {
  QAccessibleInterface* access;
  QString group;  ///< names of the groups that contain it
};

void Collect(const QAccessibleInterface& within, const QString& group, std::vector<Node>& nodes) {
  for (int i = 0; i < within.childCount(); ++i) {
    QAccessibleInterface* at = within.child(i);
    if (at == nullptr || !at->isValid() || at->state().invisible) continue;
    if (at->object() != nullptr && at->object()->inherits("QMdiArea")) continue;
    nodes.push_back({at, group});
    Collect(*at, group + '/' + at->text(QAccessible::Name), nodes);
  }
}

/// Everything visible on a page.
std::vector<Node> Tree(QWidget& root) {
  std::vector<Node> nodes;
  Collect(*QAccessible::queryAccessibleInterface(&root), {}, nodes);
  return nodes;
}

bool Operable(QAccessible::Role role) {
  static const std::set<QAccessible::Role> kRoles{
      QAccessible::Button,       QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::ComboBox,
      QAccessible::EditableText, QAccessible::Slider,   QAccessible::SpinBox,     QAccessible::Tree,
      QAccessible::PageTab,      QAccessible::Link,     QAccessible::Chart,       QAccessible::MenuItem,
      QAccessible::ButtonMenu};
  return kRoles.contains(role);
}

/// Shown only, never operated.
bool Telling(QAccessible::Role role) {
  return role == QAccessible::Indicator || role == QAccessible::ProgressBar || role == QAccessible::Dial;
}

/// On some desktops the name of a list is its present text: there its label or its description says what it is for.
QString NameOf(const Node& node) {
  if (node.access->role() != QAccessible::ComboBox) return node.access->text(QAccessible::Name);
  for (const auto& [label, relation] : node.access->relations(QAccessible::Label)) {
    if (label->role() == QAccessible::StaticText) return label->text(QAccessible::Name);
  }
  return qobject_cast<QWidget*>(node.access->object())->accessibleDescription();
}

std::string Words(const Node& node) {
  auto* widget = qobject_cast<QWidget*>(node.access->object());
  return (widget != nullptr ? Told(*widget) : "part") + " \"" + NameOf(node).toStdString() + "\" role " +
         std::to_string(node.access->role());
}

class AccessTree : public Access {};

TEST_P(AccessTree, EachControlHasAUniqueNameARoleAndItsStates) {
  static const QRegularExpression kProgramNames("^(cmb|chk|txt|lbl|cmd|opt|sld|gge|tgl|stp)[A-Z]|&\\w|^\\W*$");
  int controls = 0;
  EachPage([&](QWidget& root, const std::string& page) {
    SCOPED_TRACE(page);
    std::map<std::pair<QString, int>, std::string> taken;
    for (const Node& node : Tree(root)) {
      const auto* widget = qobject_cast<QWidget*>(node.access->object());
      const QAccessible::State state = node.access->state();
      const QString name = NameOf(node);
      if (!Operable(node.access->role()) && !Telling(node.access->role())) {
        EXPECT_TRUE(widget == nullptr || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy() != nullptr ||
                    node.access->role() == QAccessible::PageTabList)
            << Words(node) << ": takes the focus in a role that tells nothing";
        continue;
      }
      ++controls;
      EXPECT_FALSE(kProgramNames.match(name).hasMatch()) << Words(node);
      const auto [other, added] = taken.try_emplace({node.group + '/' + name, node.access->role()}, Words(node));
      EXPECT_TRUE(added) << Words(node) << " in " << node.group.toStdString() << " has the name of " << other->second;
      if (widget == nullptr) continue;
      EXPECT_NE(name, widget->objectName());
      EXPECT_EQ(state.disabled, !widget->isEnabled()) << Words(node);
      const auto* button = qobject_cast<const QAbstractButton*>(widget);
      EXPECT_TRUE(button == nullptr || state.checked == button->isChecked()) << Words(node);
    }
  });
  EXPECT_GE(controls, 2);
}

/// For two controls, their branches below the common parent.
std::pair<QWidget*, QWidget*> Branches(QWidget* a, QWidget* b) {
  const auto branch = [](QWidget* of, const QWidget* other) {
    while (!of->parentWidget()->isAncestorOf(other)) of = of->parentWidget();
    return of;
  };
  return {branch(a, b), branch(b, a)};
}

/// Whether `a` is read before `b`: controls side by side from the left, controls above each other from the top, the
/// window's own buttons last. Rows take precedence over columns, or columns over rows.
bool ReadsBefore(QWidget* a, QWidget* b, bool rowsFirst) {
  const auto [first, second] = Branches(a, b);
  const auto own = [](QWidget* branch) {
    return qobject_cast<QPushButton*>(branch) != nullptr &&
           qobject_cast<windows::ChildWindow*>(branch->parentWidget()) != nullptr;
  };
  if (own(first) != own(second)) return own(second);
  const QRect p = first->geometry();
  const QRect q = second->geometry();
  const bool beside =
      2 * (std::min(p.bottom(), q.bottom()) - std::max(p.top(), q.top())) > std::min(p.height(), q.height());
  const bool above = std::min(p.right(), q.right()) > std::max(p.left(), q.left());
  return (rowsFirst ? beside : !above) ? p.left() < q.left() : p.top() < q.top();
}

/// The controls that a key visits until it returns to the first one.
std::vector<QWidget*> Visited(QWidget& from, Qt::Key key) {
  std::vector<QWidget*> visited{&from};
  from.setFocus(key == Qt::Key_Tab ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  for (int steps = 0; steps < 300; ++steps) {
    if (QApplication::focusWidget() == nullptr) break;
    QTest::keyClick(QApplication::focusWidget(), key);
    QWidget* now = QApplication::focusWidget();
    if (now == &from) return visited;
    if (now != visited.back()) visited.push_back(now);  // a gauge keeps the focus from slider to slider
  }
  ADD_FAILURE() << "the focus is trapped at " << Told(*visited.back());
  return visited;
}

/// A control that can be operated but is not a Tab stop is a choice, reached by the arrow keys, or part of a stop.
void ExpectReached(const Node& node, const std::vector<QWidget*>& visited) {
  auto* widget = qobject_cast<QWidget*>(node.access->object());
  const QAccessible::Role role = node.access->role();
  if (widget == nullptr || !Operable(role) || !widget->isEnabled() || role == QAccessible::MenuItem) return;
  const bool part = role == QAccessible::SpinBox || node.access->parent()->role() == QAccessible::SpinBox;
  if (role != QAccessible::RadioButton) {
    EXPECT_TRUE(part || std::ranges::count(visited, widget) == 1) << Words(node) << " is out of Tab's reach";
    return;
  }
  widget->setFocus();
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up}) {
    if (QApplication::focusWidget() == widget) QTest::keyClick(widget, key);
  }
  EXPECT_NE(QApplication::focusWidget(), widget) << Words(node) << " has no way on to the other options";
}

TEST_P(AccessTree, TabVisitsEachControlInReadingOrderAndBack) {
  EachPage([&](QWidget& root, const std::string& page) {
    SCOPED_TRACE(page);
    std::vector<QWidget*> expected;
    for (QWidget* widget : Shown(root)) {
      const bool stop = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
      // One option of a group is a stop, the arrow keys reach the others.
      const bool option = qobject_cast<QRadioButton*>(widget) != nullptr && !expected.empty() &&
                          qobject_cast<QRadioButton*>(expected.back()) != nullptr;
      if (stop && !option && widget->isEnabled()) expected.push_back(widget);
    }
    ASSERT_FALSE(expected.empty());
    const auto first = std::find_if(expected.begin(), expected.end(), [&](QWidget* widget) {
      return std::ranges::none_of(expected,
                                  [&](QWidget* other) { return other != widget && ReadsBefore(other, widget, true); });
    });
    ASSERT_NE(first, expected.end()) << "no control reads first";
    std::vector<QWidget*> visited = Visited(**first, Qt::Key_Tab);
    for (QWidget* widget : expected) {
      EXPECT_EQ(std::ranges::count(visited, widget), 1) << Told(*widget) << " is not visited once";
    }
    EXPECT_EQ(visited.size(), expected.size());
    // Each frame is read entirely by rows or entirely by columns.
    std::map<QWidget*, std::pair<std::string, std::string>> wrong;
    for (std::size_t i = 1; i < visited.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        auto& [rows, columns] = wrong[Branches(visited[j], visited[i]).first->parentWidget()];
        const std::string pair = Told(*visited[j]) + " before " + Told(*visited[i]) + "; ";
        if (!ReadsBefore(visited[j], visited[i], true)) rows += pair;
        if (!ReadsBefore(visited[j], visited[i], false)) columns += pair;
      }
    }
    for (const auto& [frame, pairs] : wrong) EXPECT_TRUE(pairs.first.empty() || pairs.second.empty()) << pairs.first;
    std::vector<QWidget*> back = Visited(**first, Qt::Key_Backtab);
    std::reverse(back.begin() + 1, back.end());
    EXPECT_EQ(back, visited) << "the way back is another";
    for (const Node& node : Tree(root)) ExpectReached(node, visited);
  });
}

using Mnemonics = std::map<QString, std::string>;

void Take(const QString& text, const std::string& where, Mnemonics& keys) {
  const QString key = QKeySequence::mnemonic(text).toString();
  if (key.isEmpty()) return;
  const auto [other, added] = keys.try_emplace(key, where);
  EXPECT_TRUE(added) << key.toStdString() << " is that of " << where << " and of " << other->second;
}

void TakeAll(const std::vector<QWidget*>& widgets, Mnemonics& keys) {
  for (QWidget* widget : widgets) {
    const std::string where = Told(*widget);
    if (const auto* button = qobject_cast<QAbstractButton*>(widget)) Take(button->text(), where, keys);
    if (const auto* group = qobject_cast<QGroupBox*>(widget)) Take(group->title(), where, keys);
    if (const auto* label = qobject_cast<QLabel*>(widget)) {
      const bool leads = label->buddy() != nullptr && label->buddy()->focusPolicy() != Qt::NoFocus;
      const bool plain = label->textFormat() == Qt::PlainText || !label->text().contains('&');
      EXPECT_TRUE(leads || plain) << where << " leads nowhere";
      if (leads) Take(label->text(), where, keys);
    }
    const auto* bar = qobject_cast<QTabBar*>(widget);
    for (int i = 0; bar != nullptr && i < bar->count(); ++i) Take(bar->tabText(i), "tab " + std::to_string(i), keys);
    const bool menu = widget->inherits("QMenu") || widget->inherits("QMenuBar");
    for (const QAction* entry : menu ? widget->actions() : QList<QAction*>()) {
      const std::string text = entry->text().toStdString();
      EXPECT_TRUE(entry->isSeparator() || !QKeySequence::mnemonic(entry->text()).isEmpty()) << text;
      Take(entry->text(), text, keys);
    }
  }
}

TEST_P(AccessTree, MnemonicsDoNotClashOnAPageOrWithTheMainWindow) {
  for (QAction* entry : desk.Main().menuBar()->actions()) {
    Mnemonics keys;
    if (entry->menu() != nullptr && entry->menu()->objectName() != "mnuWindow") TakeAll({entry->menu()}, keys);
  }
  Mnemonics common;
  if (GetParam() != "frmMain") TakeAll(Shown(desk.Main()), common);
  EachPage([&](QWidget& root, const std::string& page) {
    SCOPED_TRACE(page);
    Mnemonics keys = common;
    TakeAll(Shown(root), keys);
  });
}

INSTANTIATE_TEST_SUITE_P(Windows, AccessTree, ::testing::ValuesIn(AllWindows()), WindowOf);

}  // namespace
}  // namespace zth::testing
