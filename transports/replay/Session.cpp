#include "replay/Session.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>
#include <thread>

namespace zth::replay {
namespace {

namespace fs = std::filesystem;
using std::chrono::duration;
using std::chrono::steady_clock;

fs::path RecordingFile() {
#ifdef _WIN32
  // The narrow variable lacks the characters that are not in the code page.
  const wchar_t* const named = ::_wgetenv(L"ZTH4718_REPLAY");
#else
  const char* const named = std::getenv("ZTH4718_REPLAY");
#endif
  return named == nullptr ? fs::path() : fs::path(named);
}

/// The bytes of a file from its start, in pieces. A file that cannot be read has none.
tasks::TrafficReader::Source SourceOf(const fs::path& path) {
  std::error_code error;
  // A pipe would give its bytes once only, and perhaps never.
  if (!fs::is_regular_file(path, error)) return [] { return std::string(); };
  return [file = std::make_shared<std::ifstream>(path, std::ios::binary)] {
    constexpr std::streamsize kPiece = 65'536;
    std::string piece(static_cast<std::size_t>(kPiece), '\0');
    file->read(piece.data(), kPiece);
    piece.resize(static_cast<std::size_t>(file->gcount()));
    return piece;
  };
}

/// How much faster than recorded; 0, without any wait, if nothing is asked for.
double Speed(const char* library) {
  const char* const asked = std::getenv("ZTH4718_REPLAY_SPEED");
  const std::string_view text = asked == nullptr ? std::string_view() : std::string_view(asked);
  if (text.empty()) return 0;
  double factor = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), factor);
  const bool isFactor = error == std::errc() && end == text.data() + text.size() && factor >= 0 && factor <= 1e6;
  if (isFactor) return factor;
  std::fprintf(stderr, "%s: ZTH4718_REPLAY_SPEED is no factor from 0 to 1000000: no answer waits\n", library);
  return 0;
}

std::string NameOf(const fs::path& path) {
  return path.empty() ? "no recording: ZTH4718_REPLAY names none" : path.filename().string();
}

}  // namespace

Session::Session(std::int16_t mode, const char* library)
    : library_(library),
      name_("Replay of " + NameOf(RecordingFile())),
      replay_([path = RecordingFile()] { return SourceOf(path); }, mode, RecordingFile().filename().string()),
      pace_(Speed(library)) {
  Tell();
}

tasks::TrafficRecord Session::Answer(const tasks::TrafficRecord& request) {
  const tasks::TrafficRecord answer = replay_.Answer(request);
  Tell();
  if (answer.time >= 0) {
    const double now = duration<double>(steady_clock::now().time_since_epoch()).count();
    const double wait = pace_.WaitFor(answer.time, now);
    if (wait > 0) std::this_thread::sleep_for(duration<double>(wait));
  }
  return answer;
}

void Session::Tell() {
  if (told_ == replay_.Trouble()) return;
  told_ = replay_.Trouble();
  std::fprintf(stderr, "%s: %s\n", library_.c_str(), told_.c_str());
}

}  // namespace zth::replay
