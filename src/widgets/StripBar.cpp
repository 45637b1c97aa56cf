#include "widgets/StripBar.h"

#include <algorithm>

#include <QMenu>
#include <QToolButton>

#include "platform/Guard.h"
#include "widgets/PaletteIcon.h"
#include "widgets/Strip.h"
#include "widgets/StripMenu.h"

/// The icons are in a static library, and a program links only what it refers to. Q_INIT_RESOURCE must be outside any
/// namespace.
static void NameResources() {
  Q_INIT_RESOURCE(stripicons);
}

namespace zth::widgets {
namespace {

constexpr int kEdge = 4;    // distance from the chart's right edge
constexpr int kApart = 12;  // distance from the title
constexpr int kAround = 6;  // an icon's margins, both sides added
constexpr int kLeastSide = 16;

/// As small as its icon allows: the style's own margins would make the title's row higher.
class SlimButton final : public QToolButton {
 public:
  using QToolButton::QToolButton;
  QSize sizeHint() const override { return iconSize() + QSize(kAround, kAround); }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

QIcon Icon(const char* key) {
  NameResources();
  return PaletteIcon(QStringLiteral(":/widgets/icons/") + QLatin1String(key));
}

void Describe(QToolButton& button, const char* icon, const QString& name, const QString& tip) {
  button.setIcon(Icon(icon));
  button.setAccessibleName(name);
  button.setToolTip(tip);
}

}  // namespace

StripBar::StripBar(Strip& strip) : QWidget(&strip), strip_(strip) {
  setObjectName(QStringLiteral("fraStripBar"));
  setAutoFillBackground(true);
  setCursor(Qt::ArrowCursor);
  hold_ = Add("cmdStripHold", [&strip] { strip.ToggleHold(); });
  QToolButton* fit = Add("cmdStripFit", [&strip] { strip.FitAll(); });
  Describe(*fit, "Fit", tr("Fit to Data"), tr("Fit the Y axes to the data in sight (A)"));
  QToolButton* start = Add("cmdStripStart", [&strip] { strip.ResetRanges(); });
  Describe(*start, "Start", tr("Start Ranges"), tr("Back to the start ranges (Home)"));
  day_ = Add("cmdStripTimeOfDay", [&strip] { strip.SetTimeOfDay(!strip.TimeOfDay()); });
  day_->setCheckable(true);
  Describe(*day_, "Day", tr("Time of Day"), tr("Label the axis with the time of day (T)"));
  QToolButton* copy = Add("cmdStripCopy", [&strip] { strip.Files().CopyPicture(); });
  Describe(*copy, "Copy", tr("Copy Picture"), tr("Copy the picture (Ctrl+C)"));
  export_ = Add("cmdStripExport", [this] { OpenExport(); });
  Describe(*export_, "Export", tr("Export"), tr("Save the picture or the data (Ctrl+E)"));
  for (QToolButton* button : {copy, export_}) button->setVisible(strip.Files().HasOutlets());
  ShowState();
}

QToolButton* StripBar::Add(const char* name, std::function<void()> handler) {
  auto* button = new SlimButton(this);
  button->setObjectName(QLatin1String(name));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::clicked, &strip_, platform::Guarded(std::move(handler)));
  buttons_.push_back(button);
  return button;
}

void StripBar::Place(int height, int titleEnd) {
  const int side = std::max(height - 4, kLeastSide);
  int x = 0;
  for (QToolButton* button : buttons_) {
    if (button->isHidden()) continue;
    button->setIconSize(QSize(side - kAround, side - kAround));
    button->setGeometry(x, 0, side, side);
    x += side;
  }
  const int left = strip_.width() - kEdge - x;
  setGeometry(left, 2, x, side);
  setVisible(left >= titleEnd + kApart);
}

void StripBar::ShowState() {
  hold_->setVisible(!strip_.IsXY());
  day_->setVisible(strip_.HasTimeOfDay());
  day_->setChecked(strip_.TimeOfDay());
  const bool held = strip_.Held();
  const QString name = held ? tr("Live") : tr("Hold");
  if (hold_->accessibleName() == name) return;
  Describe(*hold_, held ? "Live" : "Hold", name,
           held ? tr("Back to live (End)") : tr("Hold the picture where it is (H)"));
}

void StripBar::OpenExport() {
  QMenu& menu = MakeExportMenu(strip_);
  menu.popup(isVisible() ? export_->mapToGlobal(export_->rect().bottomLeft())
                         : strip_.mapToGlobal(strip_.rect().center()));
}

}  // namespace zth::widgets
