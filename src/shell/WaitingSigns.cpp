#include "shell/WaitingSigns.h"

#include <utility>

#include <QApplication>
#include <QEvent>
#include <QScopeGuard>

#include "link/Asker.h"
#include "link/Declarations.h"
#include "link/Waiting.h"
#include "shell/MdiDesk.h"
#include "shell/StatusBar.h"
#include "windows/ChildWindow.h"

namespace zth::shell {
namespace {

/// Paints a whole window without running the event loop. Otherwise something that was over it, such as a menu, would
/// leave traces. Repainting the window alone would leave out its children.
void PaintNow(QWidget& window) {
  for (QWidget* child : window.findChildren<QWidget*>()) child->update();
  QEvent update(QEvent::UpdateRequest);
  QCoreApplication::sendEvent(&window, &update);
}

}  // namespace

WaitingSigns::WaitingSigns(QMainWindow& main, MdiDesk& area, StatusBar& status)
    : main_(main), area_(area), status_(status) {
  link::Bus.wait.signs = {[this](const QString& text) { Show(text); }, [this] { Hide(); }};
}

WaitingSigns::~WaitingSigns() {
  link::StopWaiting();
  link::Bus.wait.signs = {};
}

void WaitingSigns::Load(windows::ChildWindow& window, QMdiSubWindow& frame) {
  const link::UserAction action([&window] { return window.Caption(); });
  const link::Asker asker(link::Asker::Kind::Action,
                          [name = window.objectName()] { return name.toStdString() + " opens"; });
  opening_ = &frame;
  const auto end = qScopeGuard([this] {
    opening_ = nullptr;
    delete veil_;
  });
  // Over a fast link it would only flicker.
  if (link::IsSlow()) ShowFrame();
  window.Load();
  const bool showsAlready = opening_ == nullptr;
  if (!showsAlready) return;
  // The size that the desk would choose for a window that opens with its values already loaded.
  const QSize wanted = frame.sizeHint().boundedTo(area_.viewport()->size());
  frame.resize(wanted.expandedTo(frame.minimumSizeHint()));
}

void WaitingSigns::ShowFrame() {
  const QPointer<QMdiSubWindow> frame = std::exchange(opening_, nullptr);
  if (frame == nullptr) return;
  QWidget& window = *frame->widget();
  window.show();
  frame->show();
  area_.BringInside(*frame);
  // Its controls do not hold the chip's values yet.
  veil_ = new QLabel("Reading the chip...", &window);
  veil_->setObjectName("lblOpening");
  veil_->setAlignment(Qt::AlignCenter);
  veil_->setAutoFillBackground(true);
  veil_->setGeometry(window.rect());
  veil_->show();
  PaintNow(main_);
}

void WaitingSigns::Show(const QString& text) {
  ShowFrame();
  if (!std::exchange(shows_, true)) {
    QApplication::setOverrideCursor(Qt::BusyCursor);
    qApp->installEventFilter(this);
    PaintNow(main_);
  }
  status_.ShowWork(text);
}

void WaitingSigns::Hide() {
  shows_ = false;
  qApp->removeEventFilter(this);
  QApplication::restoreOverrideCursor();
  status_.EndWork();
}

bool WaitingSigns::eventFilter(QObject* watched, QEvent* event) {
  // A box or a dialog is open: the user can go on.
  if (event->type() == QEvent::WindowBlocked) link::StopWaiting();
  return QObject::eventFilter(watched, event);
}

}  // namespace zth::shell
