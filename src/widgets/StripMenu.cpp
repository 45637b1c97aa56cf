#include "widgets/StripMenu.h"

#include <QAction>
#include <QMenu>

#include "widgets/PopUpMenu.h"
#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

void AddFits(QMenu& menu, Strip& strip) {
  const int axes = strip.AxisCount();
  for (int i = 0; i < axes; ++i) {
    const QString text = axes == 1 ? QStringLiteral("&Fit Y Axis to Data")
                         : i == 0  ? QStringLiteral("&Fit Upper Axis to Data")
                         : i == 1  ? QStringLiteral("Fit &Lower Axis to Data")
                                   : QStringLiteral("Fit Axis %1 to Data").arg(i + 1);
    AddEntry(menu, strip, QStringLiteral("mnuFit(%1)").arg(i), text, [&strip, i] { strip.FitAxis(i); });
  }
}

void AddTraces(QMenu& menu, Strip& strip) {
  QMenu* traces = menu.addMenu(QStringLiteral("&Traces"));
  traces->setObjectName(QStringLiteral("mnuTraces"));
  for (int t = 0; t < strip.TraceCount(); ++t) {
    if (!strip.HasLegend(t)) continue;
    QAction& action = AddEntry(*traces, strip, QStringLiteral("mnuTrace(%1)").arg(t), strip.TraceName(t),
                               [&strip, t] { strip.SetTraceVisible(t, !strip.TraceVisible(t)); });
    action.setCheckable(true);
    action.setChecked(strip.TraceVisible(t));
  }
  traces->setEnabled(!traces->isEmpty());
}

}  // namespace

QMenu& MakeStripMenu(Strip& strip) {
  QMenu& menu = MakePopUpMenu(strip, QStringLiteral("mnuStrip"));
  const auto add = [&](const char* name, const QString& text, std::function<void()> handler, bool enabled) {
    AddEntry(menu, strip, QLatin1String(name), text, std::move(handler), enabled);
  };
  const bool out = strip.Files().HasOutlets();
  using File = StripFiles::File;
  add(
      "mnuCopyPicture", QStringLiteral("&Copy Picture"), [&strip] { strip.Files().CopyPicture(); }, out);
  add(
      "mnuSavePng", QStringLiteral("Save Picture as &PNG..."), [&strip] { strip.Files().AskAndSave(File::Png); }, out);
  add(
      "mnuSaveSvg", QStringLiteral("Save Picture as &SVG..."), [&strip] { strip.Files().AskAndSave(File::Svg); }, out);
  menu.addSeparator();
  add(
      "mnuCopyData", QStringLiteral("Copy Visible &Data"), [&strip] { strip.Files().CopyData(); }, out);
  add(
      "mnuSaveCsv", QStringLiteral("Save &Visible Data as CSV..."), [&strip] { strip.Files().AskAndSave(File::Csv); },
      out);
  menu.addSeparator();
  AddFits(menu, strip);
  add(
      "mnuStartRanges", QStringLiteral("Start &Ranges\tHome"), [&strip] { strip.ResetRanges(); }, true);
  if (!strip.IsXY())
    add(
        "mnuLive", QStringLiteral("&Back to Live\tEnd"), [&strip] { strip.GoLive(); }, strip.Held());
  menu.addSeparator();
  AddTraces(menu, strip);
  return menu;
}

}  // namespace zth::widgets
