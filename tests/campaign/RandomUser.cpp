#include "tests/campaign/RandomUser.h"

#include <array>
#include <functional>
#include <set>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>
#include <QWheelEvent>

#include "shell/Commands.h"
#include "tests/campaign/Operate.h"
#include "tests/support/Seen.h"

namespace zth::testing {
namespace {

constexpr std::array kKeys{Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Left,     Qt::Key_Right,  Qt::Key_Up,
                           Qt::Key_Down,   Qt::Key_PageUp,  Qt::Key_PageDown, Qt::Key_Home,   Qt::Key_End,
                           Qt::Key_Return, Qt::Key_Escape,  Qt::Key_Space,    Qt::Key_Delete, Qt::Key_Backspace,
                           Qt::Key_5,      Qt::Key_A,       Qt::Key_F4};

const std::set<QString> kBoxes{"At least one item must be selected for logging", "Option value must be in range 1-5"};

}  // namespace

RandomUser::RandomUser(unsigned seed) : random_(seed) {
  // A walk runs no event loop. Some of Qt's menus do; this timer fires there alone.
  QObject::connect(&innerLoop_, &QTimer::timeout, [] {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  });
  innerLoop_.start(1);
  Start();
}

void RandomUser::Start() {
  const auto settings = sim == nullptr ? std::map<QString, QString>() : TheDesk().settings.values;
  sim.reset();
  sim = std::make_unique<SimulatedDesk>();
  Desk& desk = TheDesk();
  if (!settings.empty()) desk.settings.values = settings;
  desk.process.folder = folder_.path();
  desk.Start();
  desk.prompts.whileShown = [this] { Answer(); };
  // Windows that paint let timers through.
  desk.events.onPaint = [this] { TheDesk().clock.Advance(Below(120)); };
  QApplication::setActiveWindow(&Main());
  left_ = switched = false;
  ++restarts;
}

void RandomUser::Answer() {
  using platform::BoxAnswer;
  const platform::BoxQuestion& box = TheDesk().prompts.shown.back();
  EXPECT_TRUE(kBoxes.contains(box.text)) << box.text.toStdString();
  Tell("  box: " + box.text.toStdString());
  ++boxes;
  TheDesk().clock.Advance(Below(2000));
  const bool yesNo = box.buttons == platform::BoxButtons::YesNo;
  TheDesk().prompts.script = {!yesNo ? BoxAnswer::Ok : Below(2) == 0 ? BoxAnswer::Yes : BoxAnswer::No};
}

/// Mostly in the window that is in front; of its controls rather those that hold something.
void RandomUser::Choose() {
  window_ = nullptr;
  control_ = nullptr;
  const auto open = Main().findChildren<windows::ChildWindow*>();
  if (open.isEmpty()) return;
  const auto* front = Main().findChild<QMdiArea*>()->activeSubWindow();
  if (front != nullptr && Below(3) > 0) window_ = qobject_cast<windows::ChildWindow*>(front->widget());
  if (window_ == nullptr) window_ = OneOf(open);
  static constexpr std::array kClasses{"QWidget", "QWidget", "QWidget", "QLineEdit", "QComboBox"};
  const char* of = OneOf(kClasses);
  std::vector<QWidget*> controls = OperableControls(*window_);
  std::erase_if(controls, [&](const QWidget* control) { return !control->inherits(of); });
  if (!controls.empty()) control_ = OneOf(controls);
}

void RandomUser::Trigger(QList<QAction*> entries) {
  entries.removeIf([](const QAction* entry) { return !entry->isEnabled() || entry->isSeparator(); });
  if (entries.empty()) return;
  QAction* entry = OneOf(entries);
  Tell("  entry " + entry->text().toStdString());
  entry->trigger();
}

void RandomUser::Open() {
  const shell::MenuEntry& entry = OneOf(shell::kMenuEntries);
  if (QString(entry.window).isEmpty()) return;
  Tell(std::string("  ") + entry.name);
  if (Below(2) == 0) return Main().findChild<QAction*>(entry.name)->trigger();
  QTest::keySequence(&Main(), QKeySequence(entry.shortcut));
}

void RandomUser::PressKey() {
  if (QWidget* focus = QApplication::focusWidget(); focus != nullptr && Below(4) > 0) control_ = focus;
  const Qt::Key key = Below(5) == 0 ? static_cast<Qt::Key>(Qt::Key_A + Below(26)) : OneOf(kKeys);
  static constexpr std::array kModifiers{Qt::NoModifier,    Qt::NoModifier,  Qt::NoModifier,
                                         Qt::ShiftModifier, Qt::AltModifier, Qt::ControlModifier};
  const Qt::KeyboardModifier modifier = OneOf(kModifiers);
  if ((key == Qt::Key_Q || key == Qt::Key_F4) && modifier != Qt::NoModifier) return;  // exits have their own action
  Tell("  " + QKeySequence(key | modifier).toString().toStdString() + " in " + Told(*control_));
  for (int i = Below(8) == 0 ? 5 : 1; i > 0 && control_; --i) QTest::keyPress(control_, key, modifier);
  if (control_) QTest::keyRelease(control_, key, modifier);
}

void RandomUser::MoveMouse() {
  QPoint at = AnyPoint();
  static constexpr std::array kTurns{120, -120, 30, -15, 1200};
  if (Below(13) < 5) {
    const auto modifier = Below(3) == 0 ? Qt::ControlModifier : Qt::NoModifier;
    QWheelEvent event(at, control_->mapToGlobal(at), {}, {0, OneOf(kTurns)}, {}, modifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(control_, &event);
    return;
  }
  // Where Qt would drag text or windows in a loop of its own, nothing of ours is driven.
  if (control_->inherits("QLineEdit") || control_->inherits("QComboBox")) return;
  const auto button = Below(6) == 0 ? Qt::RightButton : Qt::LeftButton;
  const auto send = [&](QEvent::Type type, Qt::MouseButtons held) {
    if (!control_) return;
    const auto which = type == QEvent::MouseMove ? Qt::NoButton : button;
    QMouseEvent event(type, at, control_->mapToGlobal(at), which, held, Qt::NoModifier);
    QApplication::sendEvent(control_, &event);
  };
  send(QEvent::MouseButtonPress, button);
  for (int i = Below(4); i > 0; --i) {
    at += QPoint(Below(201) - 100, Below(101) - 50);
    send(QEvent::MouseMove, button);
    TheDesk().clock.Advance(Below(80));
    if (Below(40) == 0 && control_) QTest::keyClick(control_, Qt::Key_Escape);
    // A window closed by key under the mouse takes its control away at the next turn of the loop.
    if (Below(40) == 0) Desk::Settle();
  }
  send(QEvent::MouseButtonRelease, Qt::NoButton);
  if (Below(5) == 0) send(QEvent::MouseButtonDblClick, button), send(QEvent::MouseButtonRelease, Qt::NoButton);
}

void RandomUser::UseContextMenu() {
  const QPoint at = AnyPoint();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, at, control_->mapToGlobal(at));
  QApplication::sendEvent(control_, &event);
  const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  if (menu != nullptr && Below(4) > 0) Trigger(menu->findChildren<QAction*>());
}

void RandomUser::Arrange() {
  auto* menu = Main().findChild<QMenu*>("mnuWindow");
  emit menu->aboutToShow();
  static constexpr std::array kStates{&QWidget::showMinimized, &QWidget::showMaximized, &QWidget::showNormal};
  QMdiSubWindow* front = Main().findChild<QMdiArea*>()->activeSubWindow();
  if (Below(3) == 0) return Main().resize(200 + Below(1800), 150 + Below(1200));
  if (front != nullptr && Below(2) == 0) return (front->*OneOf(kStates))();
  Trigger(menu->actions());
}

void RandomUser::Exit() {
  left_ = true;
  const bool byMenu = Below(2) == 0;
  byMenu ? Main().findChild<QAction*>("mnuExit")->trigger() : static_cast<void>(Main().close());
  EXPECT_EQ(TheDesk().process.ends, std::vector<int>(byMenu ? 1 : 0));
  EXPECT_TRUE(byMenu || TheDesk().settings.values.contains("MainLeft"));
}

void RandomUser::Act() {  // NOLINT(readability-function-size): a branch a kind
  using User = RandomUser;
  enum class On { Program, Window, Control };  // what there must be to act on
  struct Kind {
    int weight;
    const char* name;
    On on;
    std::function<void(User&)> act;
  };
  static const std::vector<Kind> kKinds{
      {90, "open", On::Program, &User::Open},
      {25, "close", On::Window, [](User& user) { user.window_->Unload(); }},
      {40, "activate", On::Window,
       [](User& user) {
         auto* frame = qobject_cast<QMdiSubWindow*>(user.window_->parentWidget());
         user.Main().findChild<QMdiArea*>()->setActiveSubWindow(frame);
         user.window_->setFocus();
       }},
      {480, "operate", On::Control,
       [](User& user) {
         const auto ways = WaysToOperate(*user.control_, Extent::All);
         if (ways.empty()) return;
         const Way& way = user.OneOf(ways);
         Tell("  " + way.name);
         way.act();
       }},
      {150, "key", On::Control, &User::PressKey},
      {130, "mouse", On::Control, &User::MoveMouse},
      {25, "context menu", On::Control, &User::UseContextMenu},
      {10, "arrange", On::Program, &User::Arrange},
      {3, "device", On::Program,
       [](User& user) {
         const auto& devices = Desk::Get<QComboBox>(user.Main(), "cmbDevices");
         const int device = user.Below(devices.count());
         user.switched = user.switched || device != devices.currentIndex();
         Desk::Pick(user.Main(), "cmbDevices", device);
       }},
      {150, "wait", On::Program,
       [](User& user) { user.TheDesk().clock.Advance(user.Below(20) == 0 ? 20'000 : user.Below(600)); }},
      {5, "paint", On::Window,
       [](User& user) { EXPECT_TRUE(!user.window_->isVisible() || !user.window_->grab().isNull()); }},
      {1, "exit", On::Program, &User::Exit},
  };
  int at = 0;
  for (const Kind& kind : kKinds) at += kind.weight;
  at = Below(at);
  const Kind* kind = kKinds.data();
  while (at >= kind->weight) at -= kind++->weight;

  Choose();
  if ((kind->on != On::Program && !window_) || (kind->on == On::Control && !control_)) return;
  Tell(std::string(kind->name) + (kind->on != On::Program ? " in " + Told(*window_) : "") +
       (kind->on == On::Control ? ", " + Told(*control_) : ""));
  static constexpr std::array kFiles{"a.sav", "b.sav", "a.csv", "b.csv", "none/a.sav", "a.png", "a.svg", ""};
  auto& paths = TheDesk().fileDialogs.script;
  for (int i = 0; i < 9; ++i) {
    const QString name = OneOf(kFiles);
    paths.push_back(name.isEmpty() ? QString() : folder_.filePath(name));
  }
  kind->act(*this);
  files += 9 - static_cast<int>(paths.size());
  paths.clear();
  while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  if (left_) Start();
  TheDesk().prompts.shown.clear();
  Desk::Settle();
}

}  // namespace zth::testing
