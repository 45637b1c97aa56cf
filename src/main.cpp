#include "shell/Main.h"

#include <QApplication>

#include "platform/DesktopServices.h"
#include "platform/SignalWatch.h"
#include "shell/frmMain.h"

int main(int argc, char** argv) {
  zth::platform::IgnoreBrokenPipes();
  QApplication application(argc, argv);
  QApplication::setDesktopFileName("zth4718-evaluation");
  // The main window's closing ends the program, not the splash's, after which no window shows for a moment.
  QApplication::setQuitOnLastWindowClosed(false);

  zth::platform::DesktopServices services;
  zth::shell::Main(services.All());
  QObject::connect(zth::shell::MainForm, &zth::shell::frmMain::Closed, &application, &QApplication::quit);
  const int status = QApplication::exec();
  delete zth::shell::MainForm;
  return status;
}
