#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QScrollBar>
#include <QTabBar>
#include <gmock/gmock.h>

#include "shell/frmSplash.h"
#include "tests/looks/Audit.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/SimulatedDesk.h"
#include "windows/ConfigWindow.h"

namespace zth::testing {
namespace {

const QSize kSmallScreen(1366, 768);

/// The application's font and palette for as long as it lives.
class Appearance {
 public:
  Appearance(int fontPercent, bool dark) {
    QFont font = font_;
    font.setPointSizeF(font.pointSizeF() * fontPercent / 100);
    QApplication::setFont(font);
    if (dark) QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(45, 45, 48)));
  }
  ~Appearance() {
    QApplication::setFont(font_);
    QApplication::setPalette(palette_);
  }
  Appearance(const Appearance&) = delete;
  Appearance& operator=(const Appearance&) = delete;

 private:
  QFont font_ = QApplication::font();
  QPalette palette_ = QApplication::palette();
};

/// Everything of the window's frame can be scrolled to, and what takes the focus comes in sight by itself.
void ExpectReach(windows::ChildWindow& window, const QMdiArea& area, const std::string& where) {
  const QRect frame = window.parentWidget()->geometry();
  const QRect room = area.viewport()->rect();
  const QScrollBar& across = *area.horizontalScrollBar();
  const QScrollBar& down = *area.verticalScrollBar();
  const QRect reach = room.adjusted(across.minimum() - across.value(), down.minimum() - down.value(),
                                    across.maximum() - across.value(), down.maximum() - down.value());
  EXPECT_TRUE(reach.contains(frame)) << where;
  for (auto* control : window.findChildren<QWidget*>()) {
    if (!control->isVisible() || !control->isEnabled() || (control->focusPolicy() & Qt::TabFocus) == 0) continue;
    if (QWidget* before = QApplication::focusWidget()) before->clearFocus();
    control->setFocus(Qt::TabFocusReason);
    ASSERT_NE(QApplication::focusWidget(), nullptr) << where;
    const QWidget& focus = *QApplication::focusWidget();
    const QRect place(focus.mapTo(area.viewport(), QPoint(0, 0)), focus.size().boundedTo(room.size()));
    EXPECT_TRUE(room.contains(place)) << where << ": " << control->objectName().toStdString() << " is out of sight";
  }
}

class Looks : public ::testing::TestWithParam<QString> {
 protected:
  void Look(int percent, bool dark) {
    const Appearance appearance(percent, dark);
    SimulatedDesk board;
    Desk& desk = board.desk;
    desk.Start();
    desk.Main().showNormal();
    desk.Main().resize(kSmallScreen);
    QApplication::setActiveWindow(&desk.Main());
    auto& window = desk.Open(GetParam());
    desk.Advance(2000);
    EXPECT_EQ(desk.Main().size(), kSmallScreen);
    EXPECT_EQ(desk.Main().devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble());
    const auto& area = Desk::Get<QMdiArea>(desk.Main(), "MDIForm");
    if (percent < 200) {
      EXPECT_TRUE(area.viewport()->rect().contains(window.parentWidget()->geometry())) << percent << " %";
    }
    const std::string how = " at " + std::to_string(percent) + (dark ? " %, dark" : " %");
    const auto look = [&](const std::string& page) {
      audit_.Look(desk.Main(), page + how);
      ExpectReach(window, area, page + how);
    };
    ForEachPage(window, look);
    window.parentWidget()->showMaximized();
    Desk::Settle();
    look(GetParam().toStdString() + ", maximised");
    window.parentWidget()->showNormal();
    window.parentWidget()->resize(window.parentWidget()->minimumSizeHint());
    ForEachPage(window, [&](const std::string& page) { audit_.Look(desk.Main(), page + how + ", smallest"); });
    if (dynamic_cast<windows::ConfigWindow*>(&window) == nullptr) return;
    // Again with every control marked as changed, in heavier type.
    for (auto* check : window.findChildren<QCheckBox*>()) check->toggle();
    for (auto* list : window.findChildren<QComboBox*>())
      list->setCurrentIndex((list->currentIndex() + 1) % list->count());
    ForEachPage(window, look);
  }

  Audit audit_;
};

TEST_P(Looks, NothingIsCutOrCoveredAndAllComesInSight) {
  for (const int percent : {100, 150, 200}) {
    for (const bool dark : {false, true}) Look(percent, dark);
  }
  for (const std::string& fault : audit_.Faults()) ADD_FAILURE() << fault;
  RecordProperty("widgets", audit_.Widgets());
  RecordProperty("texts", audit_.Texts());
}

INSTANTIATE_TEST_SUITE_P(Windows, Looks, ::testing::ValuesIn(EveryWindow()),
                         [](const auto& row) { return row.param.toStdString(); });

TEST(Looks, AnAuditFindsWhatAUserWouldSee) {
  QWidget window;
  const auto put = [&](QWidget* widget, const char* name, const QRect& place) {
    widget->setParent(&window);
    widget->setObjectName(name);
    widget->setGeometry(place);
  };
  put(new QLabel("A text that is too long"), "lblCut", {0, 0, 40, 30});
  put(new QCheckBox("Fits"), "chkLeft", {0, 40, 100, 30});
  put(new QCheckBox("As well"), "chkRight", {90, 40, 100, 30});
  auto* tabs = new QTabBar;
  tabs->setElideMode(Qt::ElideRight);
  tabs->setUsesScrollButtons(false);
  for (const char* text : {"Temperature", "Voltage", "Fans"}) tabs->addTab(text);
  put(tabs, "tabs", {0, 80, 100, 30});
  auto* list = new QComboBox;
  list->addItems({"1", "Automatic on the hottest"});
  put(list, "cmbNarrow", {0, 120, 60, 30});
  auto* tiny = new QLabel("tiny");
  tiny->setStyleSheet("font-size: 4px");
  put(tiny, "lblTiny", {0, 160, 100, 30});
  put(new QLabel("out"), "lblOut", {180, 190, 40, 30});
  window.resize(200, 200);
  window.show();
  Audit audit;
  audit.Look(window, "here");
  std::string all;
  for (const std::string& fault : audit.Faults()) all += fault + "\n";
  for (const char* fault :
       {"lblCut: cuts", "chkLeft: overlaps chkRight", "tabs: elides", "cmbNarrow: is too narrow for A",
        "lblTiny: draws a tiny", "lblOut: sticks out", "cmbNarrow: is smaller"}) {
    EXPECT_THAT(all, ::testing::HasSubstr(fault));
  }
  EXPECT_THAT(all, ::testing::Not(::testing::HasSubstr("chkLeft: cuts")));
}

TEST(Looks, TheSplashShowsEveryStep) {
  Audit audit;
  for (const int percent : {100, 150, 200}) {
    const Appearance appearance(percent, false);
    shell::frmSplash splash;
    splash.show();
    splash.ShowProgress();
    splash.SetStep("Downloading Firmware...");
    Desk::Settle();
    audit.Look(splash, "at " + std::to_string(percent) + " %");
  }
  for (const std::string& fault : audit.Faults()) ADD_FAILURE() << fault;
}

}  // namespace
}  // namespace zth::testing
