#include "widgets/StripMenu.h"

#include <QAction>
#include <QMenu>

#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

template <class Handler>
QAction* Add(QMenu& menu, const char* name, const QString& text, Handler handler, bool enabled = true) {
  QAction* action = menu.addAction(text);
  action->setObjectName(QLatin1String(name));
  action->setEnabled(enabled);
  QObject::connect(action, &QAction::triggered, &menu, handler);
  return action;
}

void AddFits(QMenu& menu, Strip& strip) {
  const int axes = strip.AxisCount();
  for (int i = 0; i < axes; ++i) {
    const QString text = axes == 1 ? QStringLiteral("&Fit Y Axis to Data")
                         : i == 0  ? QStringLiteral("&Fit Upper Axis to Data")
                         : i == 1  ? QStringLiteral("Fit &Lower Axis to Data")
                                   : QStringLiteral("Fit Axis %1 to Data").arg(i + 1);
    Add(menu, "mnuFit", text, [&strip, i] { strip.FitAxis(i); })->setObjectName(QStringLiteral("mnuFit(%1)").arg(i));
  }
}

void AddTraces(QMenu& menu, Strip& strip) {
  QMenu* traces = menu.addMenu(QStringLiteral("&Traces"));
  traces->setObjectName(QStringLiteral("mnuTraces"));
  for (int t = 0; t < strip.TraceCount(); ++t) {
    if (!strip.HasLegend(t)) continue;
    QAction* action =
        Add(*traces, "mnuTrace", strip.TraceName(t), [&strip, t] { strip.SetTraceVisible(t, !strip.TraceVisible(t)); });
    action->setObjectName(QStringLiteral("mnuTrace(%1)").arg(t));
    action->setCheckable(true);
    action->setChecked(strip.TraceVisible(t));
  }
  traces->setEnabled(!traces->isEmpty());
}

}  // namespace

QMenu* MakeStripMenu(Strip& strip) {
  auto* menu = new QMenu(&strip);
  menu->setObjectName(QStringLiteral("mnuStrip"));
  QObject::connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
  const bool files = strip.HasFileDialogs();
  Add(*menu, "mnuCopyPicture", QStringLiteral("&Copy Picture"), [&strip] { strip.CopyPicture(); });
  Add(
      *menu, "mnuSavePng", QStringLiteral("Save Picture as &PNG..."), [&strip] { strip.AskAndSave(Strip::File::Png); },
      files);
  Add(
      *menu, "mnuSaveSvg", QStringLiteral("Save Picture as &SVG..."), [&strip] { strip.AskAndSave(Strip::File::Svg); },
      files);
  menu->addSeparator();
  Add(*menu, "mnuCopyData", QStringLiteral("Copy Visible &Data"), [&strip] { strip.CopyData(); });
  Add(
      *menu, "mnuSaveCsv", QStringLiteral("Save &Visible Data as CSV..."),
      [&strip] { strip.AskAndSave(Strip::File::Csv); }, files);
  menu->addSeparator();
  AddFits(*menu, strip);
  Add(*menu, "mnuStartRanges", QStringLiteral("Start &Ranges\tHome"), [&strip] { strip.ResetRanges(); });
  if (!strip.IsXY()) {
    Add(
        *menu, "mnuLive", QStringLiteral("&Back to Live\tEnd"), [&strip] { strip.GoLive(); }, strip.Held());
  }
  menu->addSeparator();
  AddTraces(*menu, strip);
  return menu;
}

}  // namespace zth::widgets
