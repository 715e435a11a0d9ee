#include <windows.h>

#include <cstdio>
#include <functional>
#include <map>
#include <string>

// A program that sends the running player what no program should: tests start it with the names of what to
// send, in order. It prints a line for each, with what the machine said.

namespace {

constexpr DWORD Huge = 10'000'000;
constexpr UINT PatienceMs = 30000;
constexpr int Flood = 500;
const HWND NobodysWindow = reinterpret_cast<HWND>(static_cast<INT_PTR>(0x7FF0));

HWND Player() {
  return FindWindowA("VexMonitor", "frmMonitor");
}

HWND NewWindow() {
  return CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, nullptr, nullptr, nullptr,
                         nullptr);
}

HWND Own() {
  static HWND window = NewWindow();
  return window;
}

/// A window that was one of this program's and is none any more.
HWND Dead() {
  static HWND window = [] {
    HWND made = NewWindow();
    DestroyWindow(made);
    return made;
  }();
  return window;
}

bool Send(HWND from, DWORD size, const void* bytes, ULONG_PTR data = 3) {
  COPYDATASTRUCT copy{};
  copy.dwData = data;
  copy.cbData = size;
  copy.lpData = const_cast<void*>(bytes);
  DWORD_PTR result = 0;
  SetLastError(0);
  return SendMessageTimeoutA(Player(), WM_COPYDATA, reinterpret_cast<WPARAM>(from),
                             reinterpret_cast<LPARAM>(&copy), SMTO_NORMAL, PatienceMs, &result) != 0;
}

/// All bytes of the text and nothing behind them.
bool SendBare(HWND from, const std::string& szBytes, ULONG_PTR data = 3) {
  return Send(from, static_cast<DWORD>(szBytes.size()), szBytes.data(), data);
}

bool SendText(HWND from, const std::string& szText) {
  return Send(from, static_cast<DWORD>(szText.size() + 1), szText.c_str());
}

/// The sender is gone before the player has looked at what it was sent.
bool SendAndGo() {
  HWND window = NewWindow();
  const bool boolSent = SendText(window, "02");
  DestroyWindow(window);
  return boolSent;
}

/// Stray messages of other kinds, as programs that speak to all windows send them.
bool SendOthers() {
  for (const UINT message : std::initializer_list<UINT>{WM_TIMER, WM_COMMAND, WM_SETTEXT, WM_PAINT, WM_SIZE,
                                                        WM_USER, 0xC123, WM_NULL})
    PostMessageA(Player(), message, 0, 0);
  return SendMessageA(Player(), WM_GETTEXT, 0, 0) == 0;
}

bool SendManyOdd() {
  for (int i = 0; i < Flood; ++i) {
    const std::string szType = {static_cast<char>(i % 256), static_cast<char>(i / 2 % 256)};
    // Nothing that could be a number: some of these end the player.
    if (szType.find_first_of("0123456789") != std::string::npos) continue;
    if (!SendBare(Own(), szType + std::string(static_cast<size_t>(i), static_cast<char>(i)))) return false;
  }
  return true;
}

const std::map<std::string, std::function<bool()>>& Words() {
  static const std::string szLater = "09(unended.shw,(T,2099-01-01 18:00:00,T,2099-01-01 19:00:00),2,F)";
  static const std::map<std::string, std::function<bool()>> words = {
      {"null", [] { return Send(Own(), 40, nullptr); }},
      {"null-without-size", [] { return Send(Own(), 0, nullptr); }},
      {"size-0", [] { return Send(Own(), 0, "05"); }},
      {"size-0-from-nobody", [] { return Send(nullptr, 0, nullptr); }},
      {"no-struct", [] { return SendMessageA(Player(), WM_COPYDATA, 0, 0) != 0; }},
      {"one-byte", [] { return SendBare(Own(), "0"); }},
      {"no-final-zero", [] { return SendBare(Own(), szLater); }},
      {"cut-at-zero", [] { return SendBare(Own(), std::string("06on\0ON", 7)); }},
      {"no-number",
       [] {
         return SendText(Own(), "x9(a.shw,(F,,F,),2,F)") && SendText(Own(), "-1") && SendText(Own(), "99");
       }},
      {"other-data", [] { return SendBare(Own(), szLater, 77); }},
      {"no-record", [] { return SendText(Own(), "09((((((not a record"); }},
      {"huge", [] { return SendText(Own(), "99" + std::string(Huge, 'x')); }},
      {"huge-record", [] { return SendText(Own(), "09" + std::string(Huge, '(')); }},
      {"huge-zeros", [] { return SendBare(Own(), std::string(Huge, '\0')); }},
      {"many-odd", SendManyOdd},
      {"others", SendOthers},
      {"dead", [] { return SendText(Dead(), "05"); }},
      {"dead-tray", [] { return SendText(Dead(), "02"); }},
      {"nobodys-tray", [] { return SendText(NobodysWindow, "02") && SendText(nullptr, "02"); }},
      {"gone-tray", SendAndGo},
  };
  return words;
}

}  // namespace

int main(int argc, char** argv) {
  if (Player() == nullptr) {
    std::puts("there is no player");
    return 1;
  }
  for (int i = 1; i < argc; ++i) {
    const auto word = Words().find(argv[i]);
    if (word == Words().end()) {
      std::printf("%s: not known\n", argv[i]);
      return 2;
    }
    const bool boolSent = word->second();
    std::printf("%s: %s, error %lu\n", argv[i], boolSent ? "taken" : "not taken", GetLastError());
    std::fflush(stdout);
  }
  return 0;
}
