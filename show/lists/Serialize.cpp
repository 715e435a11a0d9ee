#include "show/lists/Serialize.h"

#include "basic/Number.h"

namespace vex {

namespace {

struct Escape {
  char Character;
  char Code;
};

constexpr Escape Escapes[] = {{'*', 'E'}, {'(', 'O'}, {')', 'C'}, {',', 'S'}};

}  // namespace

std::string ListToText(const FieldArray& fields) {
  size_t length = 2;
  for (const auto& szField : fields) length += szField.size() + 1;
  std::string szText;
  szText.reserve(length);
  szText += '(';
  bool boolFirst = true;
  for (const auto& szField : fields) {
    if (!boolFirst) szText += ',';
    boolFirst = false;
    szText += szField;
  }
  szText += ')';
  return szText;
}

std::string EscapeText(std::string_view szText) {
  std::string szEscaped;
  szEscaped.reserve(szText.size());
  for (const char character : szText) {
    char code = 0;
    for (const Escape& escape : Escapes) {
      if (character == escape.Character) code = escape.Code;
    }
    if (code == 0) {
      szEscaped += character;
    } else {
      szEscaped += '*';
      szEscaped += code;
    }
  }
  return szEscaped;
}

// A "*" that comes out of "*E" is never the start of another escape, so one walk gives what replacing one
// escape after another over the whole text would, "*E" last.
std::string UnescapeText(std::string_view szText) {
  size_t from = szText.find('*');
  if (from == std::string_view::npos) return std::string(szText);
  std::string szPlain(szText.substr(0, from));
  szPlain.reserve(szText.size());
  for (; from < szText.size(); ++from) {
    char plain = szText[from];
    if (plain == '*' && from + 1 < szText.size()) {
      for (const Escape& escape : Escapes) {
        if (szText[from + 1] == escape.Code) plain = escape.Character;
      }
      const bool boolEscape = plain != '*' || szText[from + 1] == 'E';
      if (boolEscape) ++from;
    }
    szPlain += plain;
  }
  return szPlain;
}

std::string IntToText(int32_t lValue) {
  return EscapeText(FormatNumber(lValue));
}

int32_t IntFromText(std::string_view szField) {
  return FloorToLong(ParseNumber(UnescapeText(szField)));
}

std::string BoolToText(int32_t lStored) {
  return lStored == CanonicalTrue ? "T" : "F";
}

std::string BoolToText(bool boolValue) {
  return boolValue ? "T" : "F";
}

bool BoolFromText(std::string_view szField) {
  const std::string szText = UnescapeText(szField);
  return szText == "T" || szText == "t";
}

std::string DateToText(DateTime dtValue) {
  return EscapeText(FormatDateTime(dtValue));
}

DateTime DateFromText(std::string_view szField) {
  return ParseDateTime(UnescapeText(szField));
}

}  // namespace vex
