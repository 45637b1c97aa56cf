#include "shell/Placement.h"

#include <algorithm>
#include <array>

#include <QGuiApplication>
#include <QScreen>

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

// No screen is wider than this; a number beyond it was not written by a window.
constexpr double kLargestTwips = 1e6;

int ReadPixels(const Key& key, const platform::Settings& settings) {
  const std::string text = settings.Get(key.name, {}).toStdString();
  double twips = base::IsDecimal(text) ? base::LeadingDecimal(text) : key.defaultTwips;
  if (std::abs(twips) > kLargestTwips) twips = key.defaultTwips;
  return base::PixelsFromTwips(twips);
}

}  // namespace

QRect OntoScreens(const QRect& wanted, const QList<QRect>& screens) {
  constexpr int kGrip = 80;  // pixels of the title bar that a user needs to take hold of a window
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
  const QRect wanted(ReadPixels(kKeys[0], settings), ReadPixels(kKeys[1], settings),
                     std::max(1, ReadPixels(kKeys[2], settings)), std::max(1, ReadPixels(kKeys[3], settings)));
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens()) screens << screen->availableGeometry();
  const QRect placed = OntoScreens(wanted, screens);
  window.move(placed.topLeft());
  window.resize(placed.size());
}

void StorePlacement(const QWidget& window, platform::Settings& settings) {
  const std::array pixels{window.x(), window.y(), window.width(), window.height()};
  for (std::size_t i = 0; i < kKeys.size(); ++i) {
    const auto twips = static_cast<float>(base::TwipsFromPixels(pixels[i]));
    settings.Put(kKeys[i].name, QString::fromStdString(base::GeneralText(twips)));
  }
}

}  // namespace zth::shell
