// Restoring windows at the start, Tile, and the size that charts open with.
#include <QAction>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

#include "shell/Tiling.h"
#include "tests/support/Steps.h"
#include "widgets/Strip.h"

namespace zth::testing {
namespace {

QMdiArea& Area(Desk& desk) {
  return *desk.Main().findChild<QMdiArea*>();
}

QAction& Entry(Desk& desk, const char* text) {
  auto& menu = *desk.Main().findChild<QMenu*>("mnuWindow");
  emit menu.aboutToShow();
  for (QAction* entry : menu.actions()) {
    if (entry->text().remove('&') == text) return *entry;
  }
  throw std::runtime_error(text);
}

/// Each window with its place, in the order of opening; the active one is marked with a star.
std::string Standing(Desk& desk) {
  QStringList told;
  for (const QMdiSubWindow* frame : Area(desk).subWindowList()) {
    const QRect at = frame->geometry();
    const QString place = frame->isMaximized()   ? "max"
                          : frame->isMinimized() ? "min"
                                                 : QString("%1,%2").arg(at.x()).arg(at.y());
    told << frame->widget()->objectName() + (frame == Area(desk).currentSubWindow() ? "* " : " ") + place;
  }
  return told.join("; ").toStdString();
}

void Size(Desk& desk, const QSize& size) {
  desk.Main().showNormal();
  desk.Main().resize(size);
  QApplication::processEvents();
}

using Kept = std::map<QString, QString>;

/// What a user who wants windows restored leaves behind: zoomed charts, a moved window, a maximised one.
Kept KeptByAUser(bool wanted = true) {
  Desk desk;
  desk.Start();
  Size(desk, {1366, 768});
  Entry(desk, "Restore Windows at Start").setChecked(wanted);
  auto& charts = desk.Open("frmGraph");
  auto& chart = Desk::Get<widgets::Strip>(charts, "stpGraph(3)");
  chart.SetAxisIndex(1);
  chart.SetAxisMin(2000);
  chart.SetAxisMax(4000);
  chart.SetXSpan(30);
  chart.SetAxisIndex(0);
  charts.parentWidget()->setGeometry(150, 40, 900, 560);
  desk.Open("frmAbout");
  desk.Open("frmTherm").parentWidget()->move(321, 12);
  desk.Open("frmManualControl").parentWidget()->showMinimized();
  Area(desk).setActiveSubWindow(qobject_cast<QMdiSubWindow*>(charts.parentWidget()));
  desk.Main().close();
  return desk.settings.values;
}

/// The transfers of a start with those settings.
Traffic Restore(Desk& desk, const Kept& kept) {
  desk.settings.values = kept;
  desk.settings.values["MainWidth"] = "20490";
  desk.settings.values["MainHeight"] = "11520";
  desk.settings.values["OpenEasySetup"] = "False";
  EXPECT_EQ(desk.RunMain(), std::nullopt);
  Traffic sent = desk.board.TakeTraffic();
  Size(desk, {1366, 768});
  return sent;
}

TEST(Layout, ComesBackWithPlacesAndZoomWhenTheUserWantsThat) {
  const Kept kept = KeptByAUser();
  Desk desk;
  const Traffic sent = Restore(desk, kept);
  EXPECT_EQ(Standing(desk), "frmGraph* 150,40; frmTherm 321,12; frmManualControl min") << "About stays away";
  const Traffic load = T("R03 B0D+3 B54+2");
  ASSERT_GE(sent.size(), load.size());
  EXPECT_EQ(Traffic(sent.end() - static_cast<std::ptrdiff_t>(load.size()), sent.end()), load)
      << "with the reads of their opening, and no others";
  auto& charts = *desk.Main().FindWindow("frmGraph");
  EXPECT_EQ(charts.parentWidget()->size(), QSize(900, 560));
  auto& chart = Desk::Get<widgets::Strip>(charts, "stpGraph(3)");
  EXPECT_EQ(chart.XSpan(), 30);
  EXPECT_FALSE(chart.Held());
  EXPECT_EQ(chart.AxisMax(), 60) << "of the first axis, which nobody zoomed";
  chart.SetAxisIndex(1);
  EXPECT_EQ(chart.AxisMin(), 2000);
  EXPECT_EQ(chart.AxisMax(), 4000);
  EXPECT_FALSE(kept.at("WindowLayout").contains("stpGraph(2)")) << "what the user has not zoomed is not kept";
}

TEST(Layout, IsNeitherKeptNorRestoredUnlessTheUserWantsIt) {
  const Kept kept = KeptByAUser(false);
  EXPECT_FALSE(kept.contains("WindowLayout"));
  Kept off = KeptByAUser();
  off["RestoreWindows"] = "False";
  Desk desk;
  Restore(desk, off);
  EXPECT_EQ(Standing(desk), "");
  EXPECT_FALSE(Entry(desk, "Restore Windows at Start").isChecked());
  desk.Open("frmTherm");
  desk.Main().findChild<QAction*>("mnuExit")->trigger();
  EXPECT_EQ(desk.settings.values["WindowLayout"], off["WindowLayout"]) << "Exit stores nothing";
}

TEST(Layout, ThatIsDamagedIsIgnoredAsFarAsItIs) {
  for (const auto& [text, standing] : {
           std::pair{"", ""},
           {"frmTherm", ""},
           {"{\"Windows\": 5}", ""},
           {"[{\"Name\":\"frmTherm\"}]", ""},
           {R"({"Windows":[{"Name":"frmNowhere"},{"Name":7},3,{"Name":"frmSave","Place":[1,2]}]})", "frmSave"},
           {R"({"Windows":[{"Name":"frmSave","Place":[10,1e9,1,1]},{"Name":"frmSave"}],"Active":"frmX"})", "frmSave"},
           {R"json({"Windows":[{"Name":"frmGraph","Charts":{"stpGraph(3)":{"XSpan":"x","Axes":[[9,1]]}}}]})json",
            "frmGraph"},
       }) {
    Desk desk;
    Restore(desk, {{"RestoreWindows", "True"}, {"WindowLayout", text}});
    EXPECT_EQ(QString::fromStdString(Standing(desk)).section('*', 0, 0), standing) << text;
    if (QString(standing) != "frmGraph") continue;
    auto& chart = Desk::Get<widgets::Strip>(*desk.Main().FindWindow("frmGraph"), "stpGraph(3)");
    EXPECT_EQ(std::tuple(chart.XSpan(), chart.AxisMin(), chart.AxisMax()), std::tuple(100.0, 0.0, 60.0));
  }
}

TEST(Layout, APlaceOffTheDeskIsBroughtBackAndFollowsTheDeskUntilItIsMoved) {
  Desk desk;
  Restore(desk, {{"RestoreWindows", "True"},
                 {"WindowLayout", R"({"Windows":[{"Name":"frmSave","Place":[4000,-90,300,200]}]})"}});
  QWidget& frame = *desk.Main().FindWindow("frmSave")->parentWidget();
  const auto inside = [&] { return Area(desk).viewport()->rect().contains(frame.geometry()); };
  EXPECT_TRUE(inside());
  Size(desk, {1000, 600});
  EXPECT_TRUE(inside()) << "the main window has got its size only now";
  frame.move(20, 30);
  Size(desk, {1366, 768});
  EXPECT_EQ(frame.pos(), QPoint(20, 30));
}

TEST(Layout, KeepsTheTimeOfDayOfCharts) {
  Desk desk;
  const char* layout = R"json({"Windows":[{"Name":"frmGraph","Charts":{"stpGraph(3)":{"TimeOfDay":true}}}]})json";
  Restore(desk, {{"RestoreWindows", "True"}, {"WindowLayout", layout}});
  EXPECT_TRUE(Desk::Get<widgets::Strip>(*desk.Main().FindWindow("frmGraph"), "stpGraph(0)").TimeOfDay());
  desk.Main().close();
  EXPECT_TRUE(desk.settings.values["WindowLayout"].contains("\"TimeOfDay\":true"));
}

TEST(Layout, OfAStartThatTheLinkCutsShortIsKeptWhole) {
  const Kept kept = KeptByAUser();
  Desk desk;
  desk.settings.values = kept;
  desk.settings.values["OpenEasySetup"] = "False";
  desk.board.failMatching = "usb R 58:03";  // the first read of frmTherm
  desk.prompts.script = {platform::BoxAnswer::Ok};
  EXPECT_NE(desk.RunMain(), std::nullopt);
  EXPECT_EQ(desk.settings.values["WindowLayout"], kept.at("WindowLayout"));
}

TEST(Tiling, GivesEachWindowItsLeastAndFillsTheDesk) {
  for (const auto& least : {std::vector<QSize>{{900, 560}},
                            {{640, 400}, {300, 150}},
                            {{640, 330}, {640, 330}, {300, 150}},
                            {{700, 600}, {300, 200}, {300, 200}, {300, 200}},
                            {{400, 300}, {400, 300}, {400, 300}, {400, 300}, {200, 100}}}) {
    const QSize desk(1366, 660);
    const std::vector<QRect> places = shell::TileInto(desk, least);
    int area = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
      EXPECT_TRUE(QRect({}, desk).contains(places[i]));
      EXPECT_EQ(places[i].size().expandedTo(least[i]), places[i].size());
      for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(places[i].intersects(places[j]));
      area += places[i].width() * places[i].height();
    }
    EXPECT_EQ(area, 1366 * 660) << least.size();
  }
  EXPECT_TRUE(shell::TileInto({100, 100}, {}).empty());
}

TEST(Tiling, OfChartsNeedsNoScrollBar) {
  Desk desk;
  desk.Start();
  Size(desk, {1366, 768});
  const QSize room = Area(desk).maximumViewportSize();
  auto& graph = desk.Open("frmGraph");
  EXPECT_GE(graph.parentWidget()->width(), room.width() * 2 / 3);
  for (const char* name : {"frmHeaters", "frmManualControl"}) desk.Open(name);
  Entry(desk, "Tile").trigger();
  QApplication::processEvents();
  for (const QMdiSubWindow* frame : Area(desk).subWindowList()) {
    EXPECT_TRUE(Area(desk).viewport()->rect().contains(frame->geometry()))
        << frame->widget()->objectName().toStdString();
  }
  EXPECT_EQ(Area(desk).maximumViewportSize(), room) << "no bar takes a part of it";
}

}  // namespace
}  // namespace zth::testing
