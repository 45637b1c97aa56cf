#include <cstdio>
#include <string>
#include <vector>

#include <QCoreApplication>

#include "command/Commands.h"
#include "platform/ConsoleServices.h"
#include "platform/SignalWatch.h"
#include "platform/Surroundings.h"

namespace {

void Put(std::FILE* file, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), file);
  std::fflush(file);
}

}  // namespace

int main(int argc, char** argv) {
  zth::platform::IgnoreBrokenPipes();
  zth::platform::PrepareStreams();
  const QCoreApplication application(argc, argv);
  zth::platform::ConsoleServices services;
  return zth::command::Run(
      zth::platform::Arguments(argc, argv), services.All(),
      {[](std::string_view text) { Put(stdout, text); }, [](std::string_view text) { Put(stderr, text); }});
}
