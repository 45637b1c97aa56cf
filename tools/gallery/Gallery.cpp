#include <cstdio>
#include <exception>

#include <QApplication>
#include <QComboBox>
#include <QPalette>
#include <QStyleFactory>
#include <QTabWidget>
#include <gtest/gtest.h>

#include "Bench.h"
#include "Camera.h"
#include "Scenes.h"
#include "shell/Commands.h"
#include "tools/gallery/DarkPalette.h"

namespace zth::gallery {
namespace {

/// Takes a picture of a window, and one more of each of its tabs and charts.
void TakeAllOf(const Camera& camera, windows::ChildWindow& window) {
  QWidget& frame = *window.parentWidget();
  camera.Take(frame, window.objectName());
  const auto takePage = [&](int page) {
    Bench::Settle();
    camera.Take(frame, window.objectName() + "-" + QString::number(page));
  };
  auto* charts = window.findChild<QComboBox*>("cmbGraph");
  for (int i = 0; charts != nullptr && i < charts->count(); ++i) {
    charts->setCurrentIndex(i);
    takePage(i);
  }
  auto* tabs = window.findChild<QTabWidget*>();
  for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
    if (!tabs->isTabEnabled(i)) continue;
    tabs->setCurrentIndex(i);
    takePage(i);
  }
}

void TakeEveryWindow(const Camera& camera, int seconds) {
  Bench bench;
  SetUpEasily(bench);
  bench.Open("frmHeaters", {896, 440, 470, 190});
  bench.Do("frmHeaters", "sldHeater(0)=40");
  bench.Open("frmLimits", {796, 0, 570, 430});
  bench.Open("frmGraph", {0, 0, 790, 630});
  bench.Run(seconds);
  camera.Take(bench.Main(), "main");
  const auto forEach = [&bench](const auto& visit) {
    for (const auto& entry : shell::kMenuEntries) {
      const QString name = entry.window;
      if (!name.isEmpty()) visit(bench.Open(name));
    }
  };
  forEach([](auto&) {});
  bench.Run(3);
  forEach([&camera](auto& window) { TakeAllOf(camera, window); });
}

void TakeDocs(const Camera& camera) {
  TakeMain(camera);
  TakeWindows(camera);
  TakeConfigWindows(camera);
  TakeDynamicTmin(camera);
  TakeGuide(camera);
}

}  // namespace
}  // namespace zth::gallery

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  testing::InitGoogleTest();
  if (argc < 2) return 2;
  // Outside a test, a failure that the tests' support code finds ends the scene.
  GTEST_FLAG_SET(throw_on_failure, true);
  // A picture depends only on the program and the font.
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setCursorFlashTime(0);
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  try {
    if (argc > 2 && QString(argv[1]) == "--docs") {
      zth::gallery::TakeDocs(zth::gallery::Camera(argv[2]));
      return 0;
    }
    if (argc > 2 && QString(argv[2]) == "dark") QApplication::setPalette(zth::DarkPalette());
    const int seconds = argc > 3 ? QString(argv[3]).toInt() : 10;
    QFont font = QApplication::font();
    if (argc > 4) font.setPointSizeF(font.pointSizeF() * QString(argv[4]).toInt() / 100);
    QApplication::setFont(font);
    zth::gallery::TakeEveryWindow(zth::gallery::Camera(argv[1]), seconds);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "gallery: %s\n", error.what());
    return 1;
  }
}
