#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <gtest/gtest.h>

#include "chip/Measurements.h"
#include "tests/support/Desk.h"
#include "tests/windows/fancontrol/LiveCases.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"
#include "windows/fancontrol/Charts.h"
#include "windows/fancontrol/DotTrail.h"

namespace zth::testing {
namespace {

using Points = std::vector<std::pair<double, double>>;

widgets::Strip& Chart(const QWidget& window) {
  return Desk::Get<widgets::Strip>(window, "stpGraph");
}

Points PointsOf(const QWidget& window, int trace) {
  Points points;
  for (const QVariant& pair : Chart(window).TracePoints(trace)) {
    points.emplace_back(pair.toList()[0].toDouble(), pair.toList()[1].toDouble());
  }
  return points;
}

QString LabelText(const QWidget& window, int slot) {
  Chart(window).SetLabelIndex(slot);
  return Chart(window).Caption();
}

Traffic LoadTransfers() {
  return Concat(R(0x0D), R(0x2C), B(0x21, 4), B(0x25, 2), B(0x28, 4), B(0x5C, 4), B(0x60, 4), B(0x54, 2), B(0x4C, 8));
}

TEST(AutomaticControl, LoadReadsInOrderAndWritesNothing) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const int fill : {0x00, 0xFF, 0xA5}) {
      Desk desk(buses);
      desk.Start();
      desk.board.Chip().fill(static_cast<std::uint8_t>(fill));
      desk.Open("frmAutoGraph");
      EXPECT_EQ(desk.board.TakeTraffic(), LoadTransfers()) << fill;
      EXPECT_TRUE(windows::AutoGraphOpen);
    }
  }
}

TEST(AutomaticControl, ShowsWhatTheRegistersHold) {
  Desk desk;
  desk.Start();
  auto& chip = desk.board.Chip();
  chip[0x0D] = 0xFD, chip[0x2C] = 128, chip[0x25] = 0x02, chip[0x26] = 0x01;
  for (std::size_t i = 0; i < 4; ++i) {
    chip[0x21 + i] = static_cast<std::uint8_t>((i + 4) << 5 | 0x1F);
    chip[0x28 + i] = static_cast<std::uint8_t>(51 * i);
    chip[0x5C + i] = static_cast<std::uint8_t>(54 + 10 * i);
    chip[0x60 + i] = static_cast<std::uint8_t>(0x10 * (12 + i) | i);
    chip[0x4C + i] = static_cast<std::uint8_t>(100 + i);
    chip[0x50 + i] = static_cast<std::uint8_t>(200 + i);
  }
  chip[0x54] = 0x21, chip[0x55] = 0x43;
  auto& window = desk.Open("frmAutoGraph");
  EXPECT_TRUE(Desk::Checked(window, "chkThermFS2"));
  EXPECT_FALSE(Desk::Checked(window, "chkThermFS1"));
  EXPECT_EQ(Desk::Text(window, "txtMaxPWM"), "50");
  for (int i = 0; i < 4; ++i) {
    const auto text = [&](const char* array) { return Desk::Text(window, QString("%1(%2)").arg(array).arg(i)); };
    EXPECT_EQ(Desk::Picked(window, QString("cmbControl(%1)").arg(i)), i + 4);
    EXPECT_EQ(text("txtMinPWM"), QString::number(20 * i));
    EXPECT_EQ(Desk::Checked(window, QString("chkMinSpeed(%1)").arg(i)), i == 1 || i == 2);
    EXPECT_EQ(text("txtTmin"), QString::number(10 * i - 10));
    EXPECT_EQ(Desk::Picked(window, QString("cmbTrange(%1)").arg(i)), 12 + i);
    EXPECT_EQ(text("txtTminHyst"), QString::number(i));
    EXPECT_EQ(text("txtTH1"), QString::number(36 + i));
    EXPECT_EQ(text("txtTH2"), QString::number(136 + i));
    EXPECT_EQ(text("txtHyst"), QString::number(1 + i));
  }
}

TEST(AutomaticControl, EachControlWritesItsOwnBitsAtOnce) {
  const auto type = [](const char* box, const char* text) {
    return [box, text](const QWidget& window) { Desk::Type(window, box, text); };
  };
  const auto click = [](const char* box) { return [box](const QWidget& window) { Desk::Press(window, box); }; };
  const auto pick = [](const char* list, int item) {
    return [list, item](const QWidget& window) { Desk::Pick(window, list, item); };
  };
  const auto writes = [](int reg, int value) { return [=] { return Concat(W(reg, value)); }; };
  const auto changes = [](int reg, int value) { return [=] { return Concat(R(reg), W(reg, value)); }; };
  // 0xA5 everywhere: both THERM options show as bit 0 set, bit 1 clear; Min1 and Min3 ticked.
  RunLiveCases("frmAutoGraph", 0xA5,
               {
                   {"THERM1 on", click("chkThermFS1"), changes(0x0D, 0xA4)},
                   {"THERM2 off", click("chkThermFS2"), changes(0x0D, 0xA7)},
                   {"maximum", type("txtMaxPWM", "50"), writes(0x2C, 128)},
                   {"maximum cleared", type("txtMaxPWM", ""), writes(0x2C, 0)},
                   {"maximum beyond a byte", type("txtMaxPWM", "101"), writes(0x2C, 255)},
                   {"behaviour", pick("cmbControl(2)", 7), [] { return Concat(R(0x23), W(0x23, 0xE5), R(0x23)); }},
                   {"minimum", type("txtMinPWM(3)", "10"), writes(0x2B, 26)},
                   {"always on, PWM2", click("chkMinSpeed(1)"), changes(0x25, 0xA7)},
                   {"always off, PWM3", click("chkMinSpeed(2)"), changes(0x26, 0xA4)},
                   {"Tmin", type("txtTmin(1)", "45.5"), writes(0x5D, 110)},
                   {"Tmin below a byte", type("txtTmin(0)", "-65"), writes(0x5C, 0)},
                   {"Tmin cleared", type("txtTmin(3)", ""), writes(0x5F, 0x40)},
                   {"Trange", pick("cmbTrange(3)", 2), changes(0x63, 0x25)},
                   {"Tmin hysteresis", type("txtTminHyst(0)", "20"), changes(0x60, 0xA4)},
                   {"THERM1 limit", type("txtTH1(2)", "300"), writes(0x4E, 255)},
                   {"THERM2 limit", type("txtTH2(3)", "10"), writes(0x53, 74)},
                   {"low hysteresis", type("txtHyst(0)", "2"), changes(0x54, 0xA2)},
                   {"high hysteresis", type("txtHyst(1)", "2"), changes(0x54, 0x25)},
                   {"low hysteresis of 0x55 reaches its neighbour", type("txtHyst(2)", "20"), changes(0x55, 0xB4)},
                   {"high hysteresis of 0x55", type("txtHyst(3)", "1.5"), changes(0x55, 0x1D)},
               });
}

TEST(AutomaticControl, EachKeyOfATextIsSent) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmAutoGraph");
  desk.board.TakeTraffic();
  auto& box = Desk::Get<QLineEdit>(window, "txtTmin(0)");
  box.selectAll();
  QTest::keyClicks(&box, "45");
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x5C, 68), W(0x5C, 109)));
  QTest::keyClick(&box, Qt::Key_Up);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x5C, 110))) << "a step of the up-down writes as typing does";
  QTest::keyClick(&box, Qt::Key_Escape);
  EXPECT_FALSE(windows::AutoGraphOpen);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "closing touches no register";
}

/// PWM1 by Local, PWM2 manual, PWM3 by all four, PWM4 by Local and Remote3; all curves as in the model's example.
QWidget& OpenCurves(Desk& desk) {
  auto& chip = desk.board.Chip();
  chip[0x21] = 0x00, chip[0x22] = 0xE0, chip[0x23] = 0xC0, chip[0x24] = 0xA0;
  chip[0x0D] = 0x03, chip[0x2C] = 0xFF, chip[0x25] = chip[0x26] = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    chip[0x28 + i] = 64, chip[0x5C + i] = 94, chip[0x60 + i] = 0xA4;
    chip[0x88 + 2 * i] = 0x40, chip[0x89 + 2 * i] = static_cast<std::uint8_t>(84 + i), chip[0xAA + i] = 128;
  }
  desk.Advance(1200);
  return desk.Open("frmAutoGraph");
}

TEST(AutomaticControl, DrawsTheCurveAndDotsOfTheTabShowing) {
  Desk desk;
  desk.Start();
  const QWidget& window = OpenCurves(desk);
  const Points curve{{-40, 0}, {30, 0}, {30, 25}, {53, 100}, {119, 100}};
  const Points down{{26, 0}, {26, 25}, {30, 25}};
  EXPECT_EQ(PointsOf(window, 0), curve) << "drawn by the load itself";
  EXPECT_EQ(PointsOf(window, 8), down);
  EXPECT_EQ(PointsOf(window, 4), Points{});
  EXPECT_EQ(LabelText(window, 0), "PWM1");
  EXPECT_EQ(LabelText(window, 1), "Local");
  EXPECT_EQ(LabelText(window, 5), "Controlled By:");
  desk.Advance(400);
  EXPECT_EQ(PointsOf(window, 4), (Points{{20.25, 50}, {20.25, 50}}));
  EXPECT_EQ(PointsOf(window, 0), curve);

  auto& tabs = Desk::Get<QTabWidget>(window, "tbPWM");
  tabs.setCurrentIndex(2);
  for (int s = 0; s < 4; ++s) EXPECT_EQ(PointsOf(window, s), curve) << s;
  EXPECT_EQ(LabelText(window, 4), "Remote3");
  desk.Advance(400);
  for (int s = 0; s < 4; ++s) EXPECT_EQ(PointsOf(window, s + 4), (Points{{20.25 + s, 50}, {20.25 + s, 50}})) << s;

  tabs.setCurrentIndex(3);
  EXPECT_EQ(LabelText(window, 2), "Remote3");
  EXPECT_EQ(PointsOf(window, 2), Points{});

  tabs.setCurrentIndex(1);
  EXPECT_EQ(LabelText(window, 0), "PWM2");
  EXPECT_EQ(LabelText(window, 1), "PWM2 is not under automatic control");
  desk.Advance(400);
  for (int trace = 0; trace < Chart(window).TraceCount(); ++trace) EXPECT_EQ(PointsOf(window, trace), Points{});

  // The first source's tab comes up with the PWM's.
  Desk::Pick(window, "cmbControl(1)", 3);
  EXPECT_EQ(Desk::Get<QTabWidget>(window, "tbTemp").currentIndex(), 3);
  EXPECT_EQ(LabelText(window, 1), "Remote3");
}

TEST(AutomaticControl, TheCurveFollowsTheChipsTminOfRemote1AndTheUsersZoom) {
  Desk desk;
  desk.Start();
  const QWidget& window = OpenCurves(desk);
  Desk::Pick(window, "cmbControl(0)", 1);
  desk.board.Chip()[0x5D] = 64 + 40;
  desk.Advance(1500);
  EXPECT_EQ(Desk::Text(window, "txtTmin(1)"), "30") << "the box stands still";
  EXPECT_EQ(PointsOf(window, 0)[1], (std::pair<double, double>{40, 0}));
  Chart(window).SetXEnd(50.4);
  Chart(window).SetXSpan(20.5);
  desk.Advance(350);
  EXPECT_EQ(PointsOf(window, 0), (Points{{30, 0}, {40, 0}, {40, 25}, {49, 100}}));
}

TEST(AutomaticControl, ADotLeavesATrailOfTheLastMinute) {
  Desk desk;
  desk.Start();
  const QWidget& window = OpenCurves(desk);
  desk.Advance(1000);
  desk.board.Chip()[0x89] = 90;
  const auto trail = [&](int age) { return PointsOf(window, windows::kTrailTrace + 4 * age); };
  desk.Advance(2000);
  EXPECT_EQ(trail(0), (Points{{20.25, 50}, {26.25, 50}})) << "a place is kept once";
  desk.Advance(30000);
  EXPECT_EQ(trail(2), (Points{{20.25, 50}}));
  EXPECT_EQ(trail(0), (Points{{26.25, 50}}));
  desk.Advance(30000);
  for (int age = 1; age < windows::DotTrail::kAges; ++age) EXPECT_EQ(trail(age), Points{}) << age;
  Desk::Get<QTabWidget>(window, "tbPWM").setCurrentIndex(3);
  EXPECT_EQ(trail(0), Points{}) << "another PWM's";
  EXPECT_GT(Chart(window).TraceColour(windows::kTrailTrace).alpha(),
            Chart(window).TraceColour(windows::kTrailTrace + 12).alpha());
}

}  // namespace
}  // namespace zth::testing
