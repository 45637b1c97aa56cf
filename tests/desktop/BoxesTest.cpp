#include <QCheckBox>
#include <QLineEdit>
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

/// A way other than a button to dismiss a box.
enum class Leave { Escape, ByCloseButton, WithItsWindow, WithTheProgram };

using Act = std::function<void(QWidget& box)>;

/// The result of the box when it is answered like this.
template <typename Ask>
auto Answered(const Ask& ask, const Act& act) {
  const ModalHand hand(act);
  const auto answer = ask();
  EXPECT_EQ(hand.Seen(), 1);
  return answer;
}

void PressEscape(QWidget& box) {
  QTest::keyClick(&box, Qt::Key_Escape);
}

void Close(QWidget& box) {
  box.close();
}

Act Press(QMessageBox::StandardButton button) {
  return [button](QWidget& box) { QTest::mouseClick(dynamic_cast<QMessageBox&>(box).button(button), Qt::LeftButton); };
}

Act Press(int choice) {
  return [choice](QWidget& box) {
    QTest::mouseClick(box.findChild<QPushButton*>(QString("choice(%1)").arg(choice)), Qt::LeftButton);
  };
}

void ExpectEachAnswer(const platform::BoxQuestion& question) {
  SCOPED_TRACE(question.text.toStdString());
  const auto ask = [&question] { return platform::DesktopPrompts().Ask(question); };
  const bool yesNo = question.buttons == BoxButtons::YesNo;
  const BoxAnswer none = yesNo ? BoxAnswer::No : BoxAnswer::Ok;
  EXPECT_EQ(Answered(ask, PressEscape), none);
  EXPECT_EQ(Answered(ask, Close), none);
  if (!yesNo) {
    EXPECT_EQ(Answered(ask, Press(QMessageBox::Ok)), BoxAnswer::Ok);
    return;
  }
  EXPECT_EQ(Answered(ask, Press(QMessageBox::Yes)), BoxAnswer::Yes);
  EXPECT_EQ(Answered(ask, Press(QMessageBox::No)), BoxAnswer::No);
}

void ExpectEachAnswer(const platform::ChoiceQuestion& question) {
  SCOPED_TRACE(question.text.toStdString());
  const auto ask = [&question] { return platform::DesktopPrompts().Choose(question); };
  EXPECT_EQ(Answered(ask, PressEscape), question.escape);
  EXPECT_EQ(Answered(ask, Close), question.escape);
  for (int i = 0; i < static_cast<int>(question.choices.size()); ++i) EXPECT_EQ(Answered(ask, Press(i)), i);
}

TEST(Boxes, EachIsAnsweredByEachButtonAndByNone) {
  for (const BoxSource& source : EveryBox()) {
    for (const platform::BoxQuestion& question : source.boxes) ExpectEachAnswer(question);
    for (const platform::ChoiceQuestion& question : source.choices) ExpectEachAnswer(question);
  }
}

/// A window's own box: what brings it up, and what remains afterwards.
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

void ExpectLeft(const OwnBox& own, Leave leave) {
  SCOPED_TRACE(std::string(own.window) + ", way " + std::to_string(static_cast<int>(leave)));
  RealDesktop real;
  real.Start();
  const QPointer window = real.Open(own.window);
  int boxes = 0;
  const ModalHand hand([&](QWidget& modal) {
    if (qobject_cast<QMessageBox*>(&modal) == nullptr) {  // the log asks for its file first
      modal.findChild<QLineEdit*>("fileNameEdit")->setText("a");
      return QTest::keyClick(&modal, Qt::Key_Return);
    }
    ++boxes;
    if (leave == Leave::Escape) PressEscape(modal);
    if (leave == Leave::ByCloseButton) modal.close();
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

TEST(Boxes, SurviveTheEndOfTheirWindowOrOfTheProgram) {
  for (const OwnBox& own : kOwnBoxes) {
    for (const Leave leave : {Leave::Escape, Leave::ByCloseButton, Leave::WithItsWindow, Leave::WithTheProgram}) {
      ExpectLeft(own, leave);
    }
  }
}

TEST(Boxes, OfAFailedLinkEndTheProgramEvenOverADialogAndThatOfTheHeatersMayContinue) {
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

TEST(Boxes, OverADialogKeepItsWindowUntilItsHandlerReturns) {
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
    // The box lets its event loop keep running.
    QTimer::singleShot(20, &modal, [&modal] { QTest::keyClick(&modal, Qt::Key_Escape); });
  });
  real.Do([&] { QTest::mouseClick(&Desk::Get<QPushButton>(*window, "cmdLogData"), Qt::LeftButton); });
  EXPECT_EQ(hand.Seen(), 2);
  EXPECT_EQ(window, nullptr);
  real.ExpectAlive();
}

}  // namespace
}  // namespace zth::testing
