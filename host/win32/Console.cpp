#include "host/win32/Console.h"

#include <algorithm>
#include <iostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "host/CodePage.h"
#include "host/win32/SystemHeaders.h"
#include "host/win32/WideText.h"

namespace vex {
namespace {

constexpr size_t UnitsAtOnce = 8192;  // older consoles refuse more than fits in 64 KB
constexpr size_t EnoughBytes = 4096;

size_t LengthOfUtf8(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// How much of the text is whole characters: a stream may be asked to show what it has in the middle of one.
size_t WholeLength(std::string_view szUtf8) {
  for (size_t back = 1; back <= std::min<size_t>(3, szUtf8.size()); ++back) {
    const char byte = szUtf8[szUtf8.size() - back];
    if ((static_cast<unsigned char>(byte) & 0xC0) == 0x80) continue;
    return LengthOfUtf8(byte) > back ? szUtf8.size() - back : szUtf8.size();
  }
  return szUtf8.size();
}

/// Shows UTF-8 on a console.
class ConsoleBuffer : public std::streambuf {
 public:
  explicit ConsoleBuffer(HANDLE console) : m_Console(console) {}

 protected:
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    m_Text += traits_type::to_char_type(character);
    return m_Text.size() < EnoughBytes || Show() ? character : traits_type::eof();
  }
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    m_Text.append(bytes, static_cast<size_t>(count));
    return m_Text.size() < EnoughBytes || Show() ? count : 0;
  }
  int sync() override { return Show() ? 0 : -1; }

 private:
  bool Show() {
    const size_t whole = WholeLength(m_Text);
    std::wstring szWide = WideOfUtf16(Utf8ToUtf16(std::string_view(m_Text).substr(0, whole)));
    m_Text.erase(0, whole);
    while (!szWide.empty()) {
      DWORD shown = 0;
      const auto count = static_cast<DWORD>(std::min(szWide.size(), UnitsAtOnce));
      if (WriteConsoleW(m_Console, szWide.data(), count, &shown, nullptr) == 0 || shown == 0) return false;
      szWide.erase(0, shown);
    }
    return true;
  }

  HANDLE m_Console;
  std::string m_Text;
};

void PrintOnConsole(std::ostream& stream, DWORD which) {
  HANDLE const handle = GetStdHandle(which);
  DWORD mode = 0;  // which only a console has
  if (GetConsoleMode(handle, &mode) == 0) return;
  stream.flush();
  // Never deleted: the streams are flushed once more when everything else of the program is gone.
  stream.rdbuf(new ConsoleBuffer(handle));
}

}  // namespace

void PrintOnConsoles() {
  PrintOnConsole(std::cout, STD_OUTPUT_HANDLE);
  PrintOnConsole(std::cerr, STD_ERROR_HANDLE);
}

}  // namespace vex
