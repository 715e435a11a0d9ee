#include "show/lists/Serialize.h"

#include <algorithm>

#include "basic/Number.h"

namespace vex {

namespace {

/// The letter that stands for a special character behind "*", or 0 for any other character.
constexpr char CodeOf(char character) {
  switch (character) {
    case '*':
      return 'E';
    case '(':
      return 'O';
    case ')':
      return 'C';
    case ',':
      return 'S';
    default:
      return 0;
  }
}

/// The special character that a letter behind "*" stands for, or 0 for any other letter.
constexpr char CharacterOf(char code) {
  for (const char character : {'*', '(', ')', ','}) {
    if (CodeOf(character) == code) return character;
  }
  return 0;
}

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
  const auto isSpecial = [](char character) { return CodeOf(character) != 0; };
  auto from = szText.begin();
  auto special = std::find_if(from, szText.end(), isSpecial);
  if (special == szText.end()) return std::string(szText);
  std::string szEscaped;
  szEscaped.reserve(szText.size() + szText.size() / 8 + 8);
  while (special != szText.end()) {
    szEscaped.append(from, special);
    szEscaped += '*';
    szEscaped += CodeOf(*special);
    from = special + 1;
    special = std::find_if(from, szText.end(), isSpecial);
  }
  return szEscaped.append(from, szText.end());
}

// A "*" that comes out of "*E" is never the start of another escape, and what comes out of the others is
// part of none, so one walk gives what replacing one escape after another over the whole text would,
// "*E" last.
std::string UnescapeText(std::string_view szText) {
  size_t star = szText.find('*');
  if (star == std::string_view::npos) return std::string(szText);
  std::string szPlain;
  szPlain.reserve(szText.size());
  size_t from = 0;
  while (star != std::string_view::npos && star + 1 < szText.size()) {
    const char character = CharacterOf(szText[star + 1]);
    if (character != 0) {
      szPlain.append(szText, from, star - from);
      szPlain += character;
      from = star + 2;
    }
    star = szText.find('*', std::max(star + 1, from));
  }
  return szPlain.append(szText, from);
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
