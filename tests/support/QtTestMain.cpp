#include <QApplication>
#include <QLocale>
#include <QStandardPaths>
#include <gmock/gmock.h>

// The platform is set here and not by CTest, because the build also runs this to list the tests.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QLocale::setDefault(QLocale::c());
  QStandardPaths::setTestModeEnabled(true);
  const QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
