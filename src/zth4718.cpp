#include <cstdio>
#include <string>
#include <vector>

#include <QCoreApplication>

#include "command/Commands.h"
#include "platform/ConsoleServices.h"
#include "platform/SignalWatch.h"

namespace {

void Put(std::FILE* file, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), file);
  std::fflush(file);
}

}  // namespace

int main(int argc, char** argv) {
  zth::platform::IgnoreBrokenPipes();
  const QCoreApplication application(argc, argv);
  zth::platform::ConsoleServices services;
  return zth::command::Run(
      std::vector<std::string>(argv + 1, argv + argc), services.All(),
      {[](std::string_view text) { Put(stdout, text); }, [](std::string_view text) { Put(stderr, text); }});
}
