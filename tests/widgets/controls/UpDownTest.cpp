#include <tuple>
#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QImage>
#include <QLineEdit>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <gmock/gmock.h>

#include "tests/widgets/controls/UserInput.h"
#include "widgets/Toggle.h"
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

TEST_F(Pair, StepsTheLeadingNumberOfTheBoxWithinTheRange) {
  using Row = std::tuple<const char*, int, const char*>;
  for (const auto& [before, steps, after] :
       {Row{"50", 1, "51"}, Row{"50", -1, "49"}, Row{" 50 rpm", 1, "51"}, Row{"119", 5, "120"}, Row{"120", 1, "120"},
        Row{"10", -1, "10"}, Row{"500", 1, "120"}, Row{"500", -1, "120"}, Row{"", 1, "10"}, Row{"abc", -1, "10"},
        Row{"-7", 1, "10"}, Row{"32.5", 1, "33"}, Row{"33.5", 1, "35"}, Row{"1E30", -1, "120"},
        Row{"-1E300", 1, "10"}}) {
    box_->setText(before);
    QMetaObject::invokeMethod(upDown_, "Step", Q_ARG(int, steps));
    EXPECT_EQ(box_->text(), after) << before;
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
  for (const char* text : {"9999", "120"}) box_->setText(text);
  EXPECT_EQ(changes.count(), 4) << "none is turned into another";
  Button("Increase").click();
  EXPECT_EQ(changes.count(), 4) << "at the end of the range";
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
}

TEST_F(Pair, FollowsItsBox) {
  EXPECT_EQ(upDown_->geometry().left(), box_->geometry().right() + 1) << "glued";
  for (const bool on : {false, true}) {
    box_->setEnabled(on);
    EXPECT_EQ(upDown_->isEnabled(), on);
    box_->setVisible(on);
    EXPECT_EQ(upDown_->isHidden(), !on);
    box_->setReadOnly(on);
    upDown_->Step(1);
    EXPECT_EQ(box_->text(), "50") << "neither steps while the box is disabled nor while it only shows";
  }
  delete box_;
  upDown_->Step(1);
}

TEST(Toggle, ShowsItsStateByASign) {
  Toggle lamp;
  EXPECT_FALSE(lamp.property("Value").toBool());
  EXPECT_EQ(lamp.focusPolicy(), Qt::NoFocus);
  lamp.resize(24, 24);
  const QImage green = lamp.grab().toImage();
  ASSERT_TRUE(lamp.setProperty("Value", true));
  const QImage red = lamp.grab().toImage();
  int differing = 0;  // in lightness alone, for colour-blind users and grey prints
  for (int i = 0; i < green.width() * green.height(); ++i) {
    const QPoint at(i % green.width(), i / green.width());
    if (std::abs(qGray(green.pixel(at)) - qGray(red.pixel(at))) > 80) ++differing;
  }
  EXPECT_GT(differing, 20);
  EXPECT_GT(qGreen(green.pixel(4, 12)), qRed(green.pixel(4, 12)));
  EXPECT_GT(qRed(red.pixel(4, 12)), qGreen(red.pixel(4, 12)));
}

TEST(Toggle, RemembersItsVisibilityIndependentlyOfItsWindow) {
  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  auto* lamp = new Toggle;
  layout->addWidget(lamp);
  EXPECT_TRUE(lamp->property("Visible").toBool());
  window.show();
  const QSize size = window.sizeHint();
  lamp->setProperty("Visible", false);
  EXPECT_FALSE(lamp->property("Visible").toBool());
  EXPECT_FALSE(lamp->isVisible());
  EXPECT_EQ(window.sizeHint(), size) << "rows must not jump";
  window.hide();
  lamp->setProperty("Visible", true);
  EXPECT_TRUE(lamp->property("Visible").toBool());
}

}  // namespace
}  // namespace zth::widgets
