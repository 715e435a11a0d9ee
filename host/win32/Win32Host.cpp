#include "host/win32/Win32Host.h"

#include <fcntl.h>
#include <io.h>

#include <array>
#include <atomic>
#include <cstdio>

#include "host/CodePage.h"
#include "host/win32/Console.h"
#include "host/win32/RegistryExport.h"
#include "host/win32/SystemError.h"
#include "host/win32/SystemHeaders.h"
#include "host/win32/WideText.h"
// Behind the others: they want the machine's words.
#include <shellapi.h>
#include <shlobj.h>

namespace vex {
namespace {

constexpr DWORD LongestFarewellMs = 5000;

std::atomic<Signal*>& InterruptSignal() {
  static std::atomic<Signal*> signal = nullptr;
  return signal;
}

/// Runs on a thread of the machine's. When the console goes away the program ends with this call, so it
/// gives the loop its time.
BOOL WINAPI OnConsole(DWORD event) {
  Signal* const signal = InterruptSignal();
  if (signal == nullptr) return FALSE;
  signal->Raise();
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(LongestFarewellMs);
  return TRUE;
}

}  // namespace

std::string BehindProgramName(const std::string& szCommandLine) {
  const bool boolQuoted = szCommandLine.starts_with('"');
  size_t at = szCommandLine.find_first_of(boolQuoted ? "\"" : " \t", boolQuoted ? 1 : 0);
  if (at == std::string::npos) return "";
  if (boolQuoted) ++at;
  at = szCommandLine.find_first_not_of(" \t", at);
  return at == std::string::npos ? "" : szCommandLine.substr(at);
}

Win32Host::Win32Host()
    : m_SingleInstance([this] { m_Windows.BecomePlayer(); }),
      m_Windows(m_EventLoop),
      m_PlayerFinder(m_Files) {}

Win32Host::~Win32Host() {
  if (m_Interrupt) InterruptSignal() = nullptr;
}

std::string Win32Host::CommandLine(int /*argc*/, char** /*argv*/) const {
  return BehindProgramName(GetCommandLineA());
}

std::vector<std::string> Win32Host::Arguments(int /*argc*/, char** /*argv*/) const {
  PrintOnConsoles();
  // Lines end as on every other machine, so that the same question has the same answer to the byte.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 0; words != nullptr && i < count; ++i) arguments.push_back(Utf16ToUtf8(Utf16OfWide(words[i])));
  LocalFree(words);
  return arguments;
}

std::string Win32Host::MachineId() {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Cryptography", 0, KEY_READ | KEY_WOW64_64KEY,
                    &key) != ERROR_SUCCESS)
    return "";
  std::array<char, 64> id{};
  auto size = static_cast<DWORD>(id.size() - 1);
  const LONG lCode =
      RegQueryValueExA(key, "MachineGuid", nullptr, nullptr, reinterpret_cast<BYTE*>(id.data()), &size);
  RegCloseKey(key);
  return lCode == ERROR_SUCCESS ? std::string(id.data()) : std::string();
}

std::string Win32Host::UserDataFolder() {
  std::array<char, MAX_PATH> folder{};
  const HRESULT result = SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder.data());
  if (FAILED(result)) throw SystemError("Host.UserDataFolder", "", static_cast<uint32_t>(result));
  return std::string(folder.data()) + "\\VexMonitor\\";
}

RegistryText Win32Host::ExportSettings(const std::string& szSubkey) {
  RegistryText text;
  ExportRegistryKey(szSubkey, text);
  return text;
}

PlaceWords Win32Host::Places() const {
  return {"The player is found by its window, on the desktop of this user.",
          "The settings lie in the registry, in HKEY_CURRENT_USER\\Software\\Brillara.",
          "no player is running; start VexMonitor.exe as the same user, on the same desktop",
          "start VexMonitor.exe as the user whose shows play", ""};
}

bool Win32Host::IsTerminal(StandardStream stream) const {
  DWORD mode = 0;  // which only a console has
  return GetConsoleMode(GetStdHandle(stream == StandardStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE),
                        &mode) != 0;
}

void Win32Host::OnTerminate(std::function<void()> handler) {
  m_Windows.OnTerminate(handler);
  m_Interrupt = m_EventLoop.NewSignal(std::move(handler));
  InterruptSignal() = m_Interrupt.get();
  SetConsoleCtrlHandler(OnConsole, TRUE);
}

/// The loop's thread goes before all that has no such claim; threads of libraries, which decode, stay behind
/// it.
bool Win32Host::SharpTimers() {
  const bool boolProcess = SetPriorityClass(GetCurrentProcess(), ABOVE_NORMAL_PRIORITY_CLASS) != 0;
  return SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL) != 0 && boolProcess;
}

std::unique_ptr<Host> NativeHost() {
  return std::make_unique<Win32Host>();
}

}  // namespace vex
