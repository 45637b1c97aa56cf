#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QStatusBar>

#include "chip/ChipState.h"
#include "link/USBStuff.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/ModalHand.h"
#include "tests/support/Steps.h"

/// What users see while they wait for slow transfers.
namespace zth::testing {
namespace {

using Signs = std::vector<std::string>;

/// The status bar's message, with a * in front while the pointer is busy.
std::string SignsNow() {
  const QString message = shell::MainForm->statusBar()->currentMessage();
  return (QApplication::overrideCursor() != nullptr ? "*" : "") + message.toStdString();
}

/// The started program with transfers of that duration, and what the user sees during each of them.
struct SlowDesk : Desk {
  explicit SlowDesk(float milliseconds, Buses buses = Buses::Usb) : Desk(buses) {
    Start();
    board.onTransfer = [this, milliseconds] { seen.push_back(SignsNow()), clock.WaitMs(milliseconds); };
  }
  Signs seen;
};

TEST(Waiting, FromAQuarterOfASecondOfTransfersOnTheUserSeesWhatHeWaitsFor) {
  for (const auto& [milliseconds, quiet] : {std::pair{20.F, 13U}, {100.F, 3U}, {126.F, 2U}, {400.F, 1U}}) {
    for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
      SlowDesk desk(milliseconds, buses);
      desk.Main().Tell("Saved");
      for (const std::string what : {"*Reading the chip", "*Writing"}) {
        desk.seen.clear();
        what == "*Writing" ? Do(desk.Open("frmFanConfig"), "cmdApply") : desk.Open("frmFanConfig").show();
        Signs expected(desk.seen.size(), what + " for Fan Configuration...");
        std::fill_n(expected.begin(), std::min<std::size_t>(quiet, expected.size()), "Saved");
        EXPECT_EQ(desk.seen, expected) << milliseconds;
        EXPECT_EQ(SignsNow(), "Saved") << "what stood there is back";
      }
    }
  }
}

TEST(Waiting, TheMonitorBringsNoSignsThoughABoxOfTheUsersStandsAndADialogEndsThem) {
  SlowDesk desk(300);
  auto& window = desk.Open("frmVoltConfig");
  Do(window, "chkDisAtten(0)");
  desk.seen.clear();
  desk.prompts.picks = {"&Keep them"};
  desk.prompts.whileShown = [&] { desk.Advance(5000); };
  window.ReadAgain();
  EXPECT_GT(desk.seen.size(), 5U);
  EXPECT_EQ(desk.seen, Signs(desk.seen.size()));

  const link::UserAction action([] { return QString(); });
  for (int i = 0; i < 2; ++i) link::ReadRegister(0x58, 0x3E);
  EXPECT_EQ(SignsNow(), "*Reading the chip...");
  QDialog dialog(&desk.Main());
  std::string beneath = "no dialog";
  const ModalHand hand([&](QWidget& modal) { beneath = SignsNow(), modal.close(); });
  dialog.exec();
  EXPECT_EQ(beneath, "");
}

/// Counts how often the veil over a window that is being read is painted.
struct VeilPaints final : QObject {
  VeilPaints() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* object, QEvent* event) override {
    count += event->type() == QEvent::Paint && object->objectName() == "lblOpening" ? 1 : 0;
    return false;
  }
  int count = 0;
};

TEST(Waiting, AWindowOverASlowLinkIsPaintedBeforeItIsReadAndComesOutAsOverAQuickOne) {
  for (const std::string& name : EveryWindow()) {
    SCOPED_TRACE(name);
    Traffic sent;
    QImage picture;
    for (const float milliseconds : {0.F, 100.F}) {
      SlowDesk desk(milliseconds);
      QApplication::processEvents();
      chip::Model.PollEnabled = false;
      link::ReadRegister(0x58, 0x3E);  // as the monitor does all the time
      bool turned = false;
      QMetaObject::invokeMethod(
          &desk.Main(), [&turned] { turned = true; }, Qt::QueuedConnection);
      const VeilPaints paints;
      desk.board.onTransfer = [&, slow = desk.board.onTransfer] {
        EXPECT_EQ(paints.count > 0, milliseconds > 0);
        EXPECT_FALSE(turned) << "an event has run";
        slow();
      };
      desk.Open(QString::fromStdString(name));
      QApplication::processEvents();
      const QImage now = desk.Main().centralWidget()->grab().toImage();
      if (milliseconds == 0) sent = desk.board.traffic, picture = now;
      EXPECT_EQ(desk.board.traffic, sent);
      EXPECT_EQ(now, picture) << name;
    }
  }
}

TEST(Waiting, TheSignsEndBeforeTheBoxOfAFailureBeneathWhichTheWindowCloses) {
  SlowDesk desk(100);
  desk.board.failMatching = "usb W 58:2C";
  desk.prompts.script = {platform::BoxAnswer::Ok};
  desk.prompts.whileShown = [&] {
    EXPECT_EQ(desk.seen.back() + SignsNow(), "*Writing for Fan Configuration...");
    desk.Main().FindWindow("frmFanConfig")->Unload();
  };
  Do(desk.Open("frmFanConfig"), "cmdApply");
  EXPECT_EQ(SignsNow(), "");
  EXPECT_EQ(desk.process.ends, std::vector<int>{1});
}

}  // namespace
}  // namespace zth::testing
