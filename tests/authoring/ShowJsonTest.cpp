#include "tools/authoring/ShowJson.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "show/ShowFunctions.h"
#include "tests/authoring/Told.h"
#include "tools/authoring/CheckFile.h"

namespace vex {
namespace {

using testing::EndsWith;
using testing::StartsWith;

const std::string NewShowText =
    "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,0,,,T,F,F),,0,,F)";
const std::string FullShowText =
    "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,(e.vexseq),F,T,F),(2,0,1,0,,(a.vexseq,b*Sc.vexseq),T,F,F),"
    "(0,2,2,30,clean.vexseq,(m.vexseq,F\xFCr Elise.vexseq),T,T,T),,(2,0,1,0,,(g.vexseq),T,F,F),"
    "((2,At the *Odoor*C,F,T,T,Door,((p.vexseq,(3,Front door,1,0),q.vexseq),(r.vexseq,(4,,1,0))),F)),"
    "1,(3,Front door,1,0),T)";

std::string Told(const std::string& szJson) {
  try {
    return ShowToText(*ShowFromJson(szJson));
  } catch (const Error& error) {
    return std::to_string(error.Number) + "/" + error.Source + "/" + error.Description;
  }
}

/// What is wrong with a show of these members.
std::string Wrong(const std::string& szMembers) {
  return Told(R"({"format":"vexshow",)" + szMembers + "}");
}

TEST(ShowJson, WhatIsMissingIsAsInANewShow) {
  EXPECT_EQ(Told(R"({"format":"vexshow"})"), NewShowText);
  EXPECT_EQ(Told(R"({"format":"vexshow","version":1,"main":null,"startupTrigger":null})"), NewShowText);
  EXPECT_EQ(Told(R"({"format":"vexshow","main":{},"interactiveGroups":[]})"), NewShowText);
  EXPECT_EQ(Told("\xEF\xBB\xBF{\"format\":\"vexshow\"}"), NewShowText);
}

TEST(ShowJson, AFullShowComesBackToTheByte) {
  for (const bool boolLines : {false, true}) {
    const std::string szJson = ShowToJson(*ShowFromText(FullShowText), boolLines);
    EXPECT_EQ(szJson.find('\n') != std::string::npos, boolLines);
    EXPECT_EQ(Told(szJson), FullShowText);
  }
}

TEST(ShowJson, EverythingStandsThereByName) {
  const auto json = nlohmann::json::parse(ShowToJson(*ShowFromText(FullShowText), false));
  EXPECT_EQ(json["format"], "vexshow");
  EXPECT_EQ(json["version"], 1);
  EXPECT_EQ(json["musical"]["delay"], 30);
  EXPECT_EQ(json["musical"]["musicalType"], 2);
  EXPECT_EQ(json["musical"]["cleanUp"], "clean.vexseq");
  EXPECT_EQ(json["musical"]["sequences"][1], "F\xC3\xBCr Elise.vexseq");
  EXPECT_EQ(json["main"]["animationType"], 2);
  EXPECT_EQ(json["main"]["sequences"][1], "b,c.vexseq");
  EXPECT_EQ(json["interactiveGroups"][0]["description"], "At the (door)");
  EXPECT_EQ(json["interactiveGroups"][0]["inputs"][0]["sequences"][1], "q.vexseq");
  EXPECT_EQ(json["startupTrigger"]["input"], 3);
  EXPECT_EQ(json["startupType"], 1);
  EXPECT_EQ(json["preloadSequences"], true);
}

TEST(ShowJson, ATextThatIsNoJsonIsToldWithLineAndColumn) {
  EXPECT_EQ(Told(""), "13//line 1, column 1: the text is no JSON from here on");
  EXPECT_EQ(Told("{\n  \"format\": \"vexshow\",\n  \"main\": ]\n}"),
            "13//line 3, column 11: the text is no JSON from here on");
  EXPECT_EQ(Told("{\"format\":\"vexshow\"} x"), "13//line 1, column 22: the text is no JSON from here on");
  EXPECT_EQ(Told("{\"format\":\"vex\xFFshow\"}"), "13//line 1, column 15: the text is no JSON from here on");
}

TEST(ShowJson, AnotherFormatOrVersionIsRefused) {
  EXPECT_EQ(Told("[]"), "13//the show: must be an object, { ... }");
  EXPECT_EQ(Told("{}"), "13//format: must be \"vexshow\"");
  EXPECT_EQ(Told(R"({"format":"vexseq"})"), "13//format: must be \"vexshow\"");
  EXPECT_EQ(Told(R"({"format":7})"), "13//format: must be a text");
  EXPECT_EQ(Wrong(R"("version":2)"), "13//version: must be 1");
}

TEST(ShowJson, AMisspeltNameIsRefusedWithItsPlaceAndTheKnownOnes) {
  EXPECT_THAT(Wrong(R"("startUp":{})"),
              StartsWith("13//startUp: is not known here; known are background, format, "));
  EXPECT_THAT(Wrong(R"("main":{"sequence":[]})"),
              StartsWith("13//main.sequence: is not known here; known are "));
  EXPECT_THAT(Wrong(R"("main":{"delay":3})"), StartsWith("13//main.delay: is not known here; "));
  EXPECT_THAT(Wrong(R"("musical":{"animationType":3})"),
              StartsWith("13//musical.animationType: is not known here; "));
  EXPECT_EQ(Wrong(R"("startupTrigger":{"inputs":3})"),
            "13//startupTrigger.inputs: is not known here; known are input, name, network, unit");
}

TEST(ShowJson, ANameThatStandsTwiceIsRefused) {
  EXPECT_EQ(Wrong(R"("main":{},"main":{})"), "13//main: stands twice in one object");
  EXPECT_EQ(Wrong(R"("main":{"sequences":[],"cleanUp":"","sequences":[]})"),
            "13//sequences: stands twice in one object");
  EXPECT_EQ(Wrong(R"("main":{"cleanUp":""},"musical":{"cleanUp":""})"), NewShowText);
}

TEST(ShowJson, AValueOfAnotherKindIsRefusedWithItsPlace) {
  EXPECT_EQ(Wrong(R"("main":[])"), "13//main: must be an object, { ... }");
  EXPECT_EQ(Wrong(R"("main":{"sequences":"a"})"), "13//main.sequences: must be a list");
  EXPECT_EQ(Wrong(R"("main":{"sequences":["a",1]})"), "13//main.sequences[1]: must be a text");
  EXPECT_EQ(Wrong(R"("main":{"lightsOffAtEnd":1})"), "13//main.lightsOffAtEnd: must be true or false");
  EXPECT_EQ(Wrong(R"("preloadSequences":"T")"), "13//preloadSequences: must be true or false");
  EXPECT_EQ(Wrong(R"("interactiveGroups":{})"), "13//interactiveGroups: must be a list");
  EXPECT_EQ(Wrong(R"("interactiveGroups":[1])"), "13//interactiveGroups[0]: must be an object, { ... }");
}

TEST(ShowJson, ANumberIsAWholeOneOf32Bits) {
  EXPECT_THAT(Wrong(R"("startupType":2147483647)"), EndsWith(",2147483647,,F)"));
  EXPECT_THAT(Wrong(R"("startupType":-2147483648)"), EndsWith(",-2147483648,,F)"));
  for (const char* szNumber :
       {"2147483648", "-2147483649", "99999999999999999999", "1.5", "1e3", "true", "\"1\""})
    EXPECT_EQ(Wrong(std::string("\"startupType\":") + szNumber),
              "13//startupType: must be a whole number of 32 bits")
        << szNumber;
}

TEST(ShowJson, ANumberBeyondAllBoundsIsRefused) {
  EXPECT_EQ(Wrong(R"("startupType":1e999)"), "13//the show: holds a number beyond all bounds, like 1e999");
}

TEST(ShowJson, ACharacterOutsideTheCodePageIsRefusedWithItsPlace) {
  EXPECT_EQ(Wrong("\"musical\":{\"sequences\":[\"\xE2\x98\x83.vexseq\"]}"),
            "13//musical.sequences[0]: holds a character outside Windows-1252");
}

TEST(ShowJson, GroupsAndInputsThatCannotBeWrittenAreRefused) {
  EXPECT_EQ(Wrong(R"("interactiveGroups":[{"name":"Door"}])"),
            "13//interactiveGroups[0].inputs: a group needs an input at least");
  EXPECT_EQ(Wrong(R"("interactiveGroups":[{"inputs":[{"sequences":["a"]}]}])"),
            "13//interactiveGroups[0].inputs[0].trigger: is missing");
  EXPECT_EQ(Wrong(R"("interactiveGroups":[{"inputs":[{"trigger":{}}]}])"),
            "13//interactiveGroups[0].inputs[0].sequences: an input needs a sequence at least");
}

TEST(ShowJson, DeepNestingIsNoDanger) {
  EXPECT_EQ(Wrong("\"main\":" + std::string(200000, '[') + std::string(200000, ']')),
            "13//main: must be an object, { ... }");
}

// Files.

class ShowJsonFileTest : public testing::Test {
 protected:
  void SetUp() override { m_Files.MakeFolder("C:\\d"); }
  VirtualFiles m_Files;
};

TEST_F(ShowJsonFileTest, AShowIsTakenOutAndBroughtBack) {
  m_Files.Put("C:\\d\\eve.shw", FullShowText + "\r\n");
  const FileOutcome exported = ExportShow(m_Files, "C:\\d\\eve.shw", true);
  ASSERT_EQ(Told(exported), "done");
  m_Files.Put("C:\\d\\eve.json", exported.Text);
  const ShowImport import = ImportShow(m_Files, "C:\\d\\eve.json", "C:\\d\\new.shw");
  EXPECT_EQ(Told(import), "done");
  EXPECT_EQ(import.Text, FullShowText);
  EXPECT_EQ(Contents(m_Files, "C:\\d\\new.shw"), FullShowText + "\r\n");
}

TEST_F(ShowJsonFileTest, NamesOfInputsAreThoseThatThePlayerUses) {
  const std::string szText =
      "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,),,,((1,,F,F,T,,((a*Sb,(1,,1,0))),T)))";
  m_Files.Put("C:\\d\\eve.shw", szText);
  EXPECT_EQ(Told(ExportShow(m_Files, "C:\\d\\eve.shw", false)), "91//Object variable not set");
  const std::string szSound =
      "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,),,(2,0,1,0,,),((1,,F,F,T,,((a*Sb,(1,,1,0))),T)))";
  const FileOutcome checked = CheckFile(m_Files, "C:\\d\\eve.shw", FileKind::Show);
  m_Files.Put("C:\\d\\eve.shw", szSound);
  m_Files.Put("C:\\d\\eve.json", ExportShow(m_Files, "C:\\d\\eve.shw", false).Text);
  EXPECT_EQ(ImportShow(m_Files, "C:\\d\\eve.json", "C:\\d\\new.shw").Text,
            CheckFile(m_Files, "C:\\d\\eve.shw", FileKind::Show).Text);
}

TEST_F(ShowJsonFileTest, AShowThatCannotBeReadOrWrittenIsNotTakenOut) {
  EXPECT_EQ(Told(ExportShow(m_Files, "C:\\d\\gone.shw", false)), "53//File not found");
  m_Files.Put("C:\\d\\f", "");
  const FileOutcome outcome = ExportShow(m_Files, "C:\\d\\f", false);
  EXPECT_EQ(Told(outcome), "91//Object variable not set");
  EXPECT_EQ(outcome.Words, "there is no list in it; a show file begins with \"(\"");
  m_Files.Put("C:\\d\\f",
              "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,),,(2,0,1,0,,),((0,,F,F,T,Door,,T)))");
  EXPECT_EQ(Told(ExportShow(m_Files, "C:\\d\\f", false)), "9//Subscript out of range");
}

TEST_F(ShowJsonFileTest, ADamagedJsonLeavesTheShowFile) {
  m_Files.Put("C:\\d\\new.shw", "old");
  m_Files.Put("C:\\d\\eve.json", "{");
  const ShowImport import = ImportShow(m_Files, "C:\\d\\eve.json", "C:\\d\\new.shw");
  EXPECT_EQ(Told(import), "13//line 1, column 2: the text is no JSON from here on");
  EXPECT_FALSE(import.JsonRead);
  EXPECT_EQ(Told(ImportShow(m_Files, "C:\\d\\gone.json", "C:\\d\\new.shw")), "53//File not found");
  EXPECT_EQ(Contents(m_Files, "C:\\d\\new.shw"), "old");
}

TEST_F(ShowJsonFileTest, AShowFileThatCannotBeWrittenIsAsItWas) {
  m_Files.Put("C:\\d\\new.shw", "old");
  m_Files.Put("C:\\d\\eve.json", R"({"format":"vexshow"})");
  m_Files.FailWrites("C:\\d\\new.shw", "No space left on device");
  const ShowImport import = ImportShow(m_Files, "C:\\d\\eve.json", "C:\\d\\new.shw");
  EXPECT_EQ(Told(import), "75//No space left on device");
  EXPECT_TRUE(import.JsonRead);
  EXPECT_EQ(Contents(m_Files, "C:\\d\\new.shw"), "old");
  EXPECT_EQ(Told(ImportShow(m_Files, "C:\\d\\eve.json", "C:\\no\\new.shw")), "76//Path not found");
}

}  // namespace
}  // namespace vex
