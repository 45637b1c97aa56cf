#include "platform/Surroundings.h"

#include <QFile>

namespace zth::platform {

QString VariableOf(const char* name) {
  return QFile::decodeName(qgetenv(name));
}

void PutVariable(const char* name, const QString& text) {
  qputenv(name, QFile::encodeName(text));
}

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

void PrepareStreams() {}

QString SettingsEnding() {
  return ".conf";
}

}  // namespace zth::platform
