#include "host/RegistryText.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "basic/Error.h"
#include "host/CodePage.h"

namespace vex::test {
namespace {

const std::string Key = "Software\\Brillara";
const std::string Head = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara]\n";

std::string Utf16File(const std::string& szUtf8) {
  std::string szBytes = "\xFF\xFE";
  for (const char16_t unit : Utf8ToUtf16(szUtf8))
    szBytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  return szBytes;
}

std::string TextOf(const RegistryText& text, const std::string& szName) {
  const RegistryTextValue* value = text.Find(Key, szName);
  return value != nullptr && value->Kind == RegistryKind::String ? value->Text : "(none)";
}

int64_t NumberOf(const RegistryText& text, const std::string& szName) {
  const RegistryTextValue* value = text.Find(Key, szName);
  return value != nullptr && value->Kind == RegistryKind::DWord ? int64_t{value->Number} : -1;
}

std::vector<int32_t> ErrorLines(const RegistryText& text) {
  std::vector<int32_t> lines;
  for (const RegistryTextError& error : text.Errors()) {
    EXPECT_NE(error.Message, "");
    lines.push_back(error.Line);
  }
  return lines;
}

TEST(RegistryText, NoBytesAreTheEmptyText) {
  const RegistryText text("");
  EXPECT_TRUE(text.Errors().empty());
  EXPECT_TRUE(text.Keys().empty());
  EXPECT_TRUE(text.HasKey(""));
  EXPECT_FALSE(text.HasKey(Key));
  EXPECT_EQ(text.Bytes(), "Windows Registry Editor Version 5.00\n");
}

TEST(RegistryText, ReadsDwordsAndTexts) {
  const RegistryText text(Head +
                          "\"LocalPort\"=dword:0000000a\n\"Big\"=dword:FFFFfffe\n\"Short\"=dword:1\n"
                          "\"AppPath\"=\"C:\\\\Suite\\\\\"\n\"Quote\"=\"say \\\"hi\\\"\"\n\"Empty\"=\"\"\n");
  EXPECT_TRUE(text.Errors().empty());
  EXPECT_EQ(NumberOf(text, "LocalPort"), 10);
  EXPECT_EQ(NumberOf(text, "Big"), 0xFFFFFFFE);
  EXPECT_EQ(NumberOf(text, "Short"), 1);
  EXPECT_EQ(TextOf(text, "AppPath"), "C:\\Suite\\");
  EXPECT_EQ(TextOf(text, "Quote"), "say \"hi\"");
  EXPECT_EQ(TextOf(text, "Empty"), "");
  EXPECT_EQ(text.Find(Key, "Other"), nullptr);
  EXPECT_EQ(text.Find("Software", "LocalPort"), nullptr);
}

TEST(RegistryText, NamesCompareWithoutCase) {
  const RegistryText text("REGEDIT4\n[hkey_current_user\\SOFTWARE\\brillara]\n\"LOCALport\"=DWORD:2\n");
  EXPECT_EQ(NumberOf(text, "LocalPort"), 2);
  EXPECT_TRUE(text.HasKey("software\\BRILLARA"));
  EXPECT_EQ(text.Keys().at("software\\brillara").Subkey, "SOFTWARE\\brillara");
}

TEST(RegistryText, KeyImpliesTheKeysAboveIt) {
  const RegistryText text("REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Brillara\\Shared\\Network]\n");
  EXPECT_TRUE(text.HasKey("Software\\Brillara\\Shared"));
  EXPECT_TRUE(text.HasKey("Software\\Brillara\\"));
  EXPECT_FALSE(text.HasKey("Software\\Brill"));
  EXPECT_FALSE(text.HasKey("Software\\Brillara\\Shared\\Net"));
}

TEST(RegistryText, EveryEncodingOfTheEditorIsRead) {
  const std::string szUtf8 = Head + "\"AppPath\"=\"D:\\\\F\xC3\xBCr \xE2\x82\xAC\"\r\n";
  for (const std::string& szBytes : {szUtf8, "\xEF\xBB\xBF" + szUtf8, Utf16File(szUtf8)}) {
    const RegistryText text(szBytes);
    EXPECT_TRUE(text.Errors().empty());
    EXPECT_EQ(TextOf(text, "AppPath"), "D:\\F\xFCr \x80");
    EXPECT_EQ(text.Bytes(), szBytes);
  }
  const std::string szSingleByte =
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Brillara]\r\n\"AppPath\"=\"F\xFCr\"\r\n";
  RegistryText text(szSingleByte);
  EXPECT_EQ(TextOf(text, "AppPath"), "F\xFCr");
  text.SetText(Key, "Other", "\xE4");
  EXPECT_EQ(text.Bytes(), szSingleByte + "\"Other\"=\"\xE4\"\r\n");
}

TEST(RegistryText, WhatIsNotUnderstoodIsPassedOver) {
  const std::string szBytes =
      "; exported\n" + Head +
      "@=\"default\"\n; a comment\n   \n\"Bin\"=hex:00,01\n"
      "\"Expand\"=hex(2):43,00,\\\n  3a,00,\\\n  00,00\n\"Gone\"=-\n\"A\"=dword:1 ; why\n"
      "[-HKEY_CURRENT_USER\\Software\\Brillara\\Old]\n\"B\"=dword:2\n"
      "[HKEY_LOCAL_MACHINE\\Software\\Brillara]\n\"A\"=dword:3\nnonsense\n"
      "[HKEY_CURRENT_USERS\\Software\\Brillara]\n\"A\"=dword:4\n";
  const RegistryText text(szBytes);
  EXPECT_EQ(ErrorLines(text), std::vector<int32_t>{});
  EXPECT_EQ(text.Keys().size(), 1U);
  EXPECT_EQ(text.Keys().begin()->second.Values.size(), 1U);
  EXPECT_EQ(NumberOf(text, "A"), 1);
  EXPECT_EQ(text.Bytes(), szBytes);
}

TEST(RegistryText, EachErrorNamesItsLineAndTheRestHolds) {
  const RegistryText text(
      "Windows Registry Editor Version 5.00\n"                   // 1
      "\"Early\"=dword:1\n"                                      // 2
      "[HKEY_CURRENT_USER\\Software\\Brillara]\n"                // 3
      "\"A\"=dword:xyz\n\"B\"=dword:123456789\n\"C\"=dword:\n"   // 4 5 6
      "\"D\"=\"no end\n\"E\"=\"C:\\shows\"\n\"F\"=\"a\"b\n"      // 7 8 9
      "\"G\"=word:1\n\"H\" dword:1\nI=dword:1\n"                 // 10 11 12
      "\"J\"=\"\xE2\x98\x83\"\n\"\xE2\x98\x83\"=\"K\"\n"         // 13 14
      "\"L\"=\"\xFF\"\n\"M\n\"Good\"=dword:7\n"                  // 15 16 17
      "[HKEY_CURRENT_USER\\Software\\Brillara\n\"N\"=dword:1\n"  // 18 19
      "[HKEY_CURRENT_USER\\\xE2\x98\x83]\n\"O\"=dword:1\n"       // 20 21
      "[HKEY_CURRENT_USER\\Software\\Brillara]x\n");             // 22
  EXPECT_EQ(ErrorLines(text),
            (std::vector<int32_t>{2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 20, 22}));
  EXPECT_EQ(text.Keys().size(), 1U);
  EXPECT_EQ(text.Keys().begin()->second.Values.size(), 1U);
  EXPECT_EQ(NumberOf(text, "Good"), 7);
}

TEST(RegistryText, FirstLineThatIsMissingIsAnErrorAndTheRestHolds) {
  for (const char* szFirst : {"", "Windows Registry Editor Version 6.00\n", "regedit4\n"}) {
    const RegistryText text(std::string(szFirst) +
                            "[HKEY_CURRENT_USER\\Software\\Brillara]\n\"A\"=dword:1\n");
    ASSERT_FALSE(text.Errors().empty());
    EXPECT_EQ(text.Errors()[0].Line, 1);
    EXPECT_EQ(NumberOf(text, "A"), 1);
  }
  EXPECT_EQ(ErrorLines(RegistryText("\n\n")), std::vector<int32_t>{2});
}

TEST(RegistryText, LastOfSeveralHoldsAndWhatIsNotUnderstoodTakesNoPlace) {
  RegistryText text(Head + "\"A\"=dword:1\n\"a\"=dword:2\n\"A\"=dword:x\n\"A\"=hex:01\n");
  EXPECT_EQ(NumberOf(text, "A"), 2);
  text.SetLong(Key, "A", 3);
  EXPECT_EQ(NumberOf(RegistryText(text.Bytes()), "A"), 3);
}

TEST(RegistryText, SettingAValueChangesItsLineAlone) {
  const std::string szBefore = Head + "; the ports\n\"LocalPort\"=dword:1\n\"On\"=hex:00,\\\n  01\n\n";
  const std::string szAfter = "[HKEY_CURRENT_USER\\Other]\n\"LocalPort\"=dword:9\n";
  RegistryText text(szBefore + szAfter);
  text.SetLong(Key, "localport", 0xABCD);
  text.SetText(Key, "On", "a\\b\"c");
  text.SetLong(Key, "New", 1);
  EXPECT_EQ(text.Bytes(), Head +
                              "; the ports\n\"localport\"=dword:0000abcd\n\"On\"=\"a\\\\b\\\"c\"\n"
                              "\"New\"=dword:00000001\n\n" +
                              szAfter);
  EXPECT_EQ(TextOf(text, "On"), "a\\b\"c");
}

TEST(RegistryText, SettingAValueOfAMissingKeyAddsTheKeyAtTheEnd) {
  RegistryText text("REGEDIT4\r\n[HKEY_CURRENT_USER\\Other]");
  text.SetText(Key + "\\", "AppPath", "C:\\Suite");
  EXPECT_EQ(text.Bytes(),
            "REGEDIT4\r\n[HKEY_CURRENT_USER\\Other]\r\n\r\n"
            "[HKEY_CURRENT_USER\\Software\\Brillara]\r\n\"AppPath\"=\"C:\\\\Suite\"\r\n");
  text.AddKey(Key);
  text.AddKey("");
  EXPECT_TRUE(text.Bytes().ends_with("\r\n\r\n[HKEY_CURRENT_USER]\r\n"));
}

TEST(RegistryText, LastLineWithHalfALineEndKeepsItsValue) {
  RegistryText text("REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\Brillara]\r\n\"A\"=\"x\"\r");
  EXPECT_EQ(TextOf(text, "A"), "x");
  text.SetLong(Key, "B", 1);
  EXPECT_TRUE(text.Errors().empty());
  EXPECT_EQ(TextOf(text, "A"), "x");
}

TEST(RegistryText, NewTextIsVersion5) {
  RegistryText text;
  text.SetLong(Key, "PostInstallVer", 5);
  EXPECT_EQ(text.Bytes(),
            "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara]\n"
            "\"PostInstallVer\"=dword:00000005\n");
}

TEST(RegistryText, SingleBytesThatComeToLookLikeUtf8BecomeIt) {
  RegistryText text("REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Brillara]\n\"A\"=\"\xFC\"\n");
  text.SetText(Key, "A", "\xC3\xA4");
  EXPECT_EQ(TextOf(RegistryText(text.Bytes()), "A"), "\xC3\xA4");
}

TEST(RegistryText, WhatFitsInNoLineIsRefused) {
  RegistryText text;
  const std::string szBefore = text.Bytes();
  EXPECT_THROW(text.SetText(Key, "A", "two\nlines"), Error);
  EXPECT_THROW(text.SetText(Key, "A", std::string(1, '\0')), Error);
  EXPECT_THROW(text.SetLong(Key, "A\r", 1), Error);
  EXPECT_THROW(text.AddKey("A\n"), Error);
  EXPECT_EQ(text.Bytes(), szBefore);
}

rc::Gen<std::string> SomeText() {
  return rc::gen::map(rc::gen::arbitrary<std::string>(), [](std::string szText) {
    std::erase_if(szText, [](char byte) { return byte == '\0' || byte == '\r' || byte == '\n'; });
    return szText;
  });
}

TEST(RegistryTextProperty, WhatIsSetIsReadBackFromTheBytes) {
  EXPECT_TRUE(rc::check("against a map, in every encoding", [] {
    const std::string szStart = *rc::gen::element<std::string>(
        "", "REGEDIT4\r\n; \xFC\r\n", "\xEF\xBB\xBF" + Head + "\"a\"=hex:01,\\\n02\n", Utf16File(Head));
    RegistryText text(szStart);
    std::map<std::pair<std::string, std::string>, std::string> expected;
    const auto names = *rc::gen::container<std::vector<std::string>>(3, SomeText());
    for (const auto& szText : *rc::gen::container<std::vector<std::string>>(SomeText())) {
      const std::string szSubkey = "Software\\" + *rc::gen::elementOf(names);
      const std::string szName = *rc::gen::elementOf(names);
      std::string szKey = FoldCase(szSubkey);
      while (szKey.ends_with('\\')) szKey.pop_back();
      text.SetText(szSubkey, szName, szText);
      expected[{szKey, FoldCase(szName)}] = szText;
    }
    const RegistryText read(text.Bytes());
    RC_ASSERT(read.Errors().empty());
    RC_ASSERT(read.Bytes() == text.Bytes());
    for (const auto& [place, szText] : expected) {
      const RegistryTextValue* value = read.Find(place.first, place.second);
      RC_ASSERT(value != nullptr);
      RC_ASSERT(value->Text == szText);
    }
  }));
}

}  // namespace
}  // namespace vex::test
