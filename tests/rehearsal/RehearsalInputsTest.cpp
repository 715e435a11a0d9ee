#include "tools/rehearsal/RehearsalInputs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/virtual/VirtualFiles.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const DateTime From = DateTime::FromParts(2026, 12, 24, 18, 0, 0);

std::vector<RehearsalInput> Read(const std::string& szText) {
  return ReadRehearsalInputs(szText, From, [](const std::string& szPath) {
    return VirtualFiles().HostPathBeside("/evenings/inputs.jsonl", szPath);
  });
}

template <class T>
T Only(const std::string& szText) {
  const auto inputs = Read(szText);
  EXPECT_EQ(inputs.size(), 1U);
  return std::get<T>(inputs.at(0).What);
}

std::string Wrong(const std::string& szText) {
  try {
    static_cast<void>(Read(szText));
  } catch (const InputsError& error) {
    return error.what();
  }
  return "nothing is wrong";
}

TEST(RehearsalInputs, AMessageHasItsTextAndSender) {
  const auto message = Only<InputMessage>(
      R"-({"at":"2026-12-24 18:01:00.000","message":9,"text":"(Für.shw,(F,,F,),2,F)","sender":7})-");
  EXPECT_EQ(message.Type, 9);
  EXPECT_EQ(message.Text, "(F\xFCr.shw,(F,,F,),2,F)");
  EXPECT_EQ(message.Sender, 7U);
}

TEST(RehearsalInputs, SenderAndTextMayBeLeftOut) {
  const auto message = Only<InputMessage>(R"({"at":"2026-12-24 18:01:00.000","message":5})");
  EXPECT_EQ(message.Text, "");
  EXPECT_EQ(message.Sender, 0U);
}

TEST(RehearsalInputs, ATriggerHasItsFourParts) {
  const auto trigger = Only<InputTrigger>(
      R"({"at":"2026-12-24 18:02:00.000","trigger":{"network":0,"unit":1,"input":3,"name":"Front door"}})");
  EXPECT_EQ(trigger.Network, 0);
  EXPECT_EQ(trigger.Unit, 1);
  EXPECT_EQ(trigger.Input, 3);
  EXPECT_EQ(trigger.Name, "Front door");
}

TEST(RehearsalInputs, RelativePathsOfACopyLieBesideTheInputs) {
  const auto copy =
      Only<InputCopy>(R"({"at":"2026-12-24 18:03:00.000","copy":{"from":"new.shw","to":"/shows/eve.shw"}})");
  EXPECT_EQ(copy.From, "/evenings/new.shw");
  EXPECT_EQ(copy.To, "/shows/eve.shw");
}

TEST(RehearsalInputs, MediaFailWithTheirReasons) {
  EXPECT_THAT(
      Only<InputMediaError>(R"({"at":"2026-12-24 18:04:00.000","mediaError":["a","b"]})").Descriptions,
      ElementsAre("a", "b"));
}

TEST(RehearsalInputs, ASequencesCallFails) {
  const auto error = Only<InputSequenceError>(
      R"({"at":"2026-12-24 18:05:00.000","sequenceError":{"file":"carol.vexseq","call":"sync","text":"lost"}})");
  EXPECT_EQ(error.File, "carol.vexseq");
  EXPECT_EQ(error.Call, "sync");
  EXPECT_EQ(error.Text, "lost");
}

TEST(RehearsalInputs, TheClockIsSet) {
  EXPECT_EQ(Only<InputClock>(R"({"at":"2026-12-25 02:59:59.000","clock":"2026-12-25 02:00:00"})").To,
            DateTime::FromParts(2026, 12, 25, 2, 0, 0));
}

TEST(RehearsalInputs, MomentsCountFromTheBeginning) {
  const auto inputs = Read(
      "{\"at\":\"2026-12-24 18:00:00\",\"message\":5}\n\n{\"at\":\"2026-12-24 "
      "18:00:01.234\",\"message\":5}\r\n"
      "{\"at\":\"2026-12-25 18:00:00.000\",\"message\":5}");
  ASSERT_EQ(inputs.size(), 3U);
  EXPECT_EQ(inputs[0].AtMs, 0);
  EXPECT_EQ(inputs[1].AtMs, 1234);
  EXPECT_EQ(inputs[2].AtMs, 86400000);
}

TEST(RehearsalInputs, WhatIsWrongIsNamedWithItsLine) {
  const std::string szGood = "{\"at\":\"2026-12-24 18:00:01.000\",\"message\":5}\n";
  EXPECT_EQ(Wrong(szGood), "nothing is wrong");
  EXPECT_EQ(Wrong(szGood + "nonsense"), "line 2: this is no JSON object");
  EXPECT_EQ(Wrong(szGood + "\n[1]"), "line 3: this is no JSON object");
  EXPECT_EQ(Wrong(szGood + R"({"message":5})"), "line 2: \"at\" is missing");
  EXPECT_THAT(Wrong(R"({"at":"soon","message":5})"), HasSubstr("line 1: \"at\" is no moment"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.5","message":5})"), HasSubstr("\"at\" is no moment"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 17:59:59.999","message":5})"),
              HasSubstr("before the rehearsal's beginning"));
  EXPECT_THAT(Wrong(szGood + R"({"at":"2026-12-24 18:00:00.999","message":5})"),
              HasSubstr("in order of time"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000"})"), HasSubstr("an input has \"at\" and one of"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","message":5,"clock":"2026-12-24 18:00:00"})"),
              HasSubstr("an input has \"at\" and one of"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","message":"5"})"), HasSubstr("no whole number"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","message":5,"sender":-1})"), HasSubstr("\"sender\""));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","message":5,"text":"\u2603"})"),
              HasSubstr("\"text\" has a character outside Windows-1252"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","trigger":{"network":0,"unit":1}})"),
              HasSubstr("\"input\" is missing"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","trigger":5})"), HasSubstr("\"network\" is missing"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","copy":{"from":"a"}})"),
              HasSubstr("\"to\" is missing"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","mediaError":"a"})"), HasSubstr("no list of texts"));
  EXPECT_THAT(Wrong(R"({"at":"2026-12-24 18:00:01.000","clock":"never"})"),
              HasSubstr("\"clock\" is no date"));
  EXPECT_THAT(
      Wrong(R"({"at":"2026-12-24 18:00:01.000","sequenceError":{"file":"a","call":"sing","text":""}})"),
      HasSubstr("no call \"sing\""));
}

}  // namespace
}  // namespace vex
