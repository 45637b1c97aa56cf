#include "widgets/StripMenu.h"

#include <QAction>
#include <QMenu>

#include "widgets/Drawings.h"
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

void AddPictureFiles(QMenu& menu, Strip& strip) {
  using File = StripFiles::File;
  const bool out = strip.Files().HasOutlets();
  AddEntry(
      menu, strip, QStringLiteral("mnuSavePng"), QStringLiteral("Save Picture as &PNG..."),
      [&strip] { strip.Files().AskAndSave(File::Png); }, out);
  if (!WritesSvg()) return;
  AddEntry(
      menu, strip, QStringLiteral("mnuSaveSvg"), QStringLiteral("Save Picture as &SVG..."),
      [&strip] { strip.Files().AskAndSave(File::Svg); }, out);
}

void AddData(QMenu& menu, Strip& strip) {
  const bool out = strip.Files().HasOutlets();
  AddEntry(
      menu, strip, QStringLiteral("mnuCopyData"), QStringLiteral("Copy Visible &Data"),
      [&strip] { strip.Files().CopyData(); }, out);
  AddEntry(
      menu, strip, QStringLiteral("mnuSaveCsv"), QStringLiteral("Save &Visible Data as CSV..."),
      [&strip] { strip.Files().AskAndSave(StripFiles::File::Csv); }, out);
}

void AddLive(QMenu& menu, Strip& strip) {
  if (strip.IsXY()) return;
  const auto add = [&](const char* name, const char* text, bool enabled) {
    AddEntry(
        menu, strip, QLatin1String(name), QLatin1String(text), [&strip] { strip.ToggleHold(); }, enabled);
  };
  add("mnuHold", "&Hold\tH", !strip.Held());
  add("mnuLive", "&Back to Live\tEnd", strip.Held());
  if (!strip.HasTimeOfDay()) return;
  QAction& day = AddEntry(menu, strip, QStringLiteral("mnuTimeOfDay"), QStringLiteral("Time &of Day\tT"),
                          [&strip] { strip.SetTimeOfDay(!strip.TimeOfDay()); });
  day.setCheckable(true);
  day.setChecked(strip.TimeOfDay());
}

}  // namespace

QMenu& MakeStripMenu(Strip& strip) {
  QMenu& menu = MakePopUpMenu(strip, QStringLiteral("mnuStrip"));
  AddEntry(
      menu, strip, QStringLiteral("mnuCopyPicture"), QStringLiteral("&Copy Picture\tCtrl+C"),
      [&strip] { strip.Files().CopyPicture(); }, strip.Files().HasOutlets());
  AddPictureFiles(menu, strip);
  menu.addSeparator();
  AddData(menu, strip);
  menu.addSeparator();
  AddFits(menu, strip);
  AddEntry(menu, strip, QStringLiteral("mnuStartRanges"), QStringLiteral("Start &Ranges\tHome"),
           [&strip] { strip.ResetRanges(); });
  AddLive(menu, strip);
  menu.addSeparator();
  AddTraces(menu, strip);
  return menu;
}

QMenu& MakeExportMenu(Strip& strip) {
  QMenu& menu = MakePopUpMenu(strip, QStringLiteral("mnuStripExport"));
  AddPictureFiles(menu, strip);
  menu.addSeparator();
  AddData(menu, strip);
  return menu;
}

}  // namespace zth::widgets
