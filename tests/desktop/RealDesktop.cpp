#include "tests/desktop/RealDesktop.h"

#include <QMdiSubWindow>

#include "shell/Main.h"

namespace zth::testing {

RealDesktop::RealDesktop() {
  QApplication::setQuitOnLastWindowClosed(false);
  desk.process.folder = folder.path();
  settings.Put("OpenEasySetup", "False");
}

void RealDesktop::Start() {
  ::zth::shell::Main(services);
  QObject::connect(::zth::shell::MainForm, &::zth::shell::frmMain::Closed, qApp, &QApplication::quit);
  QApplication::setActiveWindow(&desk.Main());
  Do([] {});
}

void RealDesktop::Do(const std::function<void()>& act) {
  constexpr int kTurnsBehind = 3;
  QObject here;  // anything that has not happened by then never will
  std::function<void(int)> leave = [&](int turns) {
    QTimer::singleShot(1, &here, [&leave, turns] { turns > 0 ? leave(turns - 1) : QCoreApplication::exit(); });
  };
  QTimer::singleShot(0, &here, [&] {
    handling = true;
    act();
    handling = false;
    leave(kTurnsBehind);
  });
  QApplication::exec();
}

QPointer<windows::ChildWindow> RealDesktop::Open(const std::string& name) {
  auto& window = desk.Open(QString::fromStdString(name));
  QObject::connect(&window, &QObject::destroyed, &desk.Main(),
                   [this, name] { EXPECT_FALSE(handling) << name << " was deleted beneath its handler"; });
  return &window;
}

void RealDesktop::CloseFrame(QWidget& window) {
  window.parentWidget()->close();
}

void RealDesktop::ExpectAlive() {
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  const bool runs = desk.process.ends.empty() && desk.Main().isVisible();
  desk.board.TakeTraffic();
  desk.Advance(1000);
  EXPECT_EQ(!desk.board.TakeTraffic().empty(), runs) << "polling";
}

}  // namespace zth::testing
