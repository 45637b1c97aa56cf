// Every visible text against its background: a contrast of at least 4.5 to 1, in a light and in a dark palette.
#include <cmath>
#include <unordered_map>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QTabBar>
#include <QTest>

#include "shell/WebLink.h"
#include "shell/frmSplash.h"
#include "tests/accessibility/AccessGround.h"
#include "tests/support/Seen.h"
#include "tools/gallery/DarkPalette.h"
#include "widgets/LGauge.h"
#include "widgets/Strip.h"
#include "widgets/StripColours.h"
#include "windows/ConfigWindow.h"

namespace zth::testing {
namespace {

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [less, more] = std::minmax({Luminance(a), Luminance(b)});
  return (more + 0.05) / (less + 0.05);
}

/// The background of a text: the colour of most pixels at its upper and lower edges, clear of letters and underlines.
QColor GroundOf(const QImage& picture, const QRect& place) {
  std::unordered_map<QRgb, int> counts;
  std::pair<QRgb, int> most{0, 0};
  for (const int y : {place.top(), place.top() + 1, place.bottom()}) {
    for (int x = std::max(0, place.left()); x <= std::min(place.right(), picture.width() - 1); ++x) {
      const QRgb pixel = picture.pixel(x, std::clamp(y, 0, picture.height() - 1));
      if (++counts[pixel] > most.second) most = {pixel, counts[pixel]};
    }
  }
  return QColor::fromRgb(most.first);
}

class Contrasts : public Access {
 public:
  ~Contrasts() override { QApplication::setPalette(light_); }

 protected:
  /// Sets light, then dark colours on everything that is open.
  void InEachPalette(const std::function<void(const char* palette)>& look) {
    for (const bool dark : {false, true}) {
      QApplication::setPalette(dark ? DarkPalette() : light_);
      Desk::Settle();
      look(dark ? "dark" : "light");
    }
  }

  void Judge(const QString& text, QColor colour, const QColor& ground, const std::string& where) {
    QPixmap dot(1, 1);  // here a translucent colour is mixed with the background
    dot.fill(ground);
    QPainter(&dot).fillRect(dot.rect(), colour);
    colour = dot.toImage().pixelColor(0, 0);
    EXPECT_GE(Contrast(colour, ground), 4.5) << where << " \"" << text.toStdString() << "\" "
                                             << colour.name().toStdString() << " on " << ground.name().toStdString();
    ++texts_;
  }

  void Look(QWidget& root, const std::string& where) {
    const QImage picture = root.grab().toImage();
    for (QWidget* widget : Shown(root)) {
      if (!widget->isEnabled()) continue;  // a disabled text may be pale
      TextRecorder recorder(*widget);
      if (auto* gauge = qobject_cast<widgets::LGauge*>(widget)) {  // its face is drawn in advance
        QPainter painter(&recorder);
        const widgets::DialMeasures measures(gauge->size());
        widgets::DialPainter(painter, measures, gauge->palette(), gauge->font())
            .Face(gauge->ScaleMin(), gauge->ScaleMax());
      }
      if (qobject_cast<widgets::Strip*>(widget) != nullptr) {  // as are its headings and axes
        const widgets::StripColours colours(widget->palette());
        Judge("axes", colours.text, colours.window, where + " " + Told(*widget));
      }
      QStringList pale;
      const auto* bar = qobject_cast<QTabBar*>(widget);
      for (int i = 0; bar != nullptr && i < bar->count(); ++i) {
        if (!bar->isTabEnabled(i)) pale << bar->tabText(i).remove('&');
      }
      for (const DrawnText& drawn : recorder.texts) {
        if (pale.contains(drawn.text)) continue;
        const QRect drawnAt = drawn.place.toRect();
        if (!widget->rect().contains(drawnAt.center())) continue;
        const QRect place(widget->mapTo(&root, drawnAt.topLeft()), drawnAt.size());
        Judge(drawn.text, drawn.colour, GroundOf(picture, place), where + " " + Told(*widget));
      }
    }
  }

  /// What a user does to a page: odd entries, changes without Apply, cursors on charts, the focus on gauges, visits.
  static void Disturb(QWidget& root) {
    for (QWidget* widget : Shown(root)) {
      if (!widget->isEnabled()) continue;
      if (auto* box = qobject_cast<QLineEdit*>(widget)) box->setText("1e9x");
      if (auto* strip = qobject_cast<widgets::Strip*>(widget)) {
        // A held chart has a sign, which may cover moving labels.
        if (root.objectName() == "frmGraph") QTest::keyClick(strip, Qt::Key_Left);
        for (int i = 0; i < 2; ++i) QTest::keyClick(strip, Qt::Key_Space);
        strip->SetTraceVisible(0, false);
        strip->Files().CopyData();
      }
      if (qobject_cast<widgets::LGauge*>(widget) != nullptr) widget->setFocus(Qt::TabFocusReason);
      if (auto* link = qobject_cast<shell::WebLink*>(widget)) emit link->Click();
    }
    if (dynamic_cast<windows::ConfigWindow*>(&root) != nullptr) ChangeEach(root);
    // Selects another chip, so that the window says that it was not read from it.
    Desk::Get<QComboBox>(*shell::MainForm, "cmbDevices").setCurrentIndex(1);
    Desk::Settle();
  }

  int texts_ = 0;

 private:
  const QPalette light_ = QApplication::palette();
};

TEST_P(Contrasts, EveryTextStandsOutFromItsBackground) {
  for (const char* how : {"", " changed"}) {
    EachPage([&](QWidget& root, const std::string& page) {
      desk.Advance(1100);
      if (page == "frmRegMap") {  // a register with bits of both kinds
        Desk::Type(root, "txtReadAddr", "3D");
        Desk::Press(root, "cmdRead");
      }
      if (*how != 0) Disturb(root);
      InEachPalette([&](const char* palette) { Look(root, page + how + ", " + palette); });
    });
  }
  EXPECT_GE(texts_, 10);
}

TEST_F(Contrasts, OfTheSplashToo) {
  shell::frmSplash splash;
  splash.SetStep("Looking");
  splash.ShowProgress();
  splash.show();
  InEachPalette([&](const char* palette) { Look(splash, palette); });
  EXPECT_GE(texts_, 8);
}

INSTANTIATE_TEST_SUITE_P(Windows, Contrasts, ::testing::ValuesIn(AllWindows()), WindowOf);

}  // namespace
}  // namespace zth::testing
