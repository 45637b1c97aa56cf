#include "widgets/StripBar.h"

#include <algorithm>

#include <QMenu>
#include <QToolButton>

#include "platform/Guard.h"
#include "widgets/PaletteIcon.h"
#include "widgets/Strip.h"
#include "widgets/StripMenu.h"

namespace zth::widgets {
namespace {

constexpr int kEdge = 4;    // distance from the chart's right edge
constexpr int kApart = 12;  // distance from the title
constexpr int kAround = 6;  // an icon's margins, both sides added
constexpr int kLeastSide = 16;

constexpr char kHold[] = R"(<path d="M8 5v14M16 5v14" stroke-width="3"/>)";
constexpr char kLive[] = R"(<path d="M7 4.500l12 7.500-12 7.500z"/>)";
constexpr char kFit[] =
    R"(<path d="M4 3.500h16M4 20.500h16"/><path d="M12 7v10M9 9.500L12 6.500l3 3M9 14.500l3 3 3-3" stroke="#d9622b"/>)";
constexpr char kStart[] = R"(<path d="M4.500 12a7.500 7.500 0 1 0 2.600-5.700"/><path d="M7.500 2.500v4.300h4.300"/>)";
constexpr char kDay[] = R"(<circle cx="12" cy="12" r="8.500"/><path d="M12 6.500V12l4 2.500" stroke="#d9622b"/>)";
constexpr char kCopy[] =
    R"(<rect x="8.500" y="8.500" width="11.500" height="12" rx="1.500"/><path d="M5.500 15.500H4V3.500h11.500V5"/>)";
constexpr char kExport[] = R"(<path d="M4 14v6.500h16V14"/><path d="M12 3.500v11M8 10.500l4 4 4-4" stroke="#d9622b"/>)";

/// As small as its icon allows: the style's own margins would make the title's row higher.
class SlimButton final : public QToolButton {
 public:
  using QToolButton::QToolButton;
  QSize sizeHint() const override { return iconSize() + QSize(kAround, kAround); }
  QSize minimumSizeHint() const override { return sizeHint(); }
};

QIcon Icon(const char* strokes) {
  return PaletteIcon(QByteArray(R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24" fill="none" )"
                                R"(stroke="currentColor" stroke-width="1.7" stroke-linecap="round" )"
                                R"(stroke-linejoin="round">)") +
                     strokes + "</svg>");
}

void Describe(QToolButton& button, const char* strokes, const QString& name, const QString& tip) {
  button.setIcon(Icon(strokes));
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
  Describe(*fit, kFit, tr("Fit to Data"), tr("Fit the Y axes to the data in sight (A)"));
  QToolButton* start = Add("cmdStripStart", [&strip] { strip.ResetRanges(); });
  Describe(*start, kStart, tr("Start Ranges"), tr("Back to the start ranges (Home)"));
  day_ = Add("cmdStripTimeOfDay", [&strip] { strip.SetTimeOfDay(!strip.TimeOfDay()); });
  day_->setCheckable(true);
  Describe(*day_, kDay, tr("Time of Day"), tr("Label the axis with the time of day (T)"));
  QToolButton* copy = Add("cmdStripCopy", [&strip] { strip.Files().CopyPicture(); });
  Describe(*copy, kCopy, tr("Copy Picture"), tr("Copy the picture (Ctrl+C)"));
  export_ = Add("cmdStripExport", [this] { OpenExport(); });
  Describe(*export_, kExport, tr("Export"), tr("Save the picture or the data (Ctrl+E)"));
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
  Describe(*hold_, held ? kLive : kHold, name,
           held ? tr("Back to live (End)") : tr("Hold the picture where it is (H)"));
}

void StripBar::OpenExport() {
  QMenu& menu = MakeExportMenu(strip_);
  menu.popup(isVisible() ? export_->mapToGlobal(export_->rect().bottomLeft())
                         : strip_.mapToGlobal(strip_.rect().center()));
}

}  // namespace zth::widgets
