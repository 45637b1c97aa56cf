#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "tests/desktop/RealDesktop.h"
#include "tests/support/EveryBox.h"
#include "tests/support/Seen.h"

namespace zth::testing {
namespace {

using platform::BoxAnswer;
using platform::BoxButtons;

/// Another way than a button's to have done with a box.
enum class Leave { Escape, ByCloseButton, WithItsWindow, WithTheProgram };

TEST(Boxes, EachIsAnsweredByEachButtonAndByNone) {
  for (const BoxSource& source : EveryBox()) {
    for (const platform::BoxQuestion& question : source.boxes) {
      SCOPED_TRACE(question.text.toStdString());
      const bool yesNo = question.buttons == BoxButtons::YesNo;
      const BoxAnswer none = yesNo ? BoxAnswer::No : BoxAnswer::Ok;
      using Act = std::function<void(QMessageBox&)>;
      std::vector<std::pair<Act, BoxAnswer>> ways{
          {[](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }, none},
          {[](QMessageBox& box) { box.close(); }, none}};
      const auto press = [&ways](QMessageBox::StandardButton button, BoxAnswer answer) {
        ways.emplace_back([button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); },
                          answer);
      };
      yesNo ? (press(QMessageBox::Yes, BoxAnswer::Yes), press(QMessageBox::No, BoxAnswer::No))
            : press(QMessageBox::Ok, BoxAnswer::Ok);
      for (const auto& [act, answer] : ways) {
        const ModalHand hand([&act = act](QWidget& modal) { act(dynamic_cast<QMessageBox&>(modal)); });
        EXPECT_EQ(platform::DesktopPrompts().Ask(question), answer);
        EXPECT_EQ(hand.Seen(), 1);
      }
    }
  }
}

TEST(Boxes, WithChoicesGiveTheOneThatIsTaken) {
  for (const BoxSource& source : EveryBox()) {
    for (const platform::ChoiceQuestion& question : source.choices) {
      const auto last = static_cast<int>(question.choices.size());
      for (int choice = 0; choice <= last; ++choice) {
        const ModalHand hand([&](QWidget& modal) {
          if (choice == last) return QTest::keyClick(&modal, Qt::Key_Escape);
          QTest::mouseClick(modal.findChild<QPushButton*>(QString("choice(%1)").arg(choice)), Qt::LeftButton);
        });
        EXPECT_EQ(platform::DesktopPrompts().Choose(question), choice == last ? question.escape : choice);
        EXPECT_EQ(hand.Seen(), 1);
      }
    }
  }
}

/// A window's own box: what brings it, and what is left behind it.
struct OwnBox {
  const char* window;
  void (*bring)(windows::ChildWindow& window);
};

const OwnBox kOwnBoxes[] = {
    {"frmEasySetup",
     [](windows::ChildWindow& window) {
       Desk::Get<QCheckBox>(window, "chkStartUp").setChecked(true);
       Desk::Type(window, "txtOption", "9");
       QTest::mouseClick(&Desk::Get<QPushButton>(window, "cmdApply"), Qt::LeftButton);
     }},
    {"frmTherm",
     [](windows::ChildWindow& window) {
       ChangeEach(window);
       window.ReadAgain();
     }},
    {"frmLogging",
     [](windows::ChildWindow& window) {
       QTest::mouseClick(&Desk::Get<QPushButton>(window, "cmdLogData"), Qt::LeftButton);
     }},
};

TEST(Boxes, MayLoseTheirWindowOrTheProgramBeneathThem) {
  for (const OwnBox& own : kOwnBoxes) {
    for (const Leave leave : {Leave::Escape, Leave::ByCloseButton, Leave::WithItsWindow, Leave::WithTheProgram}) {
      SCOPED_TRACE(std::string(own.window) + ", way " + std::to_string(static_cast<int>(leave)));
      RealDesktop real;
      real.Start();
      const QPointer window = real.Open(own.window);
      int boxes = 0;
      const ModalHand hand([&](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        if (box == nullptr) {  // the log asks for its file first
          return QTest::keyClicks(modal.findChild<QLineEdit*>("fileNameEdit"), "a"),
                 QTest::keyClick(&modal, Qt::Key_Return);
        }
        ++boxes;
        if (leave == Leave::Escape) QTest::keyClick(box, Qt::Key_Escape);
        if (leave == Leave::ByCloseButton) box->close();
        if (leave == Leave::WithItsWindow) RealDesktop::CloseFrame(*window);
        if (leave == Leave::WithTheProgram) real.desk.Main().close();
      });
      real.Do([&] { own.bring(*window); });
      EXPECT_EQ(boxes, 1);
      const bool stays = leave == Leave::Escape || leave == Leave::ByCloseButton;
      EXPECT_EQ(real.desk.Main().FindWindow(own.window) != nullptr, stays);
      EXPECT_EQ(window != nullptr, stays) << "deleted as soon as its handler is through";
      real.ExpectAlive();
    }
  }
}

TEST(Boxes, OfAFailedLinkEndTheProgramAlsoOverADialogAndTheHeatersMayGoOn) {
  for (const bool overADialog : {false, true}) {
    RealDesktop real;
    real.Start();
    const QPointer window = &real.desk.Open("frmLogging");
    std::vector<std::string> texts;
    const ModalHand hand([&](QWidget& modal) {
      if (const auto* box = qobject_cast<QMessageBox*>(&modal)) {
        texts.push_back(box->text().toStdString());
        return QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
      }
      real.desk.board.failFrom = 0;
      real.desk.clock.Advance(1000);
    });
    real.Do([&] {
      if (overADialog) return QTest::mouseClick(&Desk::Get<QPushButton>(*window, "cmdLogData"), Qt::LeftButton);
      real.desk.board.failFrom = 0;
      real.desk.clock.Advance(1000);
    });
    EXPECT_EQ(texts, (std::vector<std::string>{"Communications Interrupted - Check USB connections"}));
    EXPECT_EQ(real.desk.process.ends, std::vector<int>{1});
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "the dialog has gone with its window";
  }
  RealDesktop real;
  real.Start();
  real.desk.board.failMatching = "usb H";
  const ModalHand hand([](QWidget& modal) { QTest::keyClick(&modal, Qt::Key_Escape); });
  real.Do([&] { real.desk.Open("frmHeaters"); });
  EXPECT_EQ(hand.Seen(), 1);
  real.ExpectAlive();
}

TEST(Boxes, OverADialogKeepItsWindowUntilItsHandlerIsThrough) {
  RealDesktop real;
  real.Start();
  const QPointer window = real.Open("frmLogging");
  const ModalHand hand([&](QWidget& modal) {
    if (qobject_cast<QMessageBox*>(&modal) == nullptr) {
      real.desk.board.failMatching = "usb H";
      real.desk.Open("frmHeaters");
      return;
    }
    RealDesktop::CloseFrame(*window);
    // The box lets its event loop run on.
    QTimer::singleShot(20, &modal, [&modal] { QTest::keyClick(&modal, Qt::Key_Escape); });
  });
  real.Do([&] { QTest::mouseClick(&Desk::Get<QPushButton>(*window, "cmdLogData"), Qt::LeftButton); });
  EXPECT_EQ(hand.Seen(), 2);
  EXPECT_EQ(window, nullptr);
  real.ExpectAlive();
}

}  // namespace
}  // namespace zth::testing
