#include <QLineEdit>
#include <QTest>

#include "tests/support/Seen.h"
#include "tests/windows/fancontrol/LiveCases.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/DotTrail.h"

namespace zth::testing {
namespace {

TEST(AutomaticControl, ShowsWhatTheRegistersHold) {
  const WindowDesk desk("frmAutoGraph",
                        "0D=FD 2C=80 25=02 26=01 21=9F 22=BF 23=DF 24=FF 28=00 29=33 2A=66 2B=99 5C=36 5D=40 5E=4A "
                        "5F=54 60=C0 61=D1 62=E2 63=F3 4C=64 4D=65 4E=66 4F=67 50=C8 51=C9 52=CA 53=CB 54=21 55=43");
  EXPECT_EQ(desk.Held("chkThermFS1 chkThermFS2 txtMaxPWM"), "0|1|50");
  EXPECT_EQ(desk.Held("cmbControl(0..3) txtMinPWM(0..3) chkMinSpeed(0..3)"), "4|5|6|7|0|20|40|60|0|1|1|0");
  EXPECT_EQ(desk.Held("txtTmin(0..3) cmbTrange(0..3) txtTminHyst(0..3)"), "-10|0|10|20|12|13|14|15|0|1|2|3");
  EXPECT_EQ(desk.Held("txtTH1(0..3) txtTH2(0..3) txtHyst(0..3)"), "36|37|38|39|136|137|138|139|1|2|3|4");
}

TEST(AutomaticControl, EachControlWritesItsOwnBitsAtOnce) {
  // 0xA5 everywhere: both THERM options show as bit 0 set, bit 1 clear; Min1 and Min3 ticked. Numbers stay within a
  // byte, but txtHyst(2) reaches its neighbour.
  RunLiveCases(
      "frmAutoGraph", 0xA5,
      "chkThermFS1: R0D W0D=A4, chkThermFS2: R0D W0D=A7, txtMaxPWM=50: W2C=80, txtMaxPWM=: W2C=00, "
      "txtMaxPWM=101: W2C=FF, cmbControl(2)=7: R23 W23=E5 R23, txtMinPWM(3)=10: W2B=1A, "
      "chkMinSpeed(1): R25 W25=A7, chkMinSpeed(2): R26 W26=A4, txtTmin(1)=45.5: W5D=6E, txtTmin(0)=-65: W5C=00, "
      "txtTmin(3)=: W5F=40, cmbTrange(3)=2: R63 W63=25, txtTminHyst(0)=20: R60 W60=A4, txtTH1(2)=300: W4E=FF, "
      "txtTH2(3)=10: W53=4A, txtHyst(0)=2: R54 W54=A2, txtHyst(1)=2: R54 W54=25, txtHyst(2)=20: R55 W55=B4, "
      "txtHyst(3)=1.5: R55 W55=1D");
}

TEST(AutomaticControl, EachKeyOfATextIsSent) {
  WindowDesk desk("frmAutoGraph");
  auto& box = Desk::Get<QLineEdit>(*desk.window, "txtTmin(0)");
  box.selectAll();
  QTest::keyClicks(&box, "45");
  EXPECT_EQ(desk.board.TakeTraffic(), T("W5C=44 W5C=6D"));
  QTest::keyClick(&box, Qt::Key_Up);
  EXPECT_EQ(desk.board.TakeTraffic(), T("W5C=6E")) << "a step of the up-down writes as typing does";
}

/// PWM1 by Local, PWM2 manual, PWM3 by all four, PWM4 by Local and Remote3; all curves as in the model's example.
class Curves : public ::testing::Test {
 protected:
  Points Trace(int trace) { return PointsOf(chart, trace); }

  WindowDesk desk{"frmAutoGraph", Desk::Buses::Both, [](Desk& each) {
                    Put(each.board.Chip(),
                        "21=00 22=E0 23=C0 24=A0 0D=03 2C=FF 25..26=00 28..2B=40 5C..5F=5E 60..63=A4 88..8F=40 89=54 "
                        "8B=55 8D=56 8F=57 AA..AD=80");
                    each.Advance(1200);
                  }};
  widgets::Strip& chart = Desk::Get<widgets::Strip>(*desk.window, "stpGraph");
};

TEST_F(Curves, AreDrawnWithTheDotsOfTheCurrentTab) {
  const Points curve{{-40, 0}, {30, 0}, {30, 25}, {53, 100}, {119, 100}};
  EXPECT_EQ(Trace(0), curve) << "drawn by the load itself";
  EXPECT_EQ(Trace(8), (Points{{26, 0}, {26, 25}, {30, 25}}));
  EXPECT_EQ(Trace(4), Points{});
  EXPECT_EQ(Captions(chart, 0, 5), "PWM1|Local||||Controlled By:");
  desk.Advance(400);
  EXPECT_EQ(Trace(4), (Points{{20.25, 50}, {20.25, 50}}));
  EXPECT_EQ(Trace(0), curve);

  desk.Do("tbPWM=2");
  for (int s = 0; s < 4; ++s) {
    EXPECT_EQ(Trace(s), curve) << s;
    EXPECT_EQ(Trace(s + 8), (Points{{26, 0}, {26, 25}, {30, 25}})) << s;
  }
  EXPECT_EQ(Captions(chart, 4, 4), "Remote3");
  desk.Advance(400);
  for (int s = 0; s < 4; ++s) EXPECT_EQ(Trace(s + 4), (Points{{20.25 + s, 50}, {20.25 + s, 50}})) << s;

  desk.Do("tbPWM=3");
  EXPECT_EQ(Captions(chart, 2, 2), "Remote3");
  EXPECT_EQ(Trace(2), Points{});

  desk.Do("tbPWM=1");
  EXPECT_EQ(Captions(chart, 0, 1), "PWM2|PWM2 is not under automatic control");
  desk.Advance(400);
  for (int trace = 0; trace < chart.TraceCount(); ++trace) EXPECT_EQ(Trace(trace), Points{});

  // The tab of the first source appears with that of the PWM.
  desk.Do("cmbControl(1)=3");
  EXPECT_EQ(desk.Held("tbTemp"), "3");
  EXPECT_EQ(Captions(chart, 1, 1), "Remote3");
}

TEST_F(Curves, FollowEachControlAtOnce) {
  // Each step continues from the one before it.
  const std::pair<const char*, const char*> rows[]{
      {"txtMinPWM(0)=50", "-40,0 30,0 30,50 46,100 119,100"},
      {"txtMaxPWM=75", "-40,0 30,0 30,50 38,75 119,75"},
      {"txtTmin(0)=20", "-40,0 20,0 20,50 28,75 119,75"},
      {"cmbTrange(0)=13", "-40,0 20,0 20,50 36,75 119,75"},
      {"chkMinSpeed(0)=1", "-40,50 20,50 20,50 36,75 119,75"},
      {"txtTH1(0)=60; chkThermFS1=1", "-40,50 20,50 20,50 36,75 60,75 60,100 119,100"},
      {"txtTH1(0)=65", "-40,50 20,50 20,50 36,75 65,75 65,100 119,100"},
      {"txtTH2(0)=40; chkThermFS2=1", "-40,50 20,50 20,50 36,75 40,75 40,100 119,100"},
      {"txtTH2(0)=50; chkMinSpeed(0)=0", "-40,0 20,0 20,50 36,75 50,75 50,100 119,100"},
      {"cmbControl(0)=4", ""},
      {"cmbControl(0)=3", "-40,0 30,0 30,50 38,75 119,100"},  // its limits are outside the chart
  };
  Put(desk.board.Chip(), "4F=FF 53=FF");
  desk.Reopen();
  for (const auto& [steps, curve] : rows) {
    desk.Do(steps);
    QStringList points;
    for (const auto& [x, y] : PointsOf(Desk::Get<widgets::Strip>(*desk.window, "stpGraph"), 0)) {
      points << QString("%1,%2").arg(x).arg(y);
    }
    EXPECT_EQ(points.join(' ').toStdString(), curve) << steps;
  }
  desk.Do("cmbControl(0)=0; txtTminHyst(0)=7");
  EXPECT_EQ(PointsOf(Desk::Get<widgets::Strip>(*desk.window, "stpGraph"), 8).front().first, 13);
}

TEST_F(Curves, HaveTheChipsOwnCornersBesideThem) {
  Put(desk.board.Chip(), "28=4D 60=84");  // 77 of 255 shows as 30 percent; 13.3 degrees
  desk.Reopen();
  auto& graph = Desk::Get<widgets::Strip>(*desk.window, "stpGraph");
  const auto corners = [&graph] { return PointsOf(graph, windows::kCornerTrace); };
  EXPECT_EQ(corners(), (Points{{30, 77 * 100.0 / 255}, {44.75, 100}}));
  desk.Do("txtMinPWM(0)=31; txtMinPWM(0)=30; txtMaxPWM=60");
  EXPECT_EQ(corners(), (Points{{30, 76 * 100.0 / 255}, {36.5, 60}})) << "30 percent goes to the chip as 76";
  desk.Do("txtTH1(0)=32; chkThermFS1=1");
  EXPECT_EQ(corners().back().first, 32);
  // Texts of the legend stay where they are, whatever it shows.
  const auto heading = [&graph] {
    const TextRecorder recorder(graph);
    for (const DrawnText& text : recorder.texts) {
      if (text.text == "Controlled By:") return text.place.left();
    }
    return -1.0;
  };
  const double left = heading();
  for (const char* control : {"cmbControl(0)=7", "cmbControl(0)=6"}) {
    desk.Do(control);
    EXPECT_EQ(heading(), left) << control;
  }
}

TEST_F(Curves, FollowTheChipsTminOfRemote1AndTheUsersZoom) {
  desk.Do("cmbControl(0)=1");
  Put(desk.board.Chip(), "5D=68");
  desk.Advance(1500);
  EXPECT_EQ(desk.Held("txtTmin(1)"), "30") << "the box stands still";
  EXPECT_EQ(Trace(0)[1], (std::pair<double, double>{40, 0}));
  chart.SetXEnd(50.4);
  chart.SetXSpan(20.5);
  desk.Advance(350);
  EXPECT_EQ(Trace(0), (Points{{30, 0}, {40, 0}, {40, 25}, {49, 100}}));
}

TEST_F(Curves, HaveADotThatLeavesATrailOfTheLastMinute) {
  desk.Advance(1000);
  Put(desk.board.Chip(), "89=5A");
  const auto trail = [&](int age) { return Trace(windows::kTrailTrace + 4 * age); };
  desk.Advance(2000);
  EXPECT_EQ(trail(0), (Points{{20.25, 50}, {26.25, 50}})) << "a place is kept once";
  desk.Advance(30000);
  EXPECT_EQ(trail(2), (Points{{20.25, 50}}));
  EXPECT_EQ(trail(0), (Points{{26.25, 50}}));
  desk.Advance(30000);
  for (int age = 1; age < windows::DotTrail::kAges; ++age) EXPECT_EQ(trail(age), Points{}) << age;
  desk.Do("tbPWM=3");
  EXPECT_EQ(trail(0), Points{}) << "another PWM's";
  EXPECT_GT(chart.TraceColour(windows::kTrailTrace).alpha(), chart.TraceColour(windows::kTrailTrace + 12).alpha());
}

}  // namespace
}  // namespace zth::testing
