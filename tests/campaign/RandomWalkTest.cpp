// Checks what must always be true after each action of a user who acts at random. The same seed repeats the same walk.
// With ZTH_TELL_WALK set it prints each step, up to a failure or a crash.
#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include "chip/ChipState.h"
#include "chip/PinModel.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "shell/Commands.h"
#include "tests/campaign/Operate.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Seen.h"
#include "tests/support/SimulatedDesk.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

constexpr std::array kKeys{Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Left,     Qt::Key_Right,  Qt::Key_Up,
                           Qt::Key_Down,   Qt::Key_PageUp,  Qt::Key_PageDown, Qt::Key_Home,   Qt::Key_End,
                           Qt::Key_Return, Qt::Key_Escape,  Qt::Key_Space,    Qt::Key_Delete, Qt::Key_Backspace,
                           Qt::Key_5,      Qt::Key_A,       Qt::Key_F4};

const std::set<QString> kBoxes{"At least one item must be selected for logging", "Option value must be in range 1-5"};

/// A user who acts at random: windows, keys, mouse, files and boxes on the simulated board. The same seed gives the
/// same user.
class RandomUser {
 public:
  explicit RandomUser(unsigned seed) : random_(seed) {
    // A walk runs no event loop, but some of Qt's menus do; this timer fires only there.
    QObject::connect(&innerLoop_, &QTimer::timeout, [] {
      if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    });
    innerLoop_.start(1);
    Start();
  }

  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(std::max(n, 1))); }
  template <typename List>
  auto& OneOf(List& list) {
    return *std::next(std::begin(list), Below(static_cast<int>(std::size(list))));
  }

  /// One action. A user who exits the program starts it again, with the settings that it stored.
  void Act() {                                   // NOLINT(readability-function-size): a branch a kind
    enum class On { Program, Window, Control };  // what the action needs to act on
    struct Kind {
      int weight;
      const char* name;
      On on;
      std::function<void()> act;
    };
    const std::vector<Kind> kinds{
        {90, "open", On::Program, [this] { Open(); }},
        {25, "close", On::Window, [this] { window_->Unload(); }},
        {40, "activate", On::Window,
         [this] {
           auto* frame = qobject_cast<QMdiSubWindow*>(window_->parentWidget());
           Main().findChild<QMdiArea*>()->setActiveSubWindow(frame);
           window_->setFocus();
         }},
        {480, "operate", On::Control,
         [this] {
           const auto ways = WaysToOperate(*control_, Extent::All);
           if (ways.empty()) return;
           const Way& way = OneOf(ways);
           Tell("  " + way.name);
           way.act();
         }},
        {150, "key", On::Control, [this] { PressKey(); }},
        {130, "mouse", On::Control, [this] { MoveMouse(); }},
        {25, "context menu", On::Control, [this] { UseContextMenu(); }},
        {10, "arrange", On::Program, [this] { Arrange(); }},
        {3, "device", On::Program,
         [this] {
           const auto& devices = Desk::Get<QComboBox>(Main(), "cmbDevices");
           const int device = Below(devices.count());
           switched = switched || device != devices.currentIndex();
           Desk::Pick(Main(), "cmbDevices", device);
         }},
        {150, "wait", On::Program, [this] { TheDesk().clock.Advance(Below(20) == 0 ? 20'000 : Below(600)); }},
        {5, "paint", On::Window, [this] { EXPECT_TRUE(!window_->isVisible() || !window_->grab().isNull()); }},
        {1, "exit", On::Program, [this] { Exit(); }},
    };
    int at = 0;
    for (const Kind& kind : kinds) at += kind.weight;
    at = Below(at);
    const Kind* kind = kinds.data();
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
    kind->act();
    files += 9 - static_cast<int>(paths.size());
    paths.clear();
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    if (left_) Start();
    TheDesk().prompts.shown.clear();
    TheDesk().prompts.choicesShown.clear();
    choices_ = 0;
    Desk::Settle();
  }

  Desk& TheDesk() { return sim->desk; }
  shell::frmMain& Main() { return TheDesk().Main(); }

  std::unique_ptr<SimulatedDesk> sim;
  bool switched = false;  ///< another device has been selected since this was last reset
  int restarts = -1, boxes = 0, files = 0;

 private:
  std::size_t choices_ = 0;  ///< answered in this action
  QPoint AnyPoint() { return {Below(control_->width()), Below(control_->height())}; }
  static void Tell(const std::string& what) {
    if (qEnvironmentVariableIsSet("ZTH_TELL_WALK")) std::fprintf(stderr, "%s\n", what.c_str());
  }

  void Start() {
    const auto settings = sim == nullptr ? std::map<QString, QString>() : TheDesk().settings.values;
    sim.reset();
    sim = std::make_unique<SimulatedDesk>();
    Desk& desk = TheDesk();
    if (!settings.empty()) desk.settings.values = settings;
    desk.process.folder = folder_.path();
    desk.Start();
    desk.prompts.whileShown = [this] { Answer(); };
    // Painting windows lets timers fire.
    desk.events.onPaint = [this] { TheDesk().clock.Advance(Below(120)); };
    QApplication::setActiveWindow(&Main());
    left_ = switched = false;
    ++restarts;
  }

  void Answer() {
    using platform::BoxAnswer;
    if (TheDesk().prompts.choicesShown.size() > choices_) {
      // Whether to exit, whether to read a window again.
      ++choices_;
      const QStringList choices = TheDesk().prompts.choicesShown.back().choices;
      TheDesk().clock.Advance(Below(2000));
      TheDesk().prompts.picks = {choices[Below(static_cast<int>(choices.size()))]};
      return;
    }
    const platform::BoxQuestion& box = TheDesk().prompts.shown.back();
    EXPECT_TRUE(kBoxes.contains(box.text)) << box.text.toStdString();
    Tell("  box: " + box.text.toStdString());
    ++boxes;
    TheDesk().clock.Advance(Below(2000));
    const bool yesNo = box.buttons == platform::BoxButtons::YesNo;
    TheDesk().prompts.script = {!yesNo ? BoxAnswer::Ok : Below(2) == 0 ? BoxAnswer::Yes : BoxAnswer::No};
  }

  /// Mostly in the front window, and preferably on controls with contents.
  void Choose() {
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

  void Trigger(QList<QAction*> entries) {
    entries.removeIf([](const QAction* entry) { return !entry->isEnabled() || entry->isSeparator(); });
    if (entries.empty()) return;
    QAction* entry = OneOf(entries);
    Tell("  entry " + entry->text().toStdString());
    entry->trigger();
  }

  void Open() {
    const shell::MenuEntry& entry = OneOf(shell::kMenuEntries);
    if (QString(entry.window).isEmpty()) return;
    Tell(std::string("  ") + entry.name);
    if (Below(2) == 0) return Main().findChild<QAction*>(entry.name)->trigger();
    QTest::keySequence(&Main(), QKeySequence(entry.shortcut));
  }

  void PressKey() {
    if (QWidget* focus = QApplication::focusWidget(); focus != nullptr && Below(4) > 0) control_ = focus;
    const Qt::Key key = Below(5) == 0 ? static_cast<Qt::Key>(Qt::Key_A + Below(26)) : OneOf(kKeys);
    static constexpr std::array kModifiers{Qt::NoModifier,    Qt::NoModifier,  Qt::NoModifier,
                                           Qt::ShiftModifier, Qt::AltModifier, Qt::ControlModifier};
    const Qt::KeyboardModifier modifier = OneOf(kModifiers);
    if ((key == Qt::Key_Q || key == Qt::Key_F4) && modifier != Qt::NoModifier) return;  // exiting is a separate action
    Tell("  " + QKeySequence(key | modifier).toString().toStdString() + " in " + Told(*control_));
    for (int i = Below(8) == 0 ? 5 : 1; i > 0 && control_; --i) QTest::keyPress(control_, key, modifier);
    if (control_) QTest::keyRelease(control_, key, modifier);
  }

  void MoveMouse() {
    QPoint at = AnyPoint();
    static constexpr std::array kTurns{120, -120, 30, -15, 1200};
    if (Below(13) < 5) {
      const auto modifier = Below(3) == 0 ? Qt::ControlModifier : Qt::NoModifier;
      QWheelEvent event(at, control_->mapToGlobal(at), {}, {0, OneOf(kTurns)}, {}, modifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(control_, &event);
      return;
    }
    // Skips places where Qt would drag text or windows in its own loop, because our code would not run.
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
      // A window closed by a key under the mouse deletes its control when the event loop next runs.
      if (Below(40) == 0) Desk::Settle();
    }
    send(QEvent::MouseButtonRelease, Qt::NoButton);
    if (Below(5) == 0) send(QEvent::MouseButtonDblClick, button), send(QEvent::MouseButtonRelease, Qt::NoButton);
  }

  void UseContextMenu() {
    const QPoint at = AnyPoint();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, control_->mapToGlobal(at));
    QApplication::sendEvent(control_, &event);
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu != nullptr && Below(4) > 0) Trigger(menu->findChildren<QAction*>());
    QCoreApplication::sendPostedEvents();  // an entry's handler runs after its menu
  }

  void Arrange() {
    auto* menu = Main().findChild<QMenu*>("mnuWindow");
    emit menu->aboutToShow();
    static constexpr std::array kStates{&QWidget::showMinimized, &QWidget::showMaximized, &QWidget::showNormal};
    QMdiSubWindow* front = Main().findChild<QMdiArea*>()->activeSubWindow();
    if (Below(3) == 0) return Main().resize(200 + Below(1800), 150 + Below(1200));
    if (front != nullptr && Below(2) == 0) return (front->*OneOf(kStates))();
    Trigger(menu->actions());
  }

  void Exit() {
    const bool byMenu = Below(2) == 0;
    byMenu ? Main().findChild<QAction*>("mnuExit")->trigger() : static_cast<void>(Main().close());
    EXPECT_EQ(TheDesk().process.ends, std::vector<int>(byMenu ? 1 : 0));
    left_ = byMenu || !Main().isVisible();
    // If the program is still running, it has asked.
    EXPECT_TRUE(left_ || !TheDesk().prompts.choicesShown.empty());
    EXPECT_TRUE(byMenu || !left_ || TheDesk().settings.values.contains("MainLeft"));
  }

  std::mt19937 random_;
  QTimer innerLoop_;
  QTemporaryDir folder_;
  bool left_ = false;
  QPointer<windows::ChildWindow> window_;  ///< what the action is on
  QPointer<QWidget> control_;
};

/// ZTH_WALK_ACTIONS sets more, as `./test soak` does.
int Actions() {
  return std::max(4'000, qEnvironmentVariableIntValue("ZTH_WALK_ACTIONS"));
}

/// Qt reports misuse by warnings; those about limits of the offscreen platform do not count.
void FailOnWarning(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
  if (!text.startsWith("This plugin does not support")) ADD_FAILURE() << text.toStdString();
}

class RandomWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  void ExpectTheProgramRuns() {
    EXPECT_TRUE(user_.TheDesk().process.ends.empty()) << "the program ended by itself";
    EXPECT_FALSE(link::LinkHeld());
    EXPECT_EQ(user_.sim->refused, 0) << "a transfer that the board did not take";
    EXPECT_TRUE(Main().findChild<QTimer*>("tmrMaster")->isActive()) << "the monitor stands still";
    EXPECT_FALSE(windows::Shared.ManualSliderHeld) << "nobody holds a slider";
  }

  void ExpectWindowsOnce() {
    std::set<std::string> names;
    for (const auto* window : Main().findChildren<windows::ChildWindow*>()) {
      const std::string name = window->objectName().toStdString();
      EXPECT_TRUE(names.insert(name).second) << name << " is there twice";
      EXPECT_EQ(Main().FindWindow(name.c_str()), window);
    }
    for (const auto& [name, open] : OpenFlags()) EXPECT_EQ(names.contains(name), *open) << name;
    EXPECT_EQ(Main().findChild<QMdiArea*>()->subWindowList().size(), static_cast<qsizetype>(names.size()));
  }

  void ExpectModels() {
    SimulatedDesk& sim = *user_.sim;
    const bool usb = link::Bus.InterfaceMode == link::kModeUsb;
    EXPECT_EQ(Desk::Text(Main(), "cmbDevices"),
              QString::asprintf("%02Xh on %s", link::Bus.DeviceAddress, usb ? "USB" : "SMBus"));
    sim.CatchUp();
    const auto held = [&](std::size_t reg) {
      return (usb ? sim.usb.TheBus() : sim.smbus.TheBus())
          .Read(link::Bus.DeviceAddress, static_cast<std::uint8_t>(reg));
    };
    auto manual = chip::Model.PwmManual;
    for (std::size_t pwm = 1; pwm <= 4; ++pwm) manual[pwm] = held(0x20 + pwm) >> 5 == 7;
    const auto pins = chip::DecodePinFunctions({held(0x10), held(0x11), held(0x12), held(0x13)});

    const auto resets = sim.requests[{0xDE, 0, 0}] + sim.requests[{0, 0, 0}];
    behind_ = behind_ || std::exchange(user_.switched, false) || resets_ != resets;
    resets_ = resets;
    const bool same = chip::Model.PinFunctions == pins && chip::Model.PwmManual == manual;
    EXPECT_TRUE(same || behind_) << "the pins or the behaviours are not the chip's";
    behind_ = behind_ && !same;
  }

  void ExpectCharts() {
    for (const auto* chart : Main().findChildren<widgets::Strip*>()) {
      EXPECT_TRUE(std::isfinite(chart->XSpan()) && chart->XSpan() > 0) << chart->Title().toStdString();
      EXPECT_TRUE(std::isfinite(chart->XEnd())) << chart->Title().toStdString();
      EXPECT_LT(chart->AxisMin(), chart->AxisMax()) << chart->Title().toStdString();
    }
  }

  RandomUser user_{GetParam()};

 private:
  shell::frmMain& Main() { return user_.Main(); }

  /// The chip has changed without the program reading it again: by another device or a reset. Until the model has
  /// caught up, it is not compared with the chip.
  bool behind_ = false;
  std::int64_t resets_ = 0;  ///< writes to 0x00, which has the reset bit
};

TEST_P(RandomWalk, FindsNoWayToBreakTheProgram) {
  qInstallMessageHandler(FailOnWarning);
  const int actions = Actions();
  for (int action = 0; action < actions && !HasFailure(); ++action) {
    user_.Act();
    ExpectTheProgramRuns();
    ExpectWindowsOnce();
    ExpectModels();
    if (action % 20 == 0) ExpectCharts();
  }
  EXPECT_GT(user_.restarts + user_.boxes + user_.files, 10) << "a walk that goes nowhere";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk, ::testing::Range(1U, 5U));

}  // namespace
}  // namespace zth::testing
