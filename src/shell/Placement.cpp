#include "shell/Placement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <QGuiApplication>
#include <QScreen>
#include <QStringList>

#include "base/NumberText.h"
#include "base/Twips.h"

namespace zth::shell {
namespace {

struct Key {
  const char* name;
  double defaultTwips;
};

constexpr std::array kKeys{Key{"MainLeft", 1000}, Key{"MainTop", 1000}, Key{"MainWidth", 6500},
                           Key{"MainHeight", 6500}};

/// If those four are a maximised window's, this key has its normal geometry. Otherwise empty.
constexpr char kNormalKey[] = "MainNormal";

// No screen is wider than this; a larger number was not written by a window.
constexpr double kLargestTwips = 1e6;

int ReadPixels(const Key& key, const platform::Settings& settings) {
  const std::string text = settings.Get(key.name, {}).toStdString();
  double twips = base::IsDecimal(text) ? base::LeadingDecimal(text) : key.defaultTwips;
  if (std::abs(twips) > kLargestTwips) twips = key.defaultTwips;
  return base::PixelsFromTwips(twips);
}

/// "left top width height" in twips.
QString TextOf(const QRect& place) {
  QStringList texts;
  for (const int pixels : {place.left(), place.top(), place.width(), place.height()}) {
    texts << QString::fromStdString(base::GeneralText(static_cast<float>(base::TwipsFromPixels(pixels))));
  }
  return texts.join(' ');
}

/// Returns an invalid rectangle for any other text.
QRect RectOf(const QString& text) {
  std::vector<int> pixels;
  for (const QString& word : text.split(' ')) {
    const std::string number = word.toStdString();
    if (!base::IsDecimal(number) || std::abs(base::LeadingDecimal(number)) > kLargestTwips) return {};
    pixels.push_back(base::PixelsFromTwips(base::LeadingDecimal(number)));
  }
  return pixels.size() == 4 ? QRect(pixels[0], pixels[1], pixels[2], pixels[3]) : QRect();
}

}  // namespace

QRect OntoScreens(const QRect& wanted, const QList<QRect>& screens) {
  constexpr int kGrip = 80;  // pixels of title bar that a user needs to drag a window
  const QRect title(wanted.left(), wanted.top(), wanted.width(), 24);
  for (const QRect& screen : screens) {
    const QRect seen = screen.intersected(title);
    if (seen.width() >= std::min(kGrip, wanted.width()) && seen.height() > 8) return wanted;
  }
  if (screens.isEmpty()) return wanted;
  const QRect& screen = screens.constFirst();
  QRect placed(wanted.topLeft(), wanted.size().boundedTo(screen.size()));
  placed.moveLeft(std::clamp(placed.left(), screen.left(), screen.right() + 1 - placed.width()));
  placed.moveTop(std::clamp(placed.top(), screen.top(), screen.bottom() + 1 - placed.height()));
  return placed;
}

void RestorePlacement(QWidget& window, const platform::Settings& settings) {
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens()) screens << screen->availableGeometry();
  const QRect wanted(ReadPixels(kKeys[0], settings), ReadPixels(kKeys[1], settings),
                     std::max(1, ReadPixels(kKeys[2], settings)), std::max(1, ReadPixels(kKeys[3], settings)));
  const QRect placed = OntoScreens(wanted, screens);
  window.move(placed.topLeft());
  window.resize(placed.size());
  // A maximised window's own geometry fills a screen, so restoring to it would change nothing.
  const QRect normal = RectOf(settings.Get(kNormalKey, {}));
  if (normal.isValid()) window.setGeometry(OntoScreens(normal, screens));
}

void StorePlacement(const QWidget& window, platform::Settings& settings) {
  const std::array pixels{window.x(), window.y(), window.width(), window.height()};
  for (std::size_t i = 0; i < kKeys.size(); ++i) {
    const auto twips = static_cast<float>(base::TwipsFromPixels(pixels[i]));
    settings.Put(kKeys[i].name, QString::fromStdString(base::GeneralText(twips)));
  }
  settings.Put(kNormalKey, window.isMaximized() ? TextOf(window.normalGeometry()) : QString());
}

}  // namespace zth::shell
