#include <QImage>
#include <QVBoxLayout>
#include <gmock/gmock.h>

#include "widgets/Toggle.h"

namespace zth::widgets {
namespace {

TEST(Toggle, TellsItsStateBySign) {
  Toggle lamp;
  EXPECT_FALSE(lamp.property("Value").toBool());
  EXPECT_EQ(lamp.focusPolicy(), Qt::NoFocus);
  lamp.resize(24, 24);
  const QImage green = lamp.grab().toImage();
  ASSERT_TRUE(lamp.setProperty("Value", true));
  const QImage red = lamp.grab().toImage();
  int differing = 0;  // in lightness alone, as a colour-blind eye or a grey print has it
  for (int i = 0; i < green.width() * green.height(); ++i) {
    const QPoint at(i % green.width(), i / green.width());
    if (std::abs(qGray(green.pixel(at)) - qGray(red.pixel(at))) > 80) ++differing;
  }
  EXPECT_GT(differing, 20);
  EXPECT_GT(qGreen(green.pixel(4, 12)), qRed(green.pixel(4, 12)));
  EXPECT_GT(qRed(red.pixel(4, 12)), qGreen(red.pixel(4, 12)));
}

TEST(Toggle, RemembersItsVisibilityApartFromItsWindow) {
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
