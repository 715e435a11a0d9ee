#include "host/win32/page/MachinePage.h"

#include <gtest/gtest.h>

#include "host/CodePage.h"

namespace vex::test {
namespace {

const MachinePage West(1252);
const MachinePage Poland(1250);
const MachinePage Japan(932);
const MachinePage Utf8(65001);

std::string Bytes(const MachinePage& page, std::string_view szUtf8) {
  std::string szBytes;
  for (const char16_t unit : Utf8ToUtf16(szUtf8)) EXPECT_TRUE(page.Append(unit, szBytes)) << szUtf8;
  return szBytes;
}

std::string Text(const MachinePage& page, std::string_view szBytes) {
  return Utf16ToUtf8(page.ToUtf16(szBytes));
}

TEST(MachinePage, CharactersHaveTheBytesOfTheirPage) {
  EXPECT_EQ(Bytes(West, "F\xC3\xBCr"), "F\xFCr");
  EXPECT_EQ(Bytes(Poland, "\xC5\x9Al\xC4\x85zak"), "\x8Cl\xB9zak");
  EXPECT_EQ(Bytes(Japan, "\xE8\xA1\xA8"), "\x95\\");  // its second byte looks like a backslash
  EXPECT_EQ(Bytes(Utf8, "\xE8\xA1\xA8"), "\xE8\xA1\xA8");
}

TEST(MachinePage, EveryTextComesBack) {
  for (const auto& [page, szUtf8] : {std::pair{&West, "F\xC3\xBCr \xE2\x82\xAC \xC2\x81"},
                                     {&Poland, "\xC5\x9Al\xC4\x85zak \xC2\x83"},
                                     {&Japan, "\xE4\xBA\x88\xE5\xAE\x9A\xE8\xA1\xA8 C:\\a~"},
                                     {&Utf8, "\xE8\xA1\xA8\xC5\x9A"}})
    EXPECT_EQ(Text(*page, Bytes(*page, szUtf8)), szUtf8);
}

TEST(MachinePage, AsciiIsTheSameOnEachPage) {
  std::string szAll;
  for (char character = 1; character > 0 && character < 127; ++character) szAll += character;
  for (const MachinePage& page : {West, Poland, Japan, Utf8}) {
    EXPECT_EQ(Bytes(page, szAll), szAll);
    EXPECT_EQ(Text(page, szAll), szAll);
  }
}

TEST(MachinePage, CharactersOutsideAreRefusedAndNotReplaced) {
  for (const MachinePage& page : {West, Poland, Japan}) {
    std::string szBytes = "a";
    EXPECT_FALSE(page.Append(U'\U0001F384', szBytes));
    EXPECT_FALSE(page.Append(U'\u0100', szBytes));  // A with macron, which might become an A
    EXPECT_FALSE(page.Append(0xD800, szBytes));
    EXPECT_EQ(szBytes, "a");
  }
  std::string szBytes;
  EXPECT_FALSE(Japan.Append(U'\u00A5', szBytes));  // the yen sign, which might become a backslash
}

TEST(MachinePage, CharactersBeyondTheFirstPlaneAreOneInUtf8) {
  std::string szBytes;
  EXPECT_TRUE(Utf8.Append(U'\U0001F384', szBytes));
  EXPECT_EQ(szBytes, "\xF0\x9F\x8E\x84");
}

TEST(MachinePage, OnlyPagesOfTwoBytesHaveLeadBytes) {
  EXPECT_TRUE(Japan.IsLead('\x95'));
  EXPECT_FALSE(Japan.IsLead('\xB1'));  // a narrow letter of one byte
  for (const MachinePage& page : {West, Poland, Utf8}) EXPECT_FALSE(page.IsLead('\x95'));
  for (const MachinePage& page : {West, Poland, Japan, Utf8}) EXPECT_FALSE(page.IsLead('\\'));
}

TEST(MachinePage, LettersFoldWithTheirPageAndNeverHalfACharacter) {
  EXPECT_EQ(West.Fold("F\xDCR \x8A"), "f\xFCr \x9A");
  EXPECT_EQ(Poland.Fold("\x8CL\xA5ZAK \xD8"), "\x9Cl\xB9zak \xF8");
  // The second bytes of these look like letters, and one would become the other.
  EXPECT_EQ(Japan.Fold("\x83"
                       "A.SHW"),
            "\x83"
            "A.shw");
  EXPECT_NE(Japan.Fold("\x83"
                       "A"),
            Japan.Fold("\x83"
                       "a"));
  EXPECT_EQ(Japan.Fold("\x95"), "\x95");  // half a character
  EXPECT_EQ(Utf8.Fold("\xC5\x9AL"), Utf8.Fold("\xC5\x9Al"));
}

TEST(MachinePage, HasTheNameThatUsersKnow) {
  EXPECT_EQ(Poland.Name(), "Windows-1250");
  EXPECT_EQ(Japan.Name(), "code page 932");
  EXPECT_EQ(MachinePage::Ansi().Name(), CodePageName());
}

}  // namespace
}  // namespace vex::test
