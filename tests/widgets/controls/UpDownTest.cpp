#include <stdexcept>
#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <gmock/gmock.h>

#include "tests/widgets/controls/UserInput.h"
#include "widgets/UpDown.h"

namespace zth::widgets {
namespace {

using namespace zth::tests;

class Pair : public testing::Test {
 protected:
  Pair() {
    upDown_ = new UpDown(box_, {10, 120, 1});
    window_.setLayout(upDown_->Row());
    window_.show();
    QApplication::setActiveWindow(&window_);
  }
  QAbstractButton& Button(const QString& name) {
    for (auto* button : upDown_->findChildren<QAbstractButton*>()) {
      if (button->accessibleName() == name) return *button;
    }
    throw std::runtime_error("no such button");
  }

  QWidget window_;
  QLineEdit* box_ = new QLineEdit(QStringLiteral("50"));
  UpDown* upDown_ = nullptr;
};

TEST_F(Pair, StepsTheNumberThatTheBoxBeginsWithWithinTheRange) {
  struct Case {
    const char* before;
    int steps;
    const char* after;
  };
  for (const Case& row : {Case{"50", 1, "51"}, Case{"50", -1, "49"}, Case{" 50 rpm", 1, "51"}, Case{"119", 5, "120"},
                          Case{"120", 1, "120"}, Case{"10", -1, "10"}, Case{"500", 1, "120"}, Case{"500", -1, "120"},
                          Case{"", 1, "10"}, Case{"abc", -1, "10"}, Case{"-7", 1, "10"}, Case{"32.5", 1, "33"},
                          Case{"33.5", 1, "35"}, Case{"1E30", -1, "120"}, Case{"-1E300", 1, "10"}}) {
    box_->setText(row.before);
    QMetaObject::invokeMethod(upDown_, "Step", Q_ARG(int, row.steps));
    EXPECT_EQ(box_->text(), row.after) << row.before;
  }
  upDown_->setProperty("Max", 10000);
  upDown_->setProperty("Increment", 10);
  box_->setText("120");
  upDown_->Step(1);
  EXPECT_EQ(box_->text(), "130");
}

TEST_F(Pair, AStepIsOneChangeOfTheTextAndTypingIsFree) {
  QSignalSpy changes(box_, &QLineEdit::textChanged);
  Button("Increase").click();
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(box_->text(), "51");
  Button("Decrease").click();
  EXPECT_EQ(box_->text(), "50");
  box_->setText("9999");
  EXPECT_EQ(box_->text(), "9999");
  box_->setText("120");
  changes.clear();
  Button("Increase").click();
  EXPECT_EQ(changes.count(), 0) << "at the end of the range";
  EXPECT_TRUE(Button("Increase").autoRepeat());
}

TEST_F(Pair, KeysAndTheWheelStepTheBox) {
  box_->setFocus();
  for (const auto& [key, text] : {std::pair{"Up", "51"}, {"Down", "50"}, {"PgUp", "60"}, {"PgDown", "50"}}) {
    Play(*box_, key);
    EXPECT_EQ(box_->text(), text);
  }
  Wheel(*box_, 120);
  EXPECT_EQ(box_->text(), "51");
  box_->clearFocus();
  Wheel(*box_, 120);
  EXPECT_EQ(box_->text(), "51") << "without the focus the wheel scrolls the window";
}

TEST_F(Pair, FollowsItsBox) {
  box_->setEnabled(false);
  EXPECT_FALSE(upDown_->isEnabled());
  upDown_->Step(1);
  EXPECT_EQ(box_->text(), "50");
  box_->setEnabled(true);
  EXPECT_TRUE(upDown_->isEnabled());
  box_->hide();
  EXPECT_TRUE(upDown_->isHidden());
  box_->show();
  EXPECT_FALSE(upDown_->isHidden());
  box_->setReadOnly(true);
  upDown_->Step(1);
  EXPECT_EQ(box_->text(), "50");
  EXPECT_EQ(upDown_->geometry().left(), box_->geometry().right() + 1) << "glued";
  delete box_;
  upDown_->Step(1);
}

}  // namespace
}  // namespace zth::widgets
