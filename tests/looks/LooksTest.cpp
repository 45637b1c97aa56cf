#include <functional>
#include <map>
#include <set>
#include <utility>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFontInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

#include "link/BoardName.h"
#include "shell/frmSplash.h"
#include "tests/support/EveryBox.h"
#include "tests/support/EveryWindow.h"
#include "tests/support/ModalHand.h"
#include "tests/support/Seen.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"
#include "tools/gallery/DarkPalette.h"
#include "windows/ConfigWindow.h"

namespace zth::testing {
namespace {

const QSize kSmallScreen(1366, 768);

/// Large enough for such a screen at two device pixels per logical pixel; the screen limits boxes and menus.
[[maybe_unused]] const bool kScreen = qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" ZTH_SCREEN);

constexpr double kSlack = 1.5;     ///< pixels: rounding of a text's measures
constexpr double kSmallest = 0.6;  ///< of the application's font: the smallest allowed text

const QAbstractScrollArea* ScrollsOn(const QWidget& widget) {
  const auto* area = qobject_cast<const QAbstractScrollArea*>(widget.parentWidget());
  if (area == nullptr || area->viewport() != &widget) return nullptr;
  // A heading scrolls with what it heads.
  const bool isHeading = qobject_cast<const QHeaderView*>(area) != nullptr;
  return isHeading ? qobject_cast<const QAbstractScrollArea*>(area->parentWidget()) : area;
}

/// The user can scroll to every part of the window's frame, and a control that gets the focus scrolls into view.
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

/// Checks what a user sees of a widget and everything in it: draws each visible widget and captures its texts. Finds
/// texts that are cut, elided, much smaller than the application's font or drawn over one another; widgets that cover a
/// neighbour, stick out of their parent or are below their minimum size; and lists that are narrower than their widest
/// item. Contents that scroll may be larger than their area.
class Looks : public ::testing::TestWithParam<std::string> {
 public:
  ~Looks() override {
    QApplication::setFont(font_);
    QApplication::setPalette(palette_);
    EXPECT_GT(texts_, 0);
    // Reports each fault once, at the first place that showed it.
    for (const auto& [fault, where] : faults_) ADD_FAILURE() << fault << " [" << where << "]";
  }

 protected:
  void Dress(int fontPercent, bool dark) {
    QFont font = font_;
    font.setPointSizeF(font.pointSizeF() * fontPercent / 100);
    QApplication::setFont(font);
    QApplication::setPalette(dark ? DarkPalette() : palette_);
  }

  void Look(QWidget& root, const std::string& where) {
    where_ = where;
    const QWidgetList widgets = root.findChildren<QWidget*>() << &root;
    for (QWidget* widget : widgets) {
      if (!widget->isVisible() || widget->window() != root.window()) continue;
      LookAtPlace(*widget);
      LookAtTexts(*widget);
    }
  }

  void LookAtWindow(int percent, bool dark) {
    Dress(percent, dark);
    SimulatedDesk board;
    Desk& desk = board.desk;
    desk.Start();
    desk.Main().showNormal();
    desk.Main().resize(kSmallScreen);
    QApplication::setActiveWindow(&desk.Main());
    auto& window = desk.Open(GetParam().c_str());
    desk.Advance(2000);
    EXPECT_EQ(desk.Main().size(), kSmallScreen);
    EXPECT_EQ(desk.Main().devicePixelRatio(), qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble());
    const auto& area = Desk::Get<QMdiArea>(desk.Main(), "MDIForm");
    if (percent < 200) {
      EXPECT_TRUE(area.viewport()->rect().contains(window.parentWidget()->geometry())) << percent << " %";
    }
    const std::string how = " at " + std::to_string(percent) + (dark ? " %, dark" : " %");
    const auto look = [&](const std::string& page) {
      Look(desk.Main(), page + how);
      ExpectReach(window, area, page + how);
    };
    ForEachPage(window, look);
    window.parentWidget()->showMaximized();
    Desk::Settle();
    look(GetParam() + ", maximised");
    window.parentWidget()->showNormal();
    window.parentWidget()->resize(window.parentWidget()->minimumSizeHint());
    ForEachPage(window, [&](const std::string& page) { Look(desk.Main(), page + how + ", smallest"); });
    // Again with another chip selected: the window then says that it was not read from it, which takes no space from
    // the rest.
    const auto& devices = Desk::Get<QComboBox>(desk.Main(), "cmbDevices");
    Do(desk.Main(), QString("cmbDevices=%1").arg(devices.count() - 1));
    Desk::Settle();
    QApplication::processEvents();
    ForEachPage(window, [&](const std::string& page) { Look(desk.Main(), page + how + ", of another chip"); });
    if (dynamic_cast<windows::ConfigWindow*>(&window) == nullptr) return;
    // Again with every control marked as changed, in bold type.
    ChangeEach(window);
    ForEachPage(window, look);
  }

  void LookAtBox(const QString& text, int percent, const std::function<void()>& ask) {
    const ModalHand hand([&](QWidget& shown) {
      Look(shown, text.toStdString() + " at " + std::to_string(percent) + " %");
      const int title = shown.fontMetrics().horizontalAdvance(shown.windowTitle());
      EXPECT_GT(shown.width(), title * 5 / 4) << "room for the title and its buttons";
      EXPECT_TRUE(QRect({}, kSmallScreen).contains(QRect({}, shown.frameSize()))) << text.toStdString();
      shown.close();
    });
    ask();
    EXPECT_EQ(hand.Seen(), 1);
  }

  std::map<std::string, std::string> faults_;  ///< and where each was first seen

 private:
  void LookAtTexts(QWidget& widget) {
    const TextRecorder catcher(widget);
    QRectF room = QRectF(widget.rect()).adjusted(-kSlack, -kSlack, kSlack, kSlack);
    if (const QAbstractScrollArea* area = ScrollsOn(widget)) {
      const auto scrolls = [](const QScrollBar* bar) { return bar->maximum() > bar->minimum(); };
      if (scrolls(area->horizontalScrollBar())) room.adjust(-1e6, 0, 1e6, 0);
      if (scrolls(area->verticalScrollBar())) room.adjust(0, -1e6, 0, 1e6);
    }
    const double smallest = kSmallest * QFontInfo(QApplication::font()).pixelSize();
    for (std::size_t i = 0; i < catcher.texts.size(); ++i) {
      const DrawnText& text = catcher.texts[i];
      const std::string quoted = '"' + text.text.toStdString() + '"';
      ++texts_;
      if (text.text.contains(QChar(0x2026))) Tell(widget, "elides " + quoted);
      if (!room.contains(text.place)) Tell(widget, "cuts " + quoted);
      if (QFontInfo(text.font).pixelSize() < smallest) Tell(widget, "draws a tiny " + quoted);
      for (std::size_t j = 0; j < i; ++j) {
        // A text drawn twice in one place is a text with a shadow.
        if (catcher.texts[j].text == text.text) continue;
        const QRectF inner = catcher.texts[j].place.adjusted(kSlack, kSlack, -kSlack, -kSlack);
        if (inner.intersects(text.place)) Tell(widget, quoted + " over \"" + catcher.texts[j].text.toStdString() + '"');
      }
    }
  }

  void LookAtPlace(const QWidget& widget) {
    if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
      QStyleOptionComboBox option;
      option.initFrom(list);
      const int room =
          list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list).width();
      for (int i = 0; i < list->count(); ++i) {
        const QString text = list->itemText(i);
        if (list->fontMetrics().horizontalAdvance(text) > room) Tell(widget, "is too narrow for " + text.toStdString());
      }
    }
    const QWidget* parent = widget.parentWidget();
    if (widget.isWindow() || parent == nullptr || ScrollsOn(*parent) != nullptr) return;
    if (!parent->rect().contains(widget.geometry())) Tell(widget, "sticks out of " + Told(*parent));
    const auto* label = qobject_cast<const QLabel*>(&widget);
    // Headers and a spin box's line edit ask for the margins and scroll bars of a widget that stands alone.
    const bool part = widget.inherits("QHeaderView") || widget.objectName() == "qt_spinbox_lineedit";
    const bool nothing = part || (label != nullptr && label->text().isEmpty());
    const QSize least = nothing ? QSize() : widget.minimumSizeHint();
    if (widget.width() < least.width() || widget.height() < least.height()) Tell(widget, "is smaller than it can be");
    const bool forMore = qobject_cast<const QTabBar*>(parent) != nullptr || widget.objectName().endsWith("_ext_button");
    if (forMore && qobject_cast<const QToolButton*>(&widget) != nullptr) Tell(widget, "shows: not all finds room");
    if (qobject_cast<const QTabWidget*>(parent) != nullptr) return;  // its bar overlaps the frame of its pages
    for (const QObject* child : parent->children()) {
      const auto* other = qobject_cast<const QWidget*>(child);
      if (other == nullptr || !other->isVisible() || other->isWindow() || other == &widget) continue;
      if (other->geometry().intersects(widget.geometry())) Tell(widget, "overlaps " + Told(*other));
    }
  }

  void Tell(const QWidget& widget, const std::string& fault) {
    faults_.try_emplace(Told(widget) + ": " + fault, where_);
  }

  std::string where_;
  int texts_ = 0;
  const QFont font_ = QApplication::font();
  const QPalette palette_ = QApplication::palette();
};

TEST_P(Looks, NothingIsCutOrCoveredAndEverythingCanBeReached) {
  for (const int percent : {100, 150, 200}) {
    for (const bool dark : {false, true}) LookAtWindow(percent, dark);
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, Looks, ::testing::ValuesIn(EveryWindow()), WindowOf);

TEST_F(Looks, FindsWhatAUserWouldSee) {
  QWidget window;
  const auto put = [&window](QWidget* widget, const char* name, const QRect& place) {
    widget->setParent(&window);
    widget->setObjectName(name);
    widget->setGeometry(place);
  };
  put(new QLabel("A text that is too long"), "lblCut", {0, 0, 40, 30});
  put(new QCheckBox("Fits"), "chkLeft", {0, 40, 100, 30});
  put(new QCheckBox("As well"), "chkRight", {90, 40, 100, 30});
  put(new QLabel("out"), "lblOut", {180, 190, 40, 30});
  window.resize(200, 200);
  window.show();
  Look(window, "here");
  std::string all;
  for (const auto& [fault, where] : std::exchange(faults_, {})) all += fault + "\n";
  for (const char* fault : {"lblCut: cuts", "chkLeft: overlaps QCheckBox chkRight", "lblOut: sticks out"}) {
    EXPECT_NE(all.find(fault), std::string::npos) << fault << " in " << all;
  }
  EXPECT_EQ(all.find("chkLeft: cuts"), std::string::npos);
}

TEST_F(Looks, TheSplashShowsEveryStep) {
  for (const int percent : {100, 150, 200}) {
    Dress(percent, false);
    shell::frmSplash splash;
    splash.show();
    splash.ShowProgress();
    splash.SetStep("Downloading Firmware...");
    splash.SetBoard(QString("SMBus host ").repeated(6).left(link::kBoardNameLength));
    Desk::Settle();
    Look(splash, "at " + std::to_string(percent) + " %");
  }
}

TEST_F(Looks, EveryBoxShowsItsWholeText) {  // NOLINT(readability-function-size): sizes, colours, boxes
  const std::vector<BoxSource> sources = EveryBox();
  std::vector<std::string> places;
  for (const BoxSource& source : sources) places.push_back(source.file);
  EXPECT_EQ(places, EveryPlaceThatAsksABox()) << "a place that asks is a row of EveryBox";
  for (const int percent : {100, 150, 200}) {
    for (const bool dark : {false, true}) {
      Dress(percent, dark);
      for (const BoxSource& source : sources) {
        EXPECT_GE(source.boxes.size() + source.choices.size(), 1U) << source.file;
        for (const platform::BoxQuestion& box : source.boxes) {
          LookAtBox(box.text, percent, [&box] { platform::DesktopPrompts().Ask(box); });
        }
        for (const platform::ChoiceQuestion& box : source.choices) {
          LookAtBox(box.text, percent, [&box] { platform::DesktopPrompts().Choose(box); });
        }
      }
    }
  }
}

/// The menus of the menu bar, and the context menus of some windows, one for each kind of control.
TEST_F(Looks, EveryMenuShowsItsWholeEntries) {  // NOLINT(readability-function-size): sizes, colours, menus
  for (const int percent : {100, 150, 200}) {
    for (const bool dark : {false, true}) {
      Dress(percent, dark);
      SimulatedDesk board;
      Desk& desk = board.desk;
      desk.Start();
      desk.Main().resize(kSmallScreen);
      int menus = 0;
      const std::function<void(QMenu&, const std::string&)> look = [&](QMenu& menu, const std::string& where) {
        ++menus;
        menu.popup({});
        Look(menu, where + " at " + std::to_string(percent) + " %");
        for (const QAction* action : menu.actions()) {
          if (action->menu() != nullptr) look(*action->menu(), where);
        }
        menu.close();
      };
      for (const char* name : {"frmRegMap", "frmGraph", "frmAutoGraph", "frmDynamicTmin"}) {
        auto& window = desk.Open(name);
        std::set<std::string> kinds;
        for (QWidget* control : Shown(window)) {
          QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
          QApplication::sendEvent(control, &event);
          auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
          if (menu == nullptr) continue;
          if (kinds.insert(control->metaObject()->className()).second) look(*menu, name);
          menu->close();
          Desk::Settle();
        }
      }
      EXPECT_GE(menus, 2 + 3 * 3) << "a tree's, three charts' with their traces, text boxes'";
      for (const QAction* top : desk.Main().menuBar()->actions()) {
        if (top->menu() != nullptr) look(*top->menu(), "the menu bar");
      }
    }
  }
}

}  // namespace
}  // namespace zth::testing
