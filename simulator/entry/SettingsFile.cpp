#include "simulator/entry/SettingsFile.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <variant>

#include "simulator/SettingsText.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace zth::simulator {
namespace {

namespace fs = std::filesystem;

/// The path of the library that contains this code; empty if the loader does not tell.
fs::path OwnFile() {
  static const char kHere = 0;
#ifdef _WIN32
  HMODULE module = nullptr;
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  wchar_t path[4096] = {};
  if (!GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&kHere), &module)) return {};
  return GetModuleFileNameW(module, path, 4095) == 0 ? fs::path() : fs::path(path);
#else
  Dl_info info{};
  return dladdr(&kHere, &info) == 0 || info.dli_fname == nullptr ? fs::path() : fs::path(info.dli_fname);
#endif
}

/// The file that the user has named; empty if none.
fs::path NamedFile() {
#ifdef _WIN32
  // The narrow variable lacks the characters that are not in the code page.
  const wchar_t* const named = ::_wgetenv(L"ZTH4718_SIMULATOR");
#else
  const char* const named = std::getenv("ZTH4718_SIMULATOR");
#endif
  return named == nullptr ? fs::path() : fs::path(named);
}

}  // namespace

Settings LoadSettings(const char* library) {
  const fs::path named = NamedFile();
  const bool isNamed = !named.empty();
  const fs::path path = isNamed ? named : OwnFile().parent_path() / "simulator.conf";

  std::ifstream file(path);
  if (!file) {
    if (isNamed) std::fprintf(stderr, "%s: %s: cannot be read, the defaults hold\n", library, path.string().c_str());
    return {};
  }
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const auto parsed = ParseSettings(text);
  if (const auto* settings = std::get_if<Settings>(&parsed)) return *settings;
  const auto& error = std::get<SettingsError>(parsed);
  std::fprintf(stderr, "%s: %s:%d: %s; the defaults hold\n", library, path.string().c_str(), error.line,
               error.text.c_str());
  return {};
}

}  // namespace zth::simulator
