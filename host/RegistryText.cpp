#include "host/RegistryText.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "basic/Error.h"
#include "host/CodePage.h"

namespace vex {

namespace {

constexpr std::string_view Version5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view Version4 = "REGEDIT4";
constexpr std::string_view CurrentUser = "HKEY_CURRENT_USER";
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view Utf16Mark = "\xFF\xFE";
constexpr std::string_view Blanks = " \t";

std::string_view TrimFront(std::string_view szText) {
  szText.remove_prefix(std::min(szText.find_first_not_of(Blanks), szText.size()));
  return szText;
}

std::string_view Trim(std::string_view szText) {
  szText = TrimFront(szText);
  return szText.substr(0, szText.find_last_not_of(Blanks) + 1);
}

/// A subkey as it is looked up by.
std::string KeyOf(std::string_view szSubkey) {
  while (AnsiEndsWith(szSubkey, '\\')) szSubkey.remove_suffix(1);
  return FoldCase(szSubkey);
}

/// A line without its end.
std::string_view Content(std::string_view szLine) {
  if (szLine.ends_with('\n')) szLine.remove_suffix(1);
  if (szLine.ends_with('\r')) szLine.remove_suffix(1);
  return szLine;
}

bool NothingOrComment(std::string_view szText) {
  szText = TrimFront(szText);
  return szText.empty() || szText.front() == ';';
}

bool SameWithoutCase(std::string_view a, std::string_view b) {
  return FoldCase(a) == FoldCase(b);
}

/// Takes a quoted text off the front; false when its end or a known escape is missing.
bool TakeQuoted(std::string_view& szRest, std::string& szText) {
  szText.clear();
  for (size_t at = 1; at < szRest.size(); ++at) {
    if (szRest[at] == '"') {
      szRest.remove_prefix(at + 1);
      return true;
    }
    if (szRest[at] == '\\' && (++at == szRest.size() || (szRest[at] != '\\' && szRest[at] != '"')))
      return false;
    szText += szRest[at];
  }
  return false;
}

/// One to eight hexadecimal digits off the front.
std::optional<uint32_t> TakeHex(std::string_view& szRest) {
  constexpr std::string_view digits = "0123456789abcdef";
  uint32_t number = 0;
  size_t at = 0;
  for (; at < szRest.size(); ++at) {
    const char digit =
        szRest[at] >= 'A' && szRest[at] <= 'F' ? static_cast<char>(szRest[at] + 0x20) : szRest[at];
    const size_t value = digits.find(digit);
    if (value == std::string_view::npos) break;
    number = number << 4 | static_cast<uint32_t>(value);
  }
  if (at == 0 || at > 8) return std::nullopt;
  szRest.remove_prefix(at);
  return number;
}

std::string Quoted(std::string_view szText) {
  std::string szQuoted = "\"";
  for (const char character : szText) {
    if (character == '\\' || character == '"') szQuoted += '\\';
    szQuoted += character;
  }
  return szQuoted + '"';
}

std::string HexDigits(uint32_t number) {
  std::string szDigits(8, '0');
  for (size_t at = 8; at-- > 0; number >>= 4) szDigits[at] = "0123456789abcdef"[number & 15];
  return szDigits;
}

/// A line end or a zero inside a name or text cannot stand in a line.
void RequireOneLine(std::string_view szText) {
  if (szText.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos)
    throw PlatformError(ErrorInvalidCall);
}

std::u16string Utf16Of(std::string_view szBytes) {
  std::u16string szText(szBytes.size() / 2, u'\0');
  for (size_t at = 0; at < szText.size(); ++at) {
    const auto low = static_cast<uint8_t>(szBytes[2 * at]);
    const auto high = static_cast<uint8_t>(szBytes[2 * at + 1]);
    szText[at] = static_cast<char16_t>(high << 8 | low);
  }
  return szText;
}

std::string BytesOf(std::u16string_view szText) {
  std::string szBytes;
  szBytes.reserve(szText.size() * 2);
  for (const char16_t unit : szText)
    szBytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  return szBytes;
}

}  // namespace

RegistryText::RegistryText() : m_Lines{std::string(Version5) + "\n"} {}

RegistryText::RegistryText(std::string_view szBytes) : RegistryText() {
  if (szBytes.empty()) return;
  m_Lines.clear();
  Decode(szBytes);
  if (m_Lines.empty()) m_Lines.push_back(std::string(Version5) + m_LineEnd);
  Read();
}

void RegistryText::Decode(std::string_view szBytes) {
  if (szBytes.starts_with(Utf16Mark)) {
    m_Encoding = Encoding::Utf16;
    SplitLines(Utf16ToUtf8(Utf16Of(szBytes.substr(Utf16Mark.size()))));
  } else if (szBytes.starts_with(Utf8Mark)) {
    m_Encoding = Encoding::Utf8WithMark;
    SplitLines(szBytes.substr(Utf8Mark.size()));
  } else {
    // The editor writes REGEDIT4 in the machine's own code page.
    const bool boolSingleByte = szBytes.starts_with(Version4) && !IsUtf8(szBytes);
    m_Encoding = boolSingleByte ? Encoding::SingleByte : Encoding::Utf8;
    SplitLines(boolSingleByte ? AnsiToUtf8(szBytes) : szBytes);
  }
}

void RegistryText::SplitLines(std::string_view szText) {
  while (!szText.empty()) {
    const size_t length = std::min(szText.find('\n'), szText.size() - 1) + 1;
    m_Lines.emplace_back(szText.substr(0, length));
    szText.remove_prefix(length);
  }
  m_LineEnd = !m_Lines.empty() && m_Lines.front().ends_with("\r\n") ? "\r\n" : "\n";
}

std::string RegistryText::Bytes() const {
  std::string szText;
  for (const std::string& szLine : m_Lines) szText += szLine;
  // Single bytes that have come to look like UTF-8 would be read as that; then they had better be it.
  std::string szAnsi;
  if (m_Encoding == Encoding::SingleByte && Utf8ToAnsi(szText, szAnsi) && !IsUtf8(szAnsi)) return szAnsi;
  if (m_Encoding == Encoding::Utf16) return std::string(Utf16Mark) + BytesOf(Utf8ToUtf16(szText));
  return m_Encoding == Encoding::Utf8WithMark ? std::string(Utf8Mark) + szText : szText;
}

void RegistryText::Read() {
  m_Keys.clear();
  m_Sections.clear();
  m_Errors.clear();
  m_Where = Where::Nowhere;
  size_t line = 0;
  while (line < m_Lines.size() && NothingOrComment(Content(m_Lines[line]))) ++line;
  const std::string_view szFirst = line < m_Lines.size() ? Trim(Content(m_Lines[line])) : "";
  if (szFirst == Version5 || szFirst == Version4) {
    ++line;
  } else {
    Complain(std::min(line, m_Lines.empty() ? 0 : m_Lines.size() - 1),
             "neither \"" + std::string(Version5) + "\" nor \"" + std::string(Version4) + "\" comes first");
  }
  while (line < m_Lines.size()) {
    const std::string_view szContent = TrimFront(Content(m_Lines[line]));
    if (szContent.starts_with('[')) {
      ReadSection(szContent, line++);
    } else if (m_Where == Where::PassedOver || NothingOrComment(szContent)) {
      ++line;
    } else {
      line += ReadValue(szContent, line);
    }
  }
}

void RegistryText::ReadSection(std::string_view szContent, size_t line) {
  m_Where = Where::PassedOver;
  const size_t end = szContent.rfind(']');
  if (end == std::string_view::npos || !NothingOrComment(szContent.substr(end + 1)))
    return Complain(line, "a key without its closing bracket");
  const std::string_view szPath = szContent.substr(1, end - 1);
  const size_t split = std::min(szPath.find('\\'), szPath.size());
  if (!SameWithoutCase(szPath.substr(0, split), CurrentUser)) return;
  std::string szSubkey;
  if (!Utf8ToAnsi(szPath.substr(std::min(split + 1, szPath.size())), szSubkey))
    return Complain(line, "a key with a character that is not in the code page");
  while (AnsiEndsWith(szSubkey, '\\')) szSubkey.pop_back();
  m_Where = Where::InKey;
  m_Current = FoldCase(szSubkey);
  m_Sections[m_Current].Insert = line + 1;
  m_Keys.try_emplace(m_Current).first->second.Subkey = szSubkey;
}

size_t RegistryText::ReadValue(std::string_view szContent, size_t line) {
  const size_t lines = LinesOfValue(line);
  if (m_Where == Where::Nowhere) {
    Complain(line, "a value before the first key");
    return lines;
  }
  Section& section = m_Sections[m_Current];
  section.Insert = line + lines;
  if (szContent.front() == '@') return lines;
  RegistryTextValue value;
  std::string szName;
  if (szContent.front() != '"' || !TakeQuoted(szContent, szName)) {
    Complain(line, "neither a key nor a value");
    return lines;
  }
  if (!Utf8ToAnsi(szName, value.Name)) {
    Complain(line, "a name with a character that is not in the code page");
    return lines;
  }
  const std::string szFolded = FoldCase(value.Name);
  section.Values[szFolded] = {line, lines};
  if (ReadData(szContent, line, value)) m_Keys[m_Current].Values[szFolded] = value;
  return lines;
}

size_t RegistryText::LinesOfValue(size_t line) const {
  const std::string_view szContent = Content(m_Lines[line]);
  const size_t equals = szContent.rfind('=');
  if (equals == std::string_view::npos ||
      !SameWithoutCase(TrimFront(szContent.substr(equals + 1)).substr(0, 3), "hex"))
    return 1;
  size_t last = line;
  while (last + 1 < m_Lines.size() && Trim(Content(m_Lines[last])).ends_with('\\')) ++last;
  return last - line + 1;
}

bool RegistryText::ReadData(std::string_view szRest, size_t line, RegistryTextValue& value) {
  szRest = TrimFront(szRest);
  if (!szRest.starts_with('=')) {
    Complain(line, "a name without \"=\"");
    return false;
  }
  szRest = Trim(szRest.substr(1));
  if (szRest == "-" || SameWithoutCase(szRest.substr(0, 3), "hex")) return false;
  if (szRest.starts_with('"')) {
    std::string szText;
    if (!TakeQuoted(szRest, szText) || !NothingOrComment(szRest)) {
      Complain(line, "a text that does not end, or with a backslash that is not doubled");
      return false;
    }
    if (!Utf8ToAnsi(szText, value.Text)) {
      Complain(line, "a text with a character that is not in the code page");
      return false;
    }
    value.Kind = RegistryKind::String;
    return true;
  }
  constexpr std::string_view dword = "dword:";
  if (!SameWithoutCase(szRest.substr(0, dword.size()), dword)) {
    Complain(line, "a value of an unknown kind");
    return false;
  }
  szRest.remove_prefix(dword.size());
  const std::optional<uint32_t> number = TakeHex(szRest);
  if (!number || !NothingOrComment(szRest)) {
    Complain(line, "a dword that is not one to eight hexadecimal digits");
    return false;
  }
  value.Kind = RegistryKind::DWord;
  value.Number = *number;
  return true;
}

void RegistryText::Complain(size_t line, const std::string& szMessage) {
  m_Errors.push_back({static_cast<int32_t>(line) + 1, szMessage});
}

bool RegistryText::HasKey(std::string_view szSubkey) const {
  const std::string szKey = KeyOf(szSubkey);
  if (szKey.empty() || m_Keys.contains(szKey)) return true;
  const auto below = m_Keys.lower_bound(szKey + '\\');
  return below != m_Keys.end() && below->first.starts_with(szKey + '\\');
}

const RegistryTextValue* RegistryText::Find(std::string_view szSubkey, std::string_view szName) const {
  const auto key = m_Keys.find(KeyOf(szSubkey));
  if (key == m_Keys.end()) return nullptr;
  const auto value = key->second.Values.find(FoldCase(szName));
  return value == key->second.Values.end() ? nullptr : &value->second;
}

void RegistryText::EndLastLine(size_t count) {
  if (count == 0 || m_Lines[count - 1].ends_with('\n')) return;
  m_Lines[count - 1] += m_Lines[count - 1].ends_with('\r') ? "\n" : m_LineEnd;
}

void RegistryText::AddKey(const std::string& szSubkey) {
  RequireOneLine(szSubkey);
  std::string szPath = szSubkey;
  while (AnsiEndsWith(szPath, '\\')) szPath.pop_back();
  if (m_Keys.contains(FoldCase(szPath))) return;
  EndLastLine(m_Lines.size());
  m_Lines.push_back(m_LineEnd);
  m_Lines.push_back("[" + std::string(CurrentUser) + (szPath.empty() ? "" : "\\") + AnsiToUtf8(szPath) + "]" +
                    m_LineEnd);
  Read();
}

void RegistryText::SetLong(const std::string& szSubkey, const std::string& szName, uint32_t number) {
  SetLine(szSubkey, szName, "dword:" + HexDigits(number));
}

void RegistryText::SetText(const std::string& szSubkey, const std::string& szName,
                           const std::string& szText) {
  RequireOneLine(szText);
  SetLine(szSubkey, szName, Quoted(AnsiToUtf8(szText)));
}

void RegistryText::SetLine(const std::string& szSubkey, const std::string& szName,
                           const std::string& szContent) {
  RequireOneLine(szName);
  AddKey(szSubkey);
  const Section& section = m_Sections.at(KeyOf(szSubkey));
  const auto found = section.Values.find(FoldCase(szName));
  const Place place = found == section.Values.end() ? Place{section.Insert, 0} : found->second;
  EndLastLine(place.First);
  const auto at = m_Lines.begin() + static_cast<std::ptrdiff_t>(place.First);
  const auto next = m_Lines.erase(at, at + static_cast<std::ptrdiff_t>(place.Count));
  m_Lines.insert(next, Quoted(AnsiToUtf8(szName)) + "=" + szContent + m_LineEnd);
  Read();
}

}  // namespace vex
