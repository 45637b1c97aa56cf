#include "Bench.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QTreeWidget>

#include "tests/support/Steps.h"
#include "tests/widgets/controls/UserInput.h"

namespace zth::gallery {
namespace {

using testing::Desk;

[[noreturn]] void Fail(const QString& text) {
  throw std::runtime_error(text.toStdString());
}

}  // namespace

Bench::Bench(bool opensEasySetup) {
  board_.desk.clock.SetWallTime(QDateTime(QDate(2026, 11, 23), QTime(9, 0)));
  board_.desk.settings.values["OpenEasySetup"] = opensEasySetup ? "True" : "False";
  board_.desk.Start();
  Main().showNormal();
  Main().resize(1366, 728);
  Settle();
}

void Bench::Settle() {
  Desk::Settle();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void Bench::Run(double seconds) {
  board_.desk.Advance(static_cast<int>(seconds * 1000));
  Settle();
}

windows::ChildWindow& Bench::Open(const QString& window, const QRect& place) {
  windows::ChildWindow& opened = board_.desk.Open(window);
  if (!place.isEmpty()) opened.parentWidget()->setGeometry(place);
  Settle();
  return opened;
}

windows::ChildWindow& Bench::Window(const QString& window) {
  windows::ChildWindow* opened = Main().FindWindow(window);
  if (opened == nullptr) Fail(window + " is not open");
  return *opened;
}

void Bench::Do(const QString& window, const QString& steps) {
  testing::Do(Window(window), steps);
  Settle();
}

void Bench::Pick(const QString& window, const QString& list, const QString& item) {
  const int index = Desk::Get<QComboBox>(Window(window), list).findText(item);
  if (index < 0) Fail("no item " + item + " in " + list);
  Desk::Pick(Window(window), list, index);
  Settle();
}

void Bench::Drag(const QString& window, const QString& gauge, int slider, double value) {
  auto& control = Desk::Get<QWidget>(Window(window), gauge);
  control.setProperty("PointerIndex", slider);
  control.setProperty("PointerValue", value);
  if (!QMetaObject::invokeMethod(&control, "SliderChanged")) Fail(gauge + " is no gauge");
}

void Bench::PickNode(const QString& window, const QString& tree, const QString& text) {
  auto& control = Desk::Get<QTreeWidget>(Window(window), tree);
  const auto found = control.findItems(text, Qt::MatchContains | Qt::MatchRecursive);
  if (found.isEmpty()) Fail("no node " + text + " in " + tree);
  for (QTreeWidgetItem* up = found.front()->parent(); up != nullptr; up = up->parent()) up->setExpanded(true);
  control.setCurrentItem(found.front());
  emit control.itemClicked(found.front(), 0);
  Settle();
}

void Bench::Play(const QString& window, const QString& control, const QString& steps) {
  auto& target = Desk::Get<QWidget>(Window(window), control);
  tests::Play(target, steps,
              [&](const QString& x) { return QPointF(x.toDouble() * target.width(), 0.25 * target.height()); });
}

void Bench::AnswerFile(const QString& name) {
  board_.desk.fileDialogs.script.push_back(folder_.filePath(name));
}

}  // namespace zth::gallery
