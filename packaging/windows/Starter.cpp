// Starts the program from the folder above, so that nobody has to look for it among the libraries; with ZTH_SIMULATED
// the copy that has only the simulated board beside it. Needs no library but the system's.
#include <string>
#include <windows.h>

namespace {

#ifdef ZTH_SIMULATED
constexpr wchar_t kProgram[] = L"\\boards\\simulated\\zth4718-evaluation.exe";
#else
constexpr wchar_t kProgram[] = L"\\bin\\zth4718-evaluation.exe";
#endif
constexpr DWORD kLongest = 32'768;  // characters of a path or a variable

std::wstring OwnFolder() {
  std::wstring path(kLongest, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), kLongest));
  return path.substr(0, path.find_last_of(L'\\'));
}

std::wstring Variable(const wchar_t* name) {
  std::wstring text(kLongest, L'\0');
  text.resize(::GetEnvironmentVariableW(name, text.data(), kLongest));
  return text;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*before*/, LPWSTR arguments, int /*show*/) {
  const std::wstring home = OwnFolder();
  const std::wstring program = home + kProgram;
  // The copy beside the simulated board has none of the program's own libraries in its folder.
  ::SetEnvironmentVariableW(L"PATH", (home + L"\\bin;" + Variable(L"PATH")).c_str());
  std::wstring line = L"\"" + program + L"\" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started{};
  if (!::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
    const std::wstring text =
        program + L"\n\ncannot be started. Unpack the whole archive, and keep its folders together.";
    ::MessageBoxW(nullptr, text.c_str(), L"ZTH4718 Evaluation Software", MB_ICONERROR | MB_OK);
    return 1;
  }
  ::CloseHandle(started.hThread);
  ::CloseHandle(started.hProcess);
  return 0;
}
