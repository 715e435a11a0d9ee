#include "tray/web/RequestHead.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace vex {
namespace {

constexpr int BadRequest = 400;
constexpr int MethodNotAllowed = 405;
constexpr int LengthRequired = 411;
constexpr int TooLarge = 413;
constexpr int TargetTooLong = 414;
constexpr int UnsupportedType = 415;
constexpr int ExpectationFailed = 417;
constexpr int TooManyHeaders = 431;

constexpr std::array<std::string_view, 3> Methods{"GET", "HEAD", "POST"};

bool SameWord(std::string_view szLeft, std::string_view szRight) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
  };
  return std::equal(szLeft.begin(), szLeft.end(), szRight.begin(), szRight.end(),
                    [&lower](char left, char right) { return lower(left) == lower(right); });
}

std::string_view Trimmed(std::string_view szText) {
  while (!szText.empty() && (szText.front() == ' ' || szText.front() == '\t')) szText.remove_prefix(1);
  while (!szText.empty() && (szText.back() == ' ' || szText.back() == '\t')) szText.remove_suffix(1);
  return szText;
}

/// Letters of a header's name as HTTP has them; a blank before the colon is one of the ways in which two
/// servers in a row read two different requests.
bool IsToken(std::string_view szText) {
  constexpr std::string_view szMarks = "!#$%&'*+-.^_`|~";
  return !szText.empty() && std::all_of(szText.begin(), szText.end(), [szMarks](char letter) {
    return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') ||
           (letter >= 'A' && letter <= 'Z') || szMarks.find(letter) != std::string_view::npos;
  });
}

bool IsPlain(std::string_view szText) {
  return std::all_of(szText.begin(), szText.end(), [](char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte == '\t' || (byte >= ' ' && byte != 0x7f);
  });
}

/// The next line without its end; nothing where a line ends otherwise than by CR LF.
std::optional<std::string_view> NextLine(std::string_view& szRest) {
  const auto end = szRest.find("\r\n");
  if (end == std::string_view::npos) return std::nullopt;
  const auto szLine = szRest.substr(0, end);
  szRest.remove_prefix(end + 2);
  return szLine;
}

int JudgeFirstLine(std::string_view szLine, bool& boolPost) {
  const auto afterMethod = szLine.find(' ');
  const auto afterTarget = szLine.rfind(' ');
  if (afterMethod == std::string_view::npos || afterMethod == afterTarget) return BadRequest;
  const auto szMethod = szLine.substr(0, afterMethod);
  const auto szTarget = szLine.substr(afterMethod + 1, afterTarget - afterMethod - 1);
  const auto szVersion = szLine.substr(afterTarget + 1);
  if (szVersion != "HTTP/1.1" && szVersion != "HTTP/1.0") return BadRequest;
  if (szTarget.empty() || szTarget.front() != '/' || szTarget.find(' ') != std::string_view::npos)
    return BadRequest;
  if (!IsToken(szMethod)) return BadRequest;
  if (szTarget.size() > MostTargetBytes) return TargetTooLong;
  if (std::find(Methods.begin(), Methods.end(), szMethod) == Methods.end()) return MethodNotAllowed;
  boolPost = szMethod == "POST";
  return 0;
}

/// What the headers say of the body and of the machine asked for.
struct Told {
  size_t Hosts = 0;
  std::optional<size_t> Length;
};

int JudgeLength(std::string_view szValue, Told& told) {
  size_t length = 0;
  const auto read = std::from_chars(szValue.data(), szValue.data() + szValue.size(), length);
  const auto boolDigits =
      !szValue.empty() && szValue.find_first_not_of("0123456789") == std::string_view::npos;
  if (!boolDigits || told.Length) return BadRequest;
  if (read.ec != std::errc() || length > MostBodyBytes) return TooLarge;
  told.Length = length;
  return 0;
}

int JudgeHeader(std::string_view szLine, Told& told) {
  const auto colon = szLine.find(':');
  if (colon == std::string_view::npos || !IsToken(szLine.substr(0, colon))) return BadRequest;
  const auto szName = szLine.substr(0, colon);
  const auto szValue = Trimmed(szLine.substr(colon + 1));
  if (SameWord(szName, "Host")) told.Hosts++;
  if (SameWord(szName, "Content-Length")) return JudgeLength(szValue, told);
  // A length that is told as it goes bounds nothing, and few packed bytes can become many.
  if (SameWord(szName, "Transfer-Encoding")) return LengthRequired;
  if (SameWord(szName, "Content-Encoding")) return UnsupportedType;
  if (SameWord(szName, "Expect")) return ExpectationFailed;
  return 0;
}

}  // namespace

HeadVerdict JudgeHead(std::string_view szHead) {
  if (szHead.size() > MostHeadBytes) return {TooManyHeaders, 0};
  if (!szHead.ends_with("\r\n\r\n")) return {BadRequest, 0};
  bool boolPost = false;
  Told told;
  const auto szFirst = NextLine(szHead);
  if (!szFirst || !IsPlain(*szFirst)) return {BadRequest, 0};
  if (const int status = JudgeFirstLine(*szFirst, boolPost)) return {status, 0};
  for (size_t count = 0;; count++) {
    const auto szLine = NextLine(szHead);
    if (!szLine) return {BadRequest, 0};
    if (szLine->empty()) break;
    if (count == MostHeaders) return {TooManyHeaders, 0};
    if (!IsPlain(*szLine)) return {BadRequest, 0};
    if (const int status = JudgeHeader(*szLine, told)) return {status, 0};
  }
  if (!szHead.empty() || told.Hosts != 1) return {BadRequest, 0};
  if (boolPost && !told.Length) return {LengthRequired, 0};
  if (!boolPost && told.Length.value_or(0) != 0) return {BadRequest, 0};
  return {0, told.Length.value_or(0)};
}

std::string WithoutRange(std::string_view szHead) {
  std::string szKept;
  while (!szHead.empty()) {
    const auto end = szHead.find("\r\n");
    const auto size = end == std::string_view::npos ? szHead.size() : end + 2;
    const auto szLine = szHead.substr(0, size);
    if (!SameWord(szLine.substr(0, 6), "Range:")) szKept += szLine;
    szHead.remove_prefix(size);
  }
  return szKept;
}

}  // namespace vex
