#include "shell/MdiDesk.h"

#include <algorithm>

#include <QApplication>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>
#include <QProxyStyle>
#include <QScrollBar>
#include <QShortcut>
#include <QStyleOptionTitleBar>

#include "shell/Tiling.h"
#include "widgets/ClearBoxes.h"
#include "windows/ChildWindow.h"

namespace zth::shell {
namespace {

/// The application's style, but with title bars that grow with their font: a style's own have the same height for all
/// fonts. The title bar of a window that shows a chip other than the one in use has a distinct colour.
class TitleBarStyle final : public QProxyStyle {
 public:
  TitleBarStyle() : QProxyStyle(widgets::ClearBoxes::NameBeneath()) {}

  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    const int given = QProxyStyle::pixelMetric(metric, option, widget);
    if (metric != PM_TitleBarHeight || widget == nullptr) return given;
    return std::max(given, widget->fontMetrics().height() * 4 / 3);
  }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override {
    const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
    if (control != CC_TitleBar || bar == nullptr || widget == nullptr ||
        !widget->property(windows::kOtherChip).toBool()) {
      QProxyStyle::drawComplexControl(control, option, painter, widget);
      return;
    }
    QStyleOptionTitleBar warning(*bar);
    const QColor ground(0x9A, 0x4B, 0x00);
    for (const auto role : {QPalette::Highlight, QPalette::Window, QPalette::Base})
      warning.palette.setColor(role, ground);
    for (const auto role : {QPalette::HighlightedText, QPalette::WindowText, QPalette::Text}) {
      warning.palette.setColor(role, Qt::white);
    }
    QProxyStyle::drawComplexControl(control, &warning, painter, widget);
  }
};

/// Set on a frame that has not been placed yet; the desk does not scroll to it.
constexpr char kOpens[] = "opens";

/// Properties of a restored frame: the place asked for, and the place that the desk had room for.
constexpr char kAskedPlace[] = "askedPlace";
constexpr char kGivenPlace[] = "givenPlace";

/// A frame's own close shortcuts differ between desktops and would make the desk's ambiguous. The menu still shows the
/// key.
void LeaveCloseKeysToDesk(const QMdiSubWindow& frame) {
  if (frame.systemMenu() == nullptr) return;
  for (QAction* action : frame.systemMenu()->actions()) {
    if (action->shortcuts().isEmpty()) continue;
    action->setShortcuts(QList<QKeySequence>());
    action->setText(action->text() + "\tCtrl+W");
  }
}

/// The distance to scroll so that `first` to `last` lie within `room` pixels; the beginning has priority over the end.
int Missing(int first, int last, int room) {
  if (first < 0) return first;
  return std::max(0, std::min(first, last + 1 - room));
}

}  // namespace

MdiDesk::MdiDesk(QWidget* parent) : QMdiArea(parent), titleBars_(new TitleBarStyle) {
  titleBars_->setParent(this);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  for (const char* keys : {"Ctrl+W", "Ctrl+F4"}) {
    auto* close = new QShortcut(QKeySequence(keys), this);
    close->setAutoRepeat(false);  // a held key closes one window, not all
    connect(close, &QShortcut::activated, this, &MdiDesk::CloseCurrent);
  }
  // Closing a window activates the one used before it. The user maximises windows individually.
  setActivationOrder(ActivationHistoryOrder);
  setOption(DontMaximizeSubWindowOnActivation);
  focusWatch_ = connect(qApp, &QApplication::focusChanged, this,
                        [this](const QWidget* /*old*/, const QWidget* now) { BringInSight(now); });
}

MdiDesk::~MdiDesk() {
  // The windows in it are destroyed after this, and lose the focus then.
  disconnect(focusWatch_);
}

QMdiSubWindow& MdiDesk::AddFrame(QWidget& window) {
  QMdiSubWindow* frame = addSubWindow(&window);
  frame->setStyle(titleBars_);
  frame->setProperty(kOpens, true);
  // Otherwise the scroll range of closed windows would leave a scroll bar beside an empty desk.
  connect(frame, &QObject::destroyed, this, [this] {
    if (!subWindowList().isEmpty()) return;
    for (QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()}) bar->setRange(0, 0);
  });
  frame->setAttribute(Qt::WA_DeleteOnClose);
  LeaveCloseKeysToDesk(*frame);
  // Queued: during the state change, the frame does not have its new size yet. It may be gone by then.
  connect(
      frame, &QMdiSubWindow::windowStateChanged, this,
      [this, alive = QPointer(frame)] {
        if (alive != nullptr) RestoreTooLarge(*alive);
      },
      Qt::QueuedConnection);
  return *frame;
}

void MdiDesk::CloseCurrent() {
  if (QMdiSubWindow* frame = currentSubWindow()) frame->close();
}

void MdiDesk::BringInside(QMdiSubWindow& frame) {
  frame.setProperty(kOpens, false);
  if (frame.isMaximized() || frame.isMinimized()) return;
  const QSize room = viewport()->size() - frame.size();
  frame.move(std::clamp(frame.x(), 0, std::max(0, room.width())), std::clamp(frame.y(), 0, std::max(0, room.height())));
}

void MdiDesk::PutBack(QMdiSubWindow& frame, const QRect& place) {
  frame.setProperty(kAskedPlace, place);
  PutInside(frame, place);
}

void MdiDesk::PutInside(QMdiSubWindow& frame, const QRect& place) {
  frame.resize(place.size().boundedTo(viewport()->size()).expandedTo(frame.minimumSizeHint()));
  frame.move(place.topLeft());
  BringInside(frame);
  frame.setProperty(kGivenPlace, frame.geometry());
}

void MdiDesk::Tile() {
  std::vector<QMdiSubWindow*> frames;
  std::vector<QSize> least;
  for (QMdiSubWindow* frame : subWindowList(CreationOrder)) {
    if (frame->isHidden() || frame->isMinimized()) continue;
    if (frame->isMaximized()) frame->showNormal();
    frames.push_back(frame);
    least.push_back(frame->minimumSizeHint().expandedTo(frame->minimumSize()));
  }
  // Scroll back first, so that places count from the visible corner.
  for (QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()}) bar->setValue(bar->minimum());
  const std::vector<QRect> places = TileInto(maximumViewportSize(), least);
  for (std::size_t i = 0; i < frames.size(); ++i) frames[i]->setGeometry(places[i]);
}

void MdiDesk::RestoreTooLarge(QMdiSubWindow& frame) {
  const QSize room = viewport()->size();
  if (frame.isMaximized() && frame.size() != frame.size().boundedTo(room)) frame.showNormal();
}

void MdiDesk::resizeEvent(QResizeEvent* event) {
  QMdiArea::resizeEvent(event);
  for (QMdiSubWindow* frame : subWindowList()) {
    RestoreTooLarge(*frame);
    const QVariant asked = frame->property(kAskedPlace);
    if (!asked.isValid()) continue;
    if (frame->geometry() == frame->property(kGivenPlace).toRect()) {
      PutInside(*frame, asked.toRect());
    } else {
      frame->setProperty(kAskedPlace, {});  // the user has moved it
    }
  }
}

void MdiDesk::BringInSight(const QWidget* control) {
  // Do not move what the user is about to click.
  if (control == nullptr || !viewport()->isAncestorOf(control) || QApplication::mouseButtons() != Qt::NoButton) return;
  for (const QMdiSubWindow* frame : subWindowList()) {
    if (frame->isAncestorOf(control) && frame->property(kOpens).toBool()) return;
  }
  const QRect place(control->mapTo(viewport(), QPoint(0, 0)), control->size());
  QScrollBar* across = horizontalScrollBar();
  QScrollBar* down = verticalScrollBar();
  across->setValue(across->value() + Missing(place.left(), place.right(), viewport()->width()));
  down->setValue(down->value() + Missing(place.top(), place.bottom(), viewport()->height()));
}

}  // namespace zth::shell
