// size-waiver: one walk; its kinds of actions and what must hold behind each belong together.
#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <deque>
#include <fstream>
#include <memory>
#include <random>
#include <set>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "shell/Commands.h"
#include "tests/campaign/Operate.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/SimulatedDesk.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

/// A user without a plan: windows, keys, mouse, files and boxes at random on the simulated board, with what must hold
/// at all times held against it behind each action. A seed gives the same walk each time.
namespace zth::testing {
namespace {

constexpr int kActions = 10'000;
constexpr std::size_t kRemembered = 30;

/// The end of the walk so far, also for a walk that ends in a crash.
std::deque<std::string> lastActions;
unsigned walkSeed = 0;

void TellWalk() {
  std::fprintf(stderr, "the walk of seed %u ended with:\n", walkSeed);
  for (const std::string& action : lastActions) std::fprintf(stderr, "  %s\n", action.c_str());
}

void TellWalkOfCrashes() {
#if defined(__SANITIZE_ADDRESS__)
  __sanitizer_set_death_callback(TellWalk);
#else
  for (const int signal : {SIGSEGV, SIGABRT, SIGFPE}) {
    std::signal(signal, [](int raised) {
      std::signal(raised, SIG_DFL);
      TellWalk();
      std::raise(raised);
    });
  }
#endif
}

/// Qt tells of misuse by warnings; what the offscreen platform cannot do is none.
void FailOnWarning(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
  if (!text.startsWith("This plugin does not support")) ADD_FAILURE() << text.toStdString();
}

/// Texts that a user may type, valid and not.
constexpr std::array kTexts{"",     "0",    "1",     "50",   "100",   "255",      "256",
                            "-1",   "-128", "127",   "3.14", "1e9",   "-1e30",    "2147483648",
                            "0xFF", "ff",   "4C",    "44H",  "40000", "32767",    "nan",
                            "inf",  " 12 ", "12abc", "--",   "%n",    "\xC2\xB0", "99999999999999999999"};

constexpr std::array kKeys{Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Left,     Qt::Key_Right,  Qt::Key_Up,
                           Qt::Key_Down,   Qt::Key_PageUp,  Qt::Key_PageDown, Qt::Key_Home,   Qt::Key_End,
                           Qt::Key_Return, Qt::Key_Escape,  Qt::Key_Space,    Qt::Key_Delete, Qt::Key_Backspace,
                           Qt::Key_5,      Qt::Key_A,       Qt::Key_F4};

const std::set<QString> kBoxes{"At least one item must be selected for logging", "Option value must be in range 1-5"};

class Walk {
 public:
  explicit Walk(unsigned seed) : random_(seed) {
    // The walk runs no event loop. Some of Qt's menus do; this timer fires there alone.
    QObject::connect(&innerLoop_, &QTimer::timeout, [] {
      if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    });
    innerLoop_.start(1);
    Restart();
  }
  ~Walk() { LetGo(); }

  /// One action and what must hold behind it.
  void Step();

  int restarts = 0;
  int boxes = 0;
  int files = 0;

 private:
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(std::max(n, 1))); }
  template <typename List>
  auto& OneOf(List& list) {
    return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
  }
  Desk& TheDesk() { return sim_->desk; }
  shell::frmMain& Main() { return TheDesk().Main(); }

  void Restart();
  void LetGo();
  void AnswerAtRandom();
  QString AnyFile();
  windows::ChildWindow* AnyWindow();
  QWidget* AnyControl(const char* kind = "QWidget");
  void Tell(const std::string& what, const QWidget* control = nullptr);

  void OpenAny();
  void CloseAny();
  void ActivateAny();
  void OperateAny();
  void TypeAny();
  void PickAny();
  void PressKey();
  void TurnWheel();
  void Drag();
  void UseContextMenu();
  void ArrangeWindows();
  void SwitchDevice();
  void LetTimePass();
  void PaintAny();
  void Exit();

  void ExpectWindowsOnce();
  void ExpectModels();
  void ExpectCharts();

  std::mt19937 random_;
  QTimer innerLoop_;
  QTemporaryDir folder_;
  std::map<QString, QString> settings_;
  std::unique_ptr<SimulatedDesk> sim_;
  bool exited_ = false;
  /// The chip has been changed where the program reads nothing anew: by another device or a reset. Until the model has
  /// caught up, it is not held against the chip.
  bool behind_ = false;
  std::int64_t resets_ = 0;  ///< writes to 0x00, which holds the reset
};

void Walk::Restart() {
  LetGo();
  sim_.reset();
  sim_ = std::make_unique<SimulatedDesk>();
  Desk& desk = TheDesk();
  if (!settings_.empty()) desk.settings.values = settings_;
  desk.process.folder = folder_.path();
  desk.Start();
  desk.prompts.whileShown = [this] { AnswerAtRandom(); };
  // Windows that paint let timers through.
  desk.events.onPaint = [this] { TheDesk().clock.Advance(Below(120)); };
  QApplication::setActiveWindow(&Main());
  exited_ = behind_ = false;
  resets_ = 0;
}

void Walk::LetGo() {
  if (sim_ == nullptr) return;
  settings_ = TheDesk().settings.values;
  TheDesk().fileDialogs.script.clear();
}

void Walk::AnswerAtRandom() {
  using platform::BoxAnswer;
  const platform::BoxQuestion& box = TheDesk().prompts.shown.back();
  EXPECT_TRUE(kBoxes.contains(box.text)) << box.text.toStdString();
  Tell("  box: " + box.text.toStdString());
  ++boxes;
  TheDesk().clock.Advance(Below(2000));
  const bool yesNo = box.buttons == platform::BoxButtons::YesNo;
  TheDesk().prompts.script = {!yesNo ? BoxAnswer::Ok : Below(2) == 0 ? BoxAnswer::Yes : BoxAnswer::No};
}

QString Walk::AnyFile() {
  static constexpr std::array kNames{"a.sav", "b.sav", "a.csv", "b.csv", "none/a.sav", "a.png", "a.svg", ""};
  const QString name = OneOf(kNames);
  return name.isEmpty() ? QString() : folder_.filePath(name);
}

void Walk::Tell(const std::string& what, const QWidget* control) {
  std::string text = what;
  if (control != nullptr) text += " " + control->window()->objectName().toStdString();
  for (const QWidget* at = control; at != nullptr; at = at->parentWidget()) {
    if (qobject_cast<const windows::ChildWindow*>(at) != nullptr) text += " " + at->objectName().toStdString();
  }
  if (control != nullptr) {
    const QString name = control->objectName();
    text += " " + (name.isEmpty() ? std::string(control->metaObject()->className()) : name.toStdString());
  }
  lastActions.push_back(text);
  if (lastActions.size() > kRemembered) lastActions.pop_front();
}

windows::ChildWindow* Walk::AnyWindow() {
  const auto open = Main().findChildren<windows::ChildWindow*>();
  if (open.isEmpty()) return nullptr;
  // Mostly in the window that is in front.
  auto* area = Main().findChild<QMdiArea*>();
  if (auto* front = area->activeSubWindow(); front != nullptr && Below(3) > 0) {
    if (auto* window = qobject_cast<windows::ChildWindow*>(front->widget())) return window;
  }
  return open.at(Below(static_cast<int>(open.size())));
}

QWidget* Walk::AnyControl(const char* kind) {
  windows::ChildWindow* window = AnyWindow();
  if (window == nullptr) return nullptr;
  std::vector<QWidget*> controls = OperableControls(*window);
  std::erase_if(controls, [&](const QWidget* control) { return !control->inherits(kind); });
  return controls.empty() ? nullptr : OneOf(controls);
}

void Walk::OpenAny() {
  const auto& entry = OneOf(shell::kMenuEntries);
  if (QString(entry.window).isEmpty()) return;
  Tell(std::string("menu ") + entry.name);
  if (Below(2) == 0) {
    Main().findChild<QAction*>(entry.name)->trigger();
  } else {
    const QKeyCombination keys = QKeySequence(entry.shortcut)[0];
    QTest::keyClick(&Main(), keys.key(), keys.keyboardModifiers());
  }
}

void Walk::CloseAny() {
  windows::ChildWindow* window = AnyWindow();
  if (window == nullptr) return;
  Tell("close", window);
  window->Unload();
}

void Walk::ActivateAny() {
  windows::ChildWindow* window = AnyWindow();
  if (window == nullptr) return;
  Tell("activate", window);
  auto* frame = qobject_cast<QMdiSubWindow*>(window->parentWidget());
  Main().findChild<QMdiArea*>()->setActiveSubWindow(frame);
  window->setFocus();
}

void Walk::OperateAny() {
  QWidget* control = AnyControl();
  if (control == nullptr) return;
  auto ways = WaysToOperate(*control);
  if (ways.empty()) return;
  const Way& way = OneOf(ways);
  Tell(way.name + ", of", control);
  way.act();
}

void Walk::TypeAny() {
  auto* box = qobject_cast<QLineEdit*>(AnyControl("QLineEdit"));
  if (box == nullptr) return;
  const QString text = QString::fromUtf8(OneOf(kTexts));
  Tell("type \"" + text.toStdString() + "\" into", box);
  if (Below(2) == 0) {
    box->setText(text);
  } else {
    const QPointer<QLineEdit> alive = box;
    for (const QChar c : text) {
      if (alive) QTest::keyClick(alive, c.toLatin1());
    }
  }
}

void Walk::PickAny() {
  auto* list = qobject_cast<QComboBox*>(AnyControl("QComboBox"));
  if (list == nullptr || list->count() == 0) return;
  const int item = Below(list->count());
  Tell("pick " + list->itemText(item).toStdString() + " of", list);
  const QPointer<QComboBox> alive = list;
  list->setCurrentIndex(item);
  if (alive) emit alive->activated(item);
}

void Walk::PressKey() {
  QWidget* focus = QApplication::focusWidget();
  if (focus == nullptr || Below(4) == 0) focus = AnyControl();
  if (focus == nullptr) return;
  const Qt::Key key = Below(5) == 0 ? static_cast<Qt::Key>(Qt::Key_A + Below(26)) : OneOf(kKeys);
  static constexpr std::array kModifiers{Qt::NoModifier,    Qt::NoModifier,  Qt::NoModifier,
                                         Qt::ShiftModifier, Qt::AltModifier, Qt::ControlModifier};
  const Qt::KeyboardModifier modifier = OneOf(kModifiers);
  if ((key == Qt::Key_Q || key == Qt::Key_F4) && modifier != Qt::NoModifier) return;  // exits have their own action
  Tell("key " + QKeySequence(key | modifier).toString().toStdString() + " in", focus);
  const QPointer<QWidget> alive = focus;
  const bool held = Below(8) == 0;
  for (int i = 0; i < (held ? 5 : 1) && alive; ++i) QTest::keyPress(alive, key, modifier);
  if (alive) QTest::keyRelease(alive, key, modifier);
}

void Walk::TurnWheel() {
  QWidget* control = AnyControl();
  if (control == nullptr) return;
  const QPoint at(Below(control->width()), Below(control->height()));
  static constexpr std::array kTurns{120, -120, 30, -15, 1200};
  const int turn = OneOf(kTurns);
  const auto modifier = Below(3) == 0 ? Qt::ControlModifier : Qt::NoModifier;
  Tell("wheel by " + std::to_string(turn) + " over", control);
  QWheelEvent event(at, control->mapToGlobal(at), {}, {0, turn}, Qt::NoButton, modifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(control, &event);
}

void Walk::Drag() {
  QWidget* control = AnyControl();
  // Where Qt would drag text or windows in a loop of its own, nothing of ours is driven.
  if (control == nullptr || control->inherits("QLineEdit") || control->inherits("QComboBox")) return;
  Tell("drag over", control);
  const QPointer<QWidget> alive = control;
  const auto button = Below(6) == 0 ? Qt::RightButton : Qt::LeftButton;
  QPoint at(Below(control->width()), Below(control->height()));
  const auto send = [&](QEvent::Type type, Qt::MouseButtons held) {
    if (!alive) return;
    const auto which = type == QEvent::MouseMove ? Qt::NoButton : button;
    QMouseEvent event(type, at, alive->mapToGlobal(at), which, held, Qt::NoModifier);
    QApplication::sendEvent(alive, &event);
  };
  send(QEvent::MouseButtonPress, button);
  for (int i = Below(4); i > 0; --i) {
    at += QPoint(Below(201) - 100, Below(101) - 50);
    send(QEvent::MouseMove, button);
    TheDesk().clock.Advance(Below(80));
    if (Below(40) == 0 && alive) QTest::keyClick(alive, Qt::Key_Escape);
    // A window closed by key under the mouse takes its control away at the next turn of the loop.
    if (Below(40) == 0) Desk::Settle();
  }
  send(QEvent::MouseButtonRelease, Qt::NoButton);
  if (Below(5) == 0) send(QEvent::MouseButtonDblClick, button), send(QEvent::MouseButtonRelease, Qt::NoButton);
}

void Walk::UseContextMenu() {
  QWidget* control = AnyControl();
  if (control == nullptr) return;
  Tell("context menu of", control);
  const QPoint at(Below(control->width()), Below(control->height()));
  QContextMenuEvent event(QContextMenuEvent::Keyboard, at, control->mapToGlobal(at));
  QApplication::sendEvent(control, &event);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  if (menu == nullptr) return;
  auto entries = menu->findChildren<QAction*>();
  entries.removeIf([](const QAction* entry) { return !entry->isEnabled() || entry->isSeparator(); });
  if (!entries.empty() && Below(4) > 0) {
    QAction* entry = OneOf(entries);
    Tell("  entry " + entry->text().toStdString());
    entry->trigger();
  }
}

void Walk::ArrangeWindows() {
  QMenu* menu = Main().findChild<QMenu*>("mnuWindow");
  emit menu->aboutToShow();
  auto entries = menu->actions();
  entries.removeIf([](const QAction* entry) { return !entry->isEnabled() || entry->isSeparator(); });
  auto* area = Main().findChild<QMdiArea*>();
  if (Below(3) == 0) {
    Tell("resize the main window");
    Main().resize(200 + Below(1800), 150 + Below(1200));
  } else if (QMdiSubWindow* front = area->activeSubWindow(); front != nullptr && Below(2) == 0) {
    Tell("state of the front window", front);
    static constexpr std::array kStates{&QWidget::showMinimized, &QWidget::showMaximized, &QWidget::showNormal};
    (front->*OneOf(kStates))();
  } else if (!entries.empty()) {
    QAction* entry = OneOf(entries);
    Tell("window menu: " + entry->text().toStdString());
    entry->trigger();
  }
}

void Walk::SwitchDevice() {
  auto& devices = Desk::Get<QComboBox>(Main(), "cmbDevices");
  const int device = Below(devices.count());
  Tell("device " + devices.itemText(device).toStdString());
  behind_ = behind_ || device != devices.currentIndex();
  Desk::Pick(Main(), "cmbDevices", device);
}

void Walk::LetTimePass() {
  const int ms = Below(20) == 0 ? 20'000 : Below(600);
  Tell("wait " + std::to_string(ms) + " ms");
  TheDesk().clock.Advance(ms);
}

void Walk::PaintAny() {
  windows::ChildWindow* window = AnyWindow();
  if (window == nullptr || !window->isVisible()) return;
  Tell("paint", window);
  EXPECT_FALSE(window->grab().isNull());
}

void Walk::Exit() {
  exited_ = true;
  const int status = 0;
  if (Below(2) == 0) {
    Tell("exit by the menu");
    Main().findChild<QAction*>("mnuExit")->trigger();
    EXPECT_EQ(TheDesk().process.ends, std::vector<int>{status});
  } else {
    Tell("close the main window");
    Main().close();
    EXPECT_TRUE(TheDesk().process.ends.empty());
    EXPECT_TRUE(TheDesk().settings.values.contains("MainLeft"));
  }
}

void Walk::Step() {
  struct Kind {
    int weight;
    void (Walk::*act)();
  };
  static constexpr std::array kKinds{
      Kind{90, &Walk::OpenAny},        Kind{25, &Walk::CloseAny},       Kind{40, &Walk::ActivateAny},
      Kind{300, &Walk::OperateAny},    Kind{90, &Walk::TypeAny},        Kind{90, &Walk::PickAny},
      Kind{150, &Walk::PressKey},      Kind{50, &Walk::TurnWheel},      Kind{80, &Walk::Drag},
      Kind{25, &Walk::UseContextMenu}, Kind{10, &Walk::ArrangeWindows}, Kind{3, &Walk::SwitchDevice},
      Kind{150, &Walk::LetTimePass},   Kind{5, &Walk::PaintAny},        Kind{1, &Walk::Exit},
  };
  int at = 0;
  for (const Kind& kind : kKinds) at += kind.weight;
  at = Below(at);
  std::size_t kind = 0;
  while (at >= kKinds[kind].weight) at -= kKinds[kind++].weight;

  Desk& desk = TheDesk();
  while (desk.fileDialogs.script.size() < 9) desk.fileDialogs.script.push_back(AnyFile());
  const auto asked = desk.fileDialogs.shown.size();
  (this->*kKinds[kind].act)();
  files += static_cast<int>(desk.fileDialogs.shown.size() - asked);
  while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  if (exited_) {
    ++restarts;
    Restart();
    return;
  }
  desk.prompts.shown.clear();
  Desk::Settle();
  EXPECT_TRUE(desk.process.ends.empty()) << "the program ended by itself";
  EXPECT_FALSE(link::LinkHeld());
  EXPECT_EQ(sim_->refused, 0) << "a transfer that the board did not take";
  EXPECT_TRUE(Main().findChild<QTimer*>("tmrMaster")->isActive()) << "the monitor stands still";
  EXPECT_FALSE(windows::ManualSliderHeld) << "nobody holds a slider";
  ExpectWindowsOnce();
  ExpectModels();
  if (Below(20) == 0) ExpectCharts();
}

void Walk::ExpectWindowsOnce() {
  std::set<QString> names;
  for (const auto* window : Main().findChildren<windows::ChildWindow*>()) {
    const QString name = window->objectName();
    EXPECT_TRUE(names.insert(name).second) << name.toStdString() << " is there twice";
    EXPECT_EQ(Main().FindWindow(name), window);
  }
  const struct {
    const char* name;
    bool open;
  } flags[] = {{"frmRegMap", windows::RegMapOpen},       {"frmLimits", windows::LimitsOpen},
               {"frmGPIO", windows::GpioOpen},           {"frmGraph", windows::GraphOpen},
               {"frmHeaters", windows::HeatersOpen},     {"frmManualControl", windows::ManualOpen},
               {"frmDynamicTmin", windows::DynTminOpen}, {"frmAutoGraph", windows::AutoGraphOpen}};
  for (const auto& flag : flags) EXPECT_EQ(names.contains(flag.name), flag.open) << flag.name;
  EXPECT_EQ(Main().findChild<QMdiArea*>()->subWindowList().size(), static_cast<qsizetype>(names.size()));
}

void Walk::ExpectModels() {
  const auto& devices = Desk::Get<QComboBox>(Main(), "cmbDevices");
  char device[32];
  std::snprintf(device, sizeof device, "%02Xh on %s", link::DeviceAddress,
                link::InterfaceMode == link::kModeUsb ? "USB" : "SMBus");
  EXPECT_EQ(devices.currentText(), device);
  sim_->CatchUp();
  const bool usb = link::InterfaceMode == link::kModeUsb;
  const auto held = [&](int reg) {
    simulator::Bus& bus = usb ? sim_->usb.TheBus() : sim_->smbus.TheBus();
    return bus.Read(link::DeviceAddress, static_cast<std::uint8_t>(reg));
  };
  std::array<std::uint8_t, 4> pins{};
  for (std::size_t i = 0; i < 4; ++i) pins[i] = held(0x10 + static_cast<int>(i));
  auto manual = link::PwmManual;
  for (std::size_t pwm = 1; pwm <= 4; ++pwm) manual[pwm] = held(0x20 + static_cast<int>(pwm)) >> 5 == 7;

  behind_ = behind_ || std::exchange(resets_, sim_->requests[{0xDE, 0, 0}] + sim_->requests[{0, 0, 0}]) != resets_;
  const bool same = chip::PinFunctions == chip::DecodePinFunctions(pins) && link::PwmManual == manual;
  EXPECT_TRUE(same || behind_) << "the pins or the behaviours are not the chip's";
  behind_ = behind_ && !same;
}

void Walk::ExpectCharts() {
  for (const auto* chart : Main().findChildren<widgets::Strip*>()) {
    EXPECT_TRUE(std::isfinite(chart->XSpan()) && chart->XSpan() > 0) << chart->Title().toStdString();
    EXPECT_TRUE(std::isfinite(chart->XEnd())) << chart->Title().toStdString();
    EXPECT_LT(chart->AxisMin(), chart->AxisMax()) << chart->Title().toStdString();
  }
}

class RandomWalk : public ::testing::TestWithParam<unsigned> {};

TEST_P(RandomWalk, FindsNoWayToBreakTheProgram) {
  walkSeed = GetParam();
  lastActions.clear();
  TellWalkOfCrashes();
  qInstallMessageHandler(FailOnWarning);
  Walk walk(walkSeed);
  for (int action = 0; action < kActions; ++action) {
    walk.Step();
    if (HasFailure()) {
      std::fprintf(stderr, "action %d of ", action);
      TellWalk();
      return;
    }
  }
  RecordProperty("restarts", walk.restarts);
  RecordProperty("boxes", walk.boxes);
  RecordProperty("files", walk.files);
  EXPECT_GT(walk.restarts + walk.boxes + walk.files, 10) << "a walk that goes nowhere";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk, ::testing::Range(1U, 11U));

}  // namespace
}  // namespace zth::testing
