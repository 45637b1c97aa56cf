// Limits that are typed instead of dragged.
#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QTest>

#include "tests/windows/limits/LimitsDesk.h"
#include "widgets/NumberBox.h"

namespace zth::testing {
namespace {

struct LimitBoxes : Limits {
  LimitBoxes() {
    Put(desk.board.Chip(), "44=40 48=95 78=FF 80=FF");
    Load();
    desk.board.TakeTraffic();
  }

  widgets::NumberBox& Box(const char* name) const { return Desk::Get<widgets::NumberBox>(*window, name); }
  /// Replaces the text by typing, and expects that this sends nothing.
  void Type(const char* name, const char* text) {
    Box(name).selectAll();
    desk.board.TakeTraffic();
    QTest::keyClicks(&Box(name), text);
    EXPECT_EQ(desk.board.TakeTraffic(), Traffic{}) << "a keystroke is not yet a limit";
  }
  Traffic Leave(const char* name, Qt::FocusReason reason) {
    QFocusEvent out(QEvent::FocusOut, reason);
    QApplication::sendEvent(&Box(name), &out);
    return desk.board.TakeTraffic();
  }
  Traffic Key(const char* name, Qt::Key key) {
    QTest::keyClick(&Box(name), key);
    return desk.board.TakeTraffic();
  }
};

TEST_F(LimitBoxes, EnterWritesOnceWhatADragWouldAndShowsWhatTheChipTook) {
  struct Row {
    const char *box, *typed, *shown, *gauge;
    int slider;
    double dragged;
  };
  for (const Row& row : {Row{"txtTempLow", "25.5", "26.0", "ggeTemp", 2, 25.5},
                         {"txtTempHigh", "300", "191.0", "ggeTemp", 3, 191},
                         {"txtTempLow", "-64.4", "-64.0", "ggeTemp", 2, -64},
                         {"txtFanHigh", "1000", "959", "ggeFan", 3, 1000},
                         {"txtVoltHigh", "1.234", "1.240", "ggeVolt", 3, 1.234},
                         {"txtThermTimerHigh", "50", "50.0", "ggeThermTimer", 3, 50},
                         {"txtTHERMPinHigh", "80", "80.0", "ggeTHERMPin", 3, 80}}) {
    const auto before = desk.board.Chip();
    desk.board.TakeTraffic();
    Drag(row.gauge, row.slider, row.dragged);
    const Traffic dragged = desk.board.TakeTraffic();
    desk.board.Chip() = before;
    Desk::Get<QComboBox>(*window, QString(row.gauge).replace("gge", "cmb")).setCurrentIndex(-1);
    Desk::Pick(*window, QString(row.gauge).replace("gge", "cmb"), std::string(row.gauge) == "ggeTHERMPin" ? 1 : 0);
    Type(row.box, row.typed);
    EXPECT_EQ(Key(row.box, Qt::Key_Return), dragged) << row.box;
    EXPECT_EQ(Box(row.box).text().toStdString(), row.shown);
    EXPECT_EQ(Leave(row.box, Qt::MouseFocusReason), Traffic{}) << "once";
  }
}

TEST_F(LimitBoxes, LeavingWritesEscapeAndAnotherWindowDoNot) {
  const QString before = Box("txtTempHigh").text();
  Type("txtTempHigh", "70");
  EXPECT_EQ(Leave("txtTempHigh", Qt::ActiveWindowFocusReason), Traffic{});
  EXPECT_EQ(Box("txtTempHigh").text(), "70") << "to be finished later";
  EXPECT_EQ(Key("txtTempHigh", Qt::Key_Escape), Traffic{});
  EXPECT_EQ(Box("txtTempHigh").text(), before);
  EXPECT_EQ(desk.Main().FindWindow("frmLimits"), window) << "Escape ends the typing first";
  for (const char* none : {"2,5", "-", "1-2"}) {
    Type("txtTempHigh", none);
    EXPECT_EQ(Leave("txtTempHigh", Qt::TabFocusReason), Traffic{}) << none;
    EXPECT_EQ(Box("txtTempHigh").text(), before);
  }
  Type("txtTempHigh", "70");
  EXPECT_EQ(Leave("txtTempHigh", Qt::TabFocusReason), T("W44=40 W48=86 R44 R48"));
  EXPECT_EQ(Slider("ggeTemp", 3), 70);
  Type("txtTempHigh", "20");
  window->Unload();
  EXPECT_EQ(Leave("txtTempHigh", Qt::OtherFocusReason), Traffic{}) << "a window that has closed writes nothing";
}

TEST_F(LimitBoxes, AnArrowGoesToTheNextLimitOfTheChipFromWhatIsTyped) {
  EXPECT_EQ(Key("txtTempLow", Qt::Key_Up), T("W44=41 W48=95 R44 R48"));
  Type("txtTempLow", "30");
  EXPECT_EQ(Key("txtTempLow", Qt::Key_Down), T("W44=5D W48=95 R44 R48")) << "one write";
  EXPECT_EQ(Box("txtTempLow").text(), "29.0");
  Drag("ggeTemp", 2, 5);
  EXPECT_EQ(Box("txtTempLow").text(), "5.0") << "boxes follow the sliders";
}

TEST_F(LimitBoxes, ABoxWithoutARegisterIsOutOfUse) {
  const auto enabled = [this](const char* names) {
    std::string all;
    for (const QString& name : QString(names).split(' ')) all += Enabled("txt" + name) ? '1' : '0';
    return all;
  };
  constexpr char kAll[] =
      "TempLow TempHigh FanLow FanHigh VoltLow VoltHigh ThermTimerLow ThermTimerHigh THERMPinLow "
      "THERMPinHigh";
  EXPECT_EQ(enabled(kAll), "1101110101");
  Load([](chip::PinFunctionFlags& pins) { pins = {}; });
  EXPECT_EQ(enabled(kAll), "1100110001") << "no fan, no THERM timer";
  EXPECT_EQ(Box("txtFanHigh").text(), "");
}

}  // namespace
}  // namespace zth::testing
