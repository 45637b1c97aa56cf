#include "platform/Surroundings.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <QCoreApplication>

namespace zth::platform {

QString VariableOf(const char* name) {
  return qEnvironmentVariable(name);
}

void PutVariable(const char* name, const QString& text) {
  // The narrow function would lose what the code page lacks.
  ::_wputenv_s(QString(name).toStdWString().c_str(), text.toStdWString().c_str());
}

std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
  // Those of main are in the code page; Qt asks the system for the wide ones.
  std::vector<std::string> words;
  const QStringList arguments = QCoreApplication::arguments();
  for (qsizetype i = 1; i < arguments.size(); ++i) words.push_back(arguments[i].toStdString());
  return words;
}

void PrepareStreams() {
  ::SetConsoleOutputCP(CP_UTF8);
  // In text mode each line feed would become two bytes, and a file that is compared elsewhere would differ.
  for (std::FILE* stream : {stdout, stderr}) ::_setmode(::_fileno(stream), _O_BINARY);
}

QString SettingsEnding() {
  return ".ini";
}

}  // namespace zth::platform
