#include "Bench.h"

#include <stdexcept>

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QTabWidget>
#include <QTreeWidget>

#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "platform/DesktopServices.h"
#include "shell/Main.h"
#include "windows/SharedState.h"

namespace zth::gallery {
namespace {

[[noreturn]] void Fail(const QString& text) {
  throw std::runtime_error(text.toStdString());
}

void ResetProgram() {
  link::ResetLink();
  chip::ResetChip();
  windows::ResetSharedState();
}

/// Nobody is there to answer.
class NoPrompts final : public platform::Prompts {
 public:
  platform::BoxAnswer Ask(const platform::BoxQuestion& question) override { Fail("a box: " + question.text); }
};

class ScenePaths final : public platform::FileDialogs {
 public:
  QString Ask(const platform::FileQuestion& question, QWidget* /*parent*/) override {
    if (next.isEmpty()) Fail("a file dialog: " + question.caption);
    return std::exchange(next, QString());
  }

  QString next;
};

/// No setting of the user's has a say in a picture.
class SceneSettings final : public platform::Settings {
 public:
  explicit SceneSettings(bool opensEasySetup) : opensEasySetup_(opensEasySetup) {}
  QString Get(const QString& key, const QString& fallback) const override {
    return key == "OpenEasySetup" ? QString(opensEasySetup_ ? "True" : "False") : fallback;
  }
  void Put(const QString& /*key*/, const QString& /*text*/) override {}

 private:
  bool opensEasySetup_;
};

/// Whatever waits is done before a picture, and not in the middle of the program's work.
class NoEvents final : public platform::Events {
 public:
  void Pump() override {}
  void PumpPaint() override {}
};

}  // namespace

struct Bench::Parts {
  Parts(bool opensEasySetup, BenchClock& clock, BenchBoard& board)
      : settings(opensEasySetup), services{prompts, paths, settings,         real.All().shell,  clock,
                                           events,  board, real.All().files, real.All().process} {}

  platform::DesktopServices real;
  NoPrompts prompts;
  ScenePaths paths;
  SceneSettings settings;
  NoEvents events;
  platform::Services services;
};

Bench::Bench(bool opensEasySetup, const std::string& settings)
    : board_(clock_, settings), parts_(std::make_unique<Parts>(opensEasySetup, clock_, board_)) {
  ResetProgram();
  shell::Main(parts_->services);
  Main().showNormal();
  Main().resize(1366, 728);
  Settle();
}

Bench::~Bench() {
  delete shell::MainForm;
  Settle();
  ResetProgram();
}

void Bench::Settle() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void Bench::Run(double seconds) {
  clock_.Advance(static_cast<int>(seconds * 1000));
  Settle();
}

windows::ChildWindow& Bench::Open(const QString& window, const QRect& place) {
  windows::ChildWindow* opened = Main().OpenWindow(window);
  if (opened == nullptr) Fail("no window " + window);
  if (!place.isEmpty()) opened->parentWidget()->setGeometry(place);
  Settle();
  return *opened;
}

QWidget& Bench::Frame(const QString& window) {
  windows::ChildWindow* opened = Main().FindWindow(window);
  if (opened == nullptr) Fail(window + " is not open");
  return *opened->parentWidget();
}

template <typename Control>
Control& Bench::Get(const QString& window, const QString& name) {
  auto* control = Frame(window).findChild<Control*>(name);
  if (control == nullptr) Fail("no control " + name + " in " + window);
  return *control;
}

template <typename Control>
Control& Bench::Usable(const QString& window, const QString& name) {
  Control& control = Get<Control>(window, name);
  if (!control.isEnabled()) Fail(name + " in " + window + " is disabled");
  return control;
}

void Bench::Press(const QString& window, const QString& button) {
  Usable<QAbstractButton>(window, button).click();
  Settle();
}

void Bench::Tick(const QString& window, const QString& box, bool on) {
  if (Get<QAbstractButton>(window, box).isChecked() != on) Press(window, box);
}

void Bench::Type(const QString& window, const QString& box, const QString& text) {
  auto& control = Usable<QLineEdit>(window, box);
  control.selectAll();
  for (const QChar character : text) control.insert(character);
  Settle();
}

void Bench::Pick(const QString& window, const QString& list, const QString& item) {
  auto& control = Usable<QComboBox>(window, list);
  const int index = control.findText(item);
  if (index < 0) Fail("no item " + item + " in " + list);
  control.setCurrentIndex(index);
  emit control.activated(index);
  Settle();
}

void Bench::Turn(const QString& window, const QString& tabs, int page) {
  auto& control = Usable<QTabWidget>(window, tabs);
  if (page >= control.count() || !control.isTabEnabled(page)) Fail("no such page of " + tabs);
  control.setCurrentIndex(page);
  Settle();
}

void Bench::Slide(const QString& window, const QString& slider, double percent) {
  auto& control = Usable<QWidget>(window, slider);
  control.setProperty("Value", percent);
  if (!QMetaObject::invokeMethod(&control, "Change")) Fail(slider + " is no slider");
}

void Bench::Drag(const QString& window, const QString& gauge, int slider, double value) {
  auto& control = Usable<QWidget>(window, gauge);
  control.setProperty("PointerIndex", slider);
  control.setProperty("PointerValue", value);
  if (!QMetaObject::invokeMethod(&control, "SliderChanged")) Fail(gauge + " is no gauge");
}

void Bench::PickNode(const QString& window, const QString& tree, const QString& text) {
  auto& control = Usable<QTreeWidget>(window, tree);
  const auto found = control.findItems(text, Qt::MatchContains | Qt::MatchRecursive);
  if (found.isEmpty()) Fail("no node " + text + " in " + tree);
  for (QTreeWidgetItem* up = found.front()->parent(); up != nullptr; up = up->parent()) up->setExpanded(true);
  control.setCurrentItem(found.front());
  emit control.itemClicked(found.front(), 0);
  Settle();
}

void Bench::Key(const QString& window, const QString& control, int key) {
  auto& target = Usable<QWidget>(window, control);
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
  QCoreApplication::sendEvent(&target, &press);
  QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
  QCoreApplication::sendEvent(&target, &release);
}

void Bench::Point(const QString& window, const QString& control, QPointF at, bool click) {
  auto& target = Usable<QWidget>(window, control);
  const QPointF place(at.x() * target.width(), at.y() * target.height());
  const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons) {
    QMouseEvent event(type, place, target.mapToGlobal(place), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &event);
  };
  send(QEvent::MouseMove, Qt::NoButton, Qt::NoButton);
  if (!click) return;
  send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
  send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

void Bench::AnswerFile(const QString& name) {
  parts_->paths.next = FilePath(name);
}

}  // namespace zth::gallery
