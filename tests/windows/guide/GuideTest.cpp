// The built-in user's guide: its contents, links and search, and where F1 opens it.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "link/Declarations.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"
#include "windows/guide/GuidePages.h"
#include "windows/guide/GuideView.h"

namespace zth::testing {
namespace {

TEST(GuidePages, HoldEachWindowsSectionAndAllThatTheyLinkTo) {
  for (const std::string& window : EveryWindow()) {
    const QString place = windows::GuidePlaceFor(window.c_str());
    EXPECT_TRUE(windows::GuideHas(place)) << window << " opens at " << place.toStdString();
    EXPECT_TRUE(window == "frmAbout" || place != windows::GuidePlaceFor({})) << window << " has nothing of its own";
  }
  EXPECT_FALSE(windows::GuideHas("guide.md#grafs"));
  EXPECT_EQ(windows::GuidePlaceFor("frmNew"), "guide.md");
  static const QRegularExpression link(R"((!?)\[[^\]]*\]\(([^)\s]+)\))");
  int links = 0;
  int pictures = 0;
  for (const QString& page : windows::GuidePages()) {
    auto found = link.globalMatch(windows::GuideText(page));
    while (found.hasNext()) {
      const auto match = found.next();
      const QString place = windows::PlaceOf(match.captured(2), page);
      if (match.captured(1).isEmpty()) {
        ++links;
        EXPECT_TRUE(place.isEmpty() || windows::GuideHas(place)) << page.toStdString() << " to " << place.toStdString();
      } else {
        ++pictures;
        EXPECT_FALSE(QImage::fromData(windows::GuidePicture(place)).isNull()) << place.toStdString();
      }
    }
  }
  EXPECT_GT(links, 40);
  EXPECT_GT(pictures, 25);
}

class Guide : public ::testing::Test {
 protected:
  Guide() {
    desk.Start();
    desk.Main().show();
    QApplication::setActiveWindow(&desk.Main());
    desk.board.TakeTraffic();
  }

  void PressF1() {
    QTest::keyClick(&desk.Main(), Qt::Key_F1);
    Desk::Settle();
    QApplication::processEvents();
    window = desk.Main().FindWindow("frmGuide");
  }
  windows::GuideView& Page() const { return Desk::Get<windows::GuideView>(*window, "txtPage"); }
  std::string Place() const { return Page().PlaceInSight().toStdString(); }
  /// The heading of the section at the top of the view.
  std::string Heading() const {
    QTextBlock block = Page().cursorForPosition({20, 20}).block();
    while (block.blockFormat().headingLevel() == 0 && block != Page().document()->begin()) block = block.previous();
    return block.text().toStdString();
  }
  void Search(const char* text, int times) {
    auto& box = Desk::Get<QLineEdit>(*window, "txtSearch");
    box.setText(text);
    for (int i = 0; i < times; ++i) QTest::keyClick(&box, Qt::Key_Return);
  }
  std::string Selected() const { return Page().textCursor().selectedText().toStdString(); }

  Desk desk;
  windows::ChildWindow* window = nullptr;
};

TEST_F(Guide, F1OpensItAtTheWindowInUseAndSendsNothing) {
  chip::Model.PollEnabled = false;
  link::Bus.InterfaceMode = 0;  // like having no chip
  PressF1();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(Place(), "guide.md");
  for (const auto& [name, place, heading] : {std::tuple{"frmAbout", "guide.md", "User's guide"},
                                             {"frmGraph", "guide.md#graphs", "Graphs"},
                                             {"frmLogging", "guide.md#logging", "Logging"},
                                             {"frmRegMap", "windows/frmRegMap.md", "Register Map"}}) {
    desk.Open(name);
    PressF1();
    EXPECT_EQ(Place(), place);
    EXPECT_EQ(Heading(), heading);
    PressF1();
    EXPECT_EQ(Place(), place) << "in the guide itself it stays where it is";
    desk.Main().FindWindow(name)->Unload();
  }
  desk.Advance(500);
  EXPECT_EQ(desk.board.TakeTraffic(), Traffic{});
}

TEST_F(Guide, ContentsAndLinksLeadAndBackLeadsBack) {
  PressF1();
  auto& contents = Desk::Get<QTreeWidget>(*window, "treContents");
  auto& back = Desk::Get<QWidget>(*window, "cmdBack");
  EXPECT_FALSE(back.isEnabled());
  const auto pick = [&](const char* text) {
    contents.setCurrentItem(contents.findItems(text, Qt::MatchExactly | Qt::MatchRecursive).at(0));
  };
  pick("Dynamic Tmin");
  EXPECT_EQ(Heading(), "Dynamic Tmin");
  pick("The file");
  EXPECT_EQ(Place(), "windows/frmSave.md#the-file");
  emit Page().LinkFollowed("frmLimits.md");
  EXPECT_EQ(Place(), "windows/frmLimits.md");
  EXPECT_EQ(contents.currentItem()->text(0).toStdString(), "Limits / Interrupts") << "the contents follow";
  emit Page().LinkFollowed("../quality.md");
  EXPECT_EQ(Desk::Text(*window, "lblTold"), "quality.md is not part of the built-in guide.");
  EXPECT_EQ(Place(), "windows/frmLimits.md");
  emit Page().LinkFollowed("https://www.tarnwell.example/");
  EXPECT_EQ(desk.shell.opened, std::vector<QString>{"https://www.tarnwell.example/"});
  Do(*window, "cmdBack");
  EXPECT_EQ(Place(), "windows/frmSave.md#the-file");
  QTest::keyClick(&Page(), Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(Place(), "guide.md#dynamic-tmin");
  Do(*window, "cmdBack");
  EXPECT_EQ(Place(), "guide.md");
  EXPECT_FALSE(back.isEnabled());
}

TEST_F(Guide, SearchLeavesTheSectionsThatHoldItAndEnterGoesFromHitToHitOverAllPages) {
  PressF1();
  Search("Communications Interrupted", 1);
  EXPECT_EQ(Selected(), "Communications Interrupted");
  EXPECT_EQ(Place(), "guide.md#boxes");
  EXPECT_GE(Page().extraSelections().size(), 1);
  QStringList left;
  for (QTreeWidgetItemIterator at(&Desk::Get<QTreeWidget>(*window, "treContents"), QTreeWidgetItemIterator::NotHidden);
       *at != nullptr; ++at) {
    left << (*at)->text(0);
  }
  EXPECT_TRUE(left.contains("Boxes") && !left.contains("Graphs")) << left.join('|').toStdString();
  Search("chassis intrusion", 1);
  EXPECT_NE(Page().Page(), "guide.md") << "on a page behind";
  const std::string first = Place() + std::to_string(Page().textCursor().position());
  for (int i = 0; i < 60 && (i == 0 || Place() + std::to_string(Page().textCursor().position()) != first); ++i) {
    Search("chassis intrusion", 1);
    EXPECT_EQ(Selected(), "chassis intrusion");
  }
  EXPECT_EQ(Place() + std::to_string(Page().textCursor().position()), first) << "round and back";
  Search("no such words", 2);
  EXPECT_FALSE(Desk::Get<QLabel>(*window, "lblTold").isHidden());
}

TEST_F(Guide, PicturesFitTheViewAtEveryWidth) {
  PressF1();
  for (const int width : {1100, 700}) {
    window->parentWidget()->resize(width, 500);
    QApplication::processEvents();
    for (const QTextFormat& format : Page().document()->allFormats()) {
      if (!format.isImageFormat()) continue;
      const QUrl name(format.toImageFormat().name());
      const QImage image = Page().document()->resource(QTextDocument::ImageResource, name).value<QImage>();
      EXPECT_GT(image.width(), 200) << name.toString().toStdString();
      EXPECT_LE(image.width(), Page().viewport()->width());
    }
    EXPECT_EQ(Page().horizontalScrollBar()->maximum(), 0) << width;
  }
}

}  // namespace
}  // namespace zth::testing
