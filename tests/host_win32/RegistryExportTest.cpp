#include <vector>

#include "host/CodePage.h"
#include "host/win32/RegistryExport.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

constexpr char Product[] = "Software\\Brillara";

class RegistryExport : public testing::Test {
 protected:
  static void Set(const std::string& szSubkey, const std::string& szName, DWORD kind,
                  const std::string& szBytes) {
    ASSERT_EQ(RegSetKeyValueA(HKEY_CURRENT_USER, szSubkey.c_str(), szName.c_str(), kind, szBytes.data(),
                              static_cast<DWORD>(szBytes.size())),
              ERROR_SUCCESS);
  }
  static void SetText(const std::string& szSubkey, const std::string& szName, const std::string& szText) {
    Set(szSubkey, szName, REG_SZ, szText + '\0');
  }
  /// As a program reads it that is given the text as a settings file.
  static RegistryText Exported() {
    RegistryText text;
    ExportRegistryKey(Product, text);
    return RegistryText(text.Bytes());
  }
  static std::string Text(const RegistryText& text, const std::string& szSubkey, const std::string& szName) {
    const RegistryTextValue* const value = text.Find(szSubkey, szName);
    return value == nullptr || value->Kind != RegistryKind::String ? "(none)" : value->Text;
  }

  EmptyUserKey m_User;
};

TEST_F(RegistryExport, OfAMissingKeyIsEmpty) {
  EXPECT_TRUE(Exported().Keys().empty());
}

TEST_F(RegistryExport, TakesNumbersAndTextsOfAllKeysBelow) {
  SetText(Product, "UserDataPath", "D:\\\"shows\"\\");
  Set(std::string(Product) + "\\XLK", "On", REG_DWORD, std::string("\1\0\0\0", 4));
  Set(std::string(Product) + "\\Shared\\Network\\AuxA", "VexSpeed", REG_DWORD,
      std::string("\x03\x02\x01\xFF", 4));
  SetText("Software\\Other", "x", "y");
  const RegistryText text = Exported();
  EXPECT_TRUE(text.Errors().empty());
  EXPECT_EQ(Text(text, Product, "UserDataPath"), "D:\\\"shows\"\\");
  ASSERT_NE(text.Find("Software\\Brillara\\XLK", "On"), nullptr);
  EXPECT_EQ(text.Find("Software\\Brillara\\XLK", "On")->Number, 1U);
  ASSERT_NE(text.Find("Software\\Brillara\\Shared\\Network\\AuxA", "vexspeed"), nullptr);
  EXPECT_EQ(text.Find("Software\\Brillara\\Shared\\Network\\AuxA", "VexSpeed")->Number, 0xFF010203U);
  EXPECT_TRUE(text.HasKey("Software\\Brillara\\Shared"));
  EXPECT_FALSE(text.HasKey("Software\\Other"));
}

TEST_F(RegistryExport, ValuesOfOtherKindsAreLeftOut) {
  Set(Product, "Binary", REG_BINARY, std::string("\1\0\0\0", 4));
  Set(Product, "Expand", REG_EXPAND_SZ, std::string("%PATH%\0", 7));
  Set(Product, "Multi", REG_MULTI_SZ, std::string("a\0b\0\0", 5));
  Set(Product, "Quad", REG_QWORD, std::string(8, '\1'));
  Set(Product, "Nothing", REG_NONE, "");
  Set(Product, "Short", REG_DWORD, "\1\2");
  SetText(Product, "", "the key's own");
  SetText(Product, "Lines", "one\r\ntwo");
  SetText(Product, "Kept", "yes");
  const RegistryText text = Exported();
  ASSERT_EQ(text.Keys().size(), 1U);
  EXPECT_EQ(text.Keys().begin()->second.Values.size(), 1U);
  EXPECT_EQ(Text(text, Product, "Kept"), "yes");
}

TEST_F(RegistryExport, TextWithoutItsZeroAndEmptyTextAreTexts) {
  Set(Product, "Bare", REG_SZ, "bare");
  Set(Product, "Empty", REG_SZ, "");
  SetText(Product, "Zero", "");
  const RegistryText text = Exported();
  EXPECT_EQ(Text(text, Product, "Bare"), "bare");
  EXPECT_EQ(Text(text, Product, "Empty"), "");
  EXPECT_EQ(Text(text, Product, "Zero"), "");
}

TEST_F(RegistryExport, EveryLetterOfTheCodePageComesBack) {
  std::string szLetters;
  for (int byte = 0xA0; byte < 0x100; ++byte) {
    std::string szBack;
    const std::string szLetter(1, static_cast<char>(byte));
    if (Utf8ToAnsi(AnsiToUtf8(szLetter), szBack) && szBack == szLetter) szLetters += szLetter;
  }
  ASSERT_GT(szLetters.size(), 50U);
  SetText(Product, "F\xFCr " + szLetters, szLetters + "\x80");
  SetText(
      "Software\\Brillara\\Gr\xF6\xDF"
      "e",
      "x", "y");
  const RegistryText text = Exported();
  EXPECT_EQ(Text(text, Product, "F\xFCr " + szLetters), szLetters + "\x80");
  EXPECT_EQ(Text(text,
                 "software\\brillara\\gr\xF6\xDF"
                 "e",
                 "X"),
            "y");
}

TEST_F(RegistryExport, ManyValuesAndLongOnesAreAllThere) {
  const std::string szLong(5000, '\xFC');
  for (int i = 0; i < 300; ++i)
    SetText(Product, "Value" + std::to_string(i), i % 100 == 0 ? szLong : std::to_string(i));
  for (int i = 0; i < 100; ++i) SetText(std::string(Product) + "\\Key" + std::to_string(i), "x", "y");
  const RegistryText text = Exported();
  EXPECT_EQ(text.Keys().size(), 101U);
  EXPECT_EQ(Text(text, Product, "Value299"), "299");
  EXPECT_EQ(Text(text, Product, "Value200"), szLong);
}

TEST(Win32Host, TellsWhereThingsLieInWordsOfThisMachine) {
  const PlaceWords words = Win32Host().Places();
  for (const std::string& szWords : {words.Player, words.Settings, words.NoPlayer, words.StartPlayer}) {
    EXPECT_NE(szWords, "");
    for (const char* szForeign : {"VEX_", "XDG", "/tmp", "systemctl"})
      EXPECT_EQ(szWords.find(szForeign), std::string::npos);
  }
}

TEST(Win32Files, PathsInAFileAreMeantFromItsFolder) {
  const Win32Files files;
  EXPECT_EQ(files.HostPathBeside("inputs.jsonl", "new.shw"), "new.shw");
  EXPECT_EQ(files.HostPathBeside("C:\\evenings\\inputs.jsonl", "new.shw"), "C:\\evenings\\new.shw");
  EXPECT_EQ(files.HostPathBeside("C:/evenings/inputs.jsonl", "a\\new.shw"), "C:/evenings/a\\new.shw");
  EXPECT_EQ(files.HostPathBeside("C:inputs.jsonl", "new.shw"), "C:new.shw");
  for (const char* szWhole : {"D:\\new.shw", "\\\\srv\\new.shw", "/new.shw"})
    EXPECT_EQ(files.HostPathBeside("C:\\evenings\\inputs.jsonl", szWhole), szWhole);
}

}  // namespace
}  // namespace vex::test
