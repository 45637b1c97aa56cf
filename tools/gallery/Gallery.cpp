#include <cstdio>
#include <exception>

#include <QApplication>
#include <QComboBox>
#include <QPalette>
#include <QStyleFactory>
#include <QTabWidget>

#include "Bench.h"
#include "Camera.h"
#include "Scenes.h"
#include "shell/Commands.h"

namespace zth::gallery {
namespace {

void Darken() {
  QPalette palette;
  const auto set = [&palette](std::initializer_list<QPalette::ColorRole> roles, const char* colour) {
    for (const QPalette::ColorRole role : roles) palette.setColor(role, QColor(colour));
  };
  set({QPalette::Window, QPalette::AlternateBase}, "#2d2d30");
  set({QPalette::Base, QPalette::ToolTipBase}, "#1e1e1e");
  set({QPalette::Button}, "#3c3c40");
  set({QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}, "#f0f0f0");
  set({QPalette::BrightText, QPalette::HighlightedText}, "#ffffff");
  set({QPalette::Highlight}, "#2a82da");
  set({QPalette::Link}, "#5aa0f0");
  set({QPalette::PlaceholderText, QPalette::Mid}, "#808080");
  set({QPalette::Dark, QPalette::Shadow}, "#202022");
  set({QPalette::Light, QPalette::Midlight}, "#5a5a5e");
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor("#8a8a8a"));
  }
  QApplication::setPalette(palette);
}

/// A window, and once more each of its tabs and charts.
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
  bench.Slide("frmHeaters", "sldHeater(0)", 40);
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
  if (argc < 2) return 2;
  // What a picture shows is the program's and the font's alone.
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setCursorFlashTime(0);
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  try {
    if (argc > 2 && QString(argv[1]) == "--docs") {
      zth::gallery::TakeDocs(zth::gallery::Camera(argv[2]));
      return 0;
    }
    if (argc > 2 && QString(argv[2]) == "dark") zth::gallery::Darken();
    const int seconds = argc > 3 ? QString(argv[3]).toInt() : 10;
    zth::gallery::TakeEveryWindow(zth::gallery::Camera(argv[1]), seconds);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "gallery: %s\n", error.what());
    return 1;
  }
}
