#include "host/win32/Win32Clock.h"

#include <array>

#include "host/CodePage.h"
#include "host/win32/SystemHeaders.h"
#include "host/win32/WideText.h"

namespace vex {
namespace {

SYSTEMTIME LocalTime() {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  return time;
}

}  // namespace

Win32Clock::Win32Clock() {
  LARGE_INTEGER frequency{};
  QueryPerformanceFrequency(&frequency);
  m_Frequency = frequency.QuadPart;
}

DateTime Win32Clock::Now() const {
  const SYSTEMTIME time = LocalTime();
  return DateTime::FromParts(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
}

double Win32Clock::SecondsOfDay() const {
  const SYSTEMTIME time = LocalTime();
  return (time.wHour * 60 + time.wMinute) * 60 + time.wSecond + time.wMilliseconds * 0.001;
}

std::string Win32Clock::ShortTime() const {
  const SYSTEMTIME time = LocalTime();
  std::array<wchar_t, 80> format{};
  std::array<wchar_t, 80> text{};
  // The single-byte call does not know the short format everywhere. An empty one would leave no time at all.
  GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTTIME, format.data(), static_cast<int>(format.size()));
  const bool boolFormat = format[0] != L'\0';
  GetTimeFormatW(LOCALE_USER_DEFAULT, boolFormat ? 0 : TIME_NOSECONDS, &time,
                 boolFormat ? format.data() : nullptr, text.data(), static_cast<int>(text.size()));
  std::string szTime;
  if (Utf16ToAnsi(Utf16OfWide(text.data()), szTime)) return szTime;
  // The user's language has words for the half of the day that the machine's code page does not know.
  std::array<char, 8> plain{};
  GetTimeFormatA(LOCALE_INVARIANT, 0, &time, "HH':'mm", plain.data(), static_cast<int>(plain.size()));
  return plain.data();
}

Elapsed Win32Clock::Elapsed() const {
  LARGE_INTEGER counter{};
  QueryPerformanceCounter(&counter);
  // In two steps, for the whole product would not fit.
  constexpr int64_t nanoseconds = 1'000'000'000;
  const int64_t seconds = counter.QuadPart / m_Frequency;
  const int64_t rest = counter.QuadPart % m_Frequency;
  return std::chrono::seconds(seconds) + std::chrono::nanoseconds(rest * nanoseconds / m_Frequency);
}

}  // namespace vex
