#include "tests/support/Desk.h"

#include <stdexcept>

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>

#include "chip/ChipState.h"
#include "link/Declarations.h"
#include "shell/Commands.h"
#include "shell/Main.h"
#include "tasks/TasksState.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

void ResetProgram() {
  link::Bus = {};
  chip::Model = {};
  tasks::Work = {};
  windows::Shared = {};
}

}  // namespace

Desk::Desk(Buses buses) {
  ResetProgram();
  settings.values["OpenEasySetup"] = "False";
  if (buses == Buses::Smbus) {
    board.loadErrors["USBFunctions"] = "File not found: libUSBFunctions.so";
  } else {
    board.AddUsbChip(0x58);
  }
  if (buses == Buses::Usb) {
    board.loadErrors["smbus"] = "File not found: libsmbus.so";
  } else {
    board.AddSmbusChip(0x2C);
  }
}

Desk::~Desk() {
  delete ::zth::shell::MainForm;
  Settle();
  ResetProgram();
}

std::optional<int> Desk::RunMain() {
  try {
    ::zth::shell::Main(services);
  } catch (const platform::ProcessEnded& end) {
    return end.status;
  }
  return std::nullopt;
}

void Desk::Start() {
  // Of an earlier start in the same test.
  delete ::zth::shell::MainForm;
  Settle();
  const auto ended = RunMain();
  if (ended) throw std::runtime_error("the program ended in its start");
  board.TakeTraffic();
}

windows::ChildWindow& Desk::Open(const QString& name) {
  windows::ChildWindow* window = Main().OpenWindow(name);
  if (window == nullptr) throw std::runtime_error("no window " + name.toStdString());
  return *window;
}

void Desk::Advance(int milliseconds) {
  clock.Advance(milliseconds);
  Settle();
}

void Desk::Settle() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Desk::FailToFind(const QWidget& window, const QString& name) {
  std::string there;
  for (const QWidget* child : window.findChildren<QWidget*>()) there += " " + child->objectName().toStdString();
  throw std::runtime_error("no control " + name.toStdString() + " in " + window.objectName().toStdString() +
                           ", which has:" + there);
}

void Desk::Press(const QWidget& window, const QString& button) {
  auto& control = Get<QAbstractButton>(window, button);
  EXPECT_TRUE(control.isEnabled()) << button.toStdString() << " is disabled";
  control.click();
}

void Desk::Check(const QWidget& window, const QString& box, bool on) {
  auto& control = Get<QAbstractButton>(window, box);
  if (control.isChecked() != on) Press(window, box);
}

bool Desk::Checked(const QWidget& window, const QString& box) {
  return Get<QAbstractButton>(window, box).isChecked();
}

void Desk::Type(const QWidget& window, const QString& box, const QString& text) {
  Get<QLineEdit>(window, box).setText(text);
}

void Desk::Pick(const QWidget& window, const QString& list, int index) {
  auto& control = Get<QComboBox>(window, list);
  ASSERT_LT(index, control.count()) << list.toStdString();
  control.setCurrentIndex(index);
  emit control.activated(index);
}

QString Desk::Text(const QWidget& window, const QString& name) {
  auto& control = Get<QWidget>(window, name);
  if (const auto* box = qobject_cast<const QLineEdit*>(&control)) return box->text();
  if (const auto* label = qobject_cast<const QLabel*>(&control)) return label->text();
  if (const auto* list = qobject_cast<const QComboBox*>(&control)) return list->currentText();
  return control.property("text").toString();
}

QVariant Desk::Property(const QWidget& window, const QString& name, const char* property) {
  return Get<QWidget>(window, name).property(property);
}

}  // namespace zth::testing
