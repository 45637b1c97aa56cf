#include <cstdio>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPalette>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTabWidget>
#include <QThread>
#include <QTimer>

#include "platform/DesktopServices.h"
#include "shell/Commands.h"
#include "shell/Main.h"
#include "shell/WindowFactory.h"
#include "shell/frmMain.h"
#include "windows/ChildWindow.h"

namespace zth {
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

/// Nobody is there to answer: a box ends the tool with what it says.
class NoPrompts final : public platform::Prompts {
 public:
  platform::BoxAnswer Ask(const platform::BoxQuestion& question) override {
    std::fprintf(stderr, "%s\n", qPrintable(question.text));
    return platform::BoxAnswer::Ok;
  }
};

/// No setting of the user's has a say in a picture.
class NoSettings final : public platform::Settings {
 public:
  QString Get(const QString& key, const QString& fallback) const override {
    return key == "OpenEasySetup" ? QStringLiteral("False") : fallback;
  }
  void Put(const QString& /*key*/, const QString& /*text*/) override {}
};

class Photographer {
 public:
  explicit Photographer(QString folder) : folder_(std::move(folder)) {}

  void Take(QWidget& widget, const QString& name) {
    const QString file = QDir(folder_).filePath(name + ".png");
    if (widget.grab().save(file)) {
      std::printf("%s\n", qPrintable(file));
    } else {
      std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
    }
  }

  void TakeWindow(windows::ChildWindow& window) {
    QWidget& frame = *window.parentWidget();
    auto* tabs = window.findChild<QTabWidget*>();
    Take(frame, window.objectName());
    auto* charts = window.findChild<QComboBox*>("cmbGraph");
    for (int i = 0; charts != nullptr && i < charts->count(); ++i) {
      charts->setCurrentIndex(i);
      QApplication::processEvents();
      Take(frame, window.objectName() + "-" + QString::number(i));
    }
    for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
      if (!tabs->isTabEnabled(i)) continue;
      tabs->setCurrentIndex(i);
      QApplication::processEvents();
      Take(frame, window.objectName() + "-" + QString::number(i));
    }
  }

 private:
  QString folder_;
};

/// The picture of the whole program: charts, limits and heaters side by side.
void LayOut(shell::frmMain& main) {
  const auto place = [&main](const char* name, const QRect& where) {
    main.OpenWindow(name)->parentWidget()->setGeometry(where);
  };
  // The first steps of a new user: tachs on, fans free up to 100 %, a warm diode.
  main.OpenWindow("frmEasySetup")->findChild<QAbstractButton*>("cmdApply")->click();
  place("frmHeaters", {896, 440, 470, 190});
  auto* heater = main.FindWindow("frmHeaters")->findChild<QWidget*>("sldHeater(0)");
  heater->setProperty("Value", 40.0);
  QMetaObject::invokeMethod(heater, "Change");
  place("frmLimits", {796, 0, 570, 430});
  place("frmGraph", {0, 0, 790, 630});
}

void Run(int seconds) {
  QEventLoop loop;
  QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace
}  // namespace zth

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc < 2) return 2;
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (argc > 2 && QString(argv[2]) == "dark") zth::Darken();
  const int seconds = argc > 3 ? QString(argv[3]).toInt() : 10;
  QFont font = QApplication::font();
  if (argc > 4) font.setPointSizeF(font.pointSizeF() * QString(argv[4]).toInt() / 100);
  QApplication::setFont(font);

  zth::platform::DesktopServices desktop;
  const zth::platform::Services& real = desktop.All();
  zth::NoPrompts prompts;
  zth::NoSettings settings;
  zth::platform::Services services{prompts,     real.fileDialogs, settings,   real.shell,  real.clock,
                                   real.events, real.libraries,   real.files, real.process};
  zth::shell::Main(services);
  auto& main = *zth::shell::MainForm;
  main.showNormal();
  main.resize(1366, 728);
  zth::Photographer photographer(argv[1]);
  zth::LayOut(main);
  zth::Run(seconds);
  photographer.Take(main, "main");
  for (const auto& entry : zth::shell::kMenuEntries) {
    if (zth::shell::WindowExists(entry.window)) main.OpenWindow(entry.window);
  }
  zth::Run(3);
  for (const auto& entry : zth::shell::kMenuEntries) {
    if (auto* window = main.FindWindow(entry.window)) photographer.TakeWindow(*window);
  }
  delete &main;
  return 0;
}
