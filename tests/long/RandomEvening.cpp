#include "tests/long/RandomEvening.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace vex::test {

namespace {

constexpr int64_t Minute = 60;
constexpr int64_t Hour = 60 * Minute;
constexpr int64_t Day = 24 * Hour;
constexpr int64_t FirstSecond = 17 * Hour + 55 * Minute;  // of the evening, since its midnight
constexpr int64_t LastSecond = 18 * Hour + 40 * Minute;

const char* const SettingsText =
    "Windows Registry Editor Version 5.00\n"
    "[HKEY_CURRENT_USER\\Software\\Brillara]\n\"UserDataPath\"=\"D:\\\\\"\n"
    "[HKEY_CURRENT_USER\\Software\\Brillara\\Shared]\n\"AudioPath\"=\"D:\\\\\"\n\"NonAudioPath\"=\"D:"
    "\\\\\"\n";

/// In a list, unlike in a sum, parts are drawn in the order in which they stand, whoever compiles it.
std::string Text(std::initializer_list<std::string> parts) {
  std::string szText;
  for (const std::string& szPart : parts) szText += szPart;
  return szText;
}

}  // namespace

RandomEvening::RandomEvening(uint64_t seed) : Settings(SettingsText), m_Random(seed) {
  const DateTime dtFirst = DateTime::FromParts(2026, 11, 20);
  constexpr int32_t lNights = 47;
  const DateTime dtEvening = dtFirst.PlusDays(Draw(lNights) - 1);
  Options.From = dtEvening.PlusSeconds(FirstSecond);
  Options.Until = dtEvening.PlusSeconds(LastSecond);
  Options.Seed = seed;
  Options.AssumeMedia = true;
  Options.NoSchedule = OnceIn(20);
  Options.Watch = true;
  Options.MeanBetweenFaults = std::chrono::minutes(8);
  if (seed % 2 == 0) Options.Faults = seed;
  m_LightsStay = OnceIn(5);
  DrawSequences();
  for (int32_t lShow = 1; lShow <= Shows; ++lShow) DrawShow("show" + std::to_string(lShow) + ".shw");
  DrawSchedules();
  DrawInputs();
}

void RandomEvening::DrawSequences() {
  for (int32_t lSequence = 1; lSequence <= Sequences; ++lSequence) {
    const std::string szPath = "D:\\s" + std::to_string(lSequence) + ".vexseq";
    if (OnceIn(25)) continue;  // a missing one
    const int32_t lTenths = OnceIn(100) ? 0 : Draw(OnceIn(3) ? 1200 : 200);
    std::string szText = R"({"format":"vexseq","version":1,"duration":)" + std::to_string(lTenths / 10) +
                         "." + std::to_string(lTenths % 10);
    if (OnceIn(2)) szText += Text({R"(,"media":"song)", Number(9), OnceIn(4) ? ".mp4\"" : ".ogg\""});
    if (OnceIn(10)) szText += R"(,"shellCommand":{"commandLine":"notify","windowStyle":1})";
    szText += R"(,"events":[)";
    const int32_t lEvents = Draw(30);
    for (int32_t lEvent = 0; lEvent < lEvents; ++lEvent) {
      const int32_t lStart = Draw(std::max(lTenths, 1)) - 1;
      const std::string szStart = std::to_string(lStart / 10) + "." + std::to_string(lStart % 10);
      const std::string szEnd = OnceIn(2) ? szStart : std::to_string(lStart / 10 + Draw(3)) + ".95";
      szText += Text({lEvent > 0 ? "," : "", R"({"unit":)", Number(3), R"(,"circuit":)", Number(40),
                      R"(,"start":)", szStart, R"(,"end":)", szEnd, R"(,"from":)",
                      std::to_string(Draw(101) - 1), R"(,"to":)", std::to_string(Draw(101) - 1), "}"});
    }
    szText += "]}";
    if (OnceIn(40)) szText.resize(szText.size() / 2);  // a damaged one
    Files.Put(szPath, szText);
  }
}

std::string RandomEvening::Names(int32_t lMost) {
  const int32_t lCount = Draw(lMost + 1) - 1;
  std::string szNames;
  for (int32_t lName = 0; lName < lCount; ++lName) szNames += (lName > 0 ? "," : "") + SequenceName();
  return szNames.empty() ? "" : "(" + szNames + ")";
}

/// Kind: the three numbers of animation, music and list.
std::string RandomEvening::Playlist(const std::string& szKind, const std::string& szDelay, int32_t lMost) {
  const std::string szCleanUp = szDelay != "0" && OnceIn(2) ? SequenceName() : "";
  return Text({"(", szKind, ",", szDelay, ",", szCleanUp, ",", Names(lMost), ",",
               m_LightsStay ? Flag(3) : "T", ",", Flag(2), ",", Flag(2), ")"});
}

std::string RandomEvening::Groups() {
  const int32_t lCount = Draw(3) - 1;
  std::string szGroups;
  for (int32_t lGroup = 0; lGroup < lCount; ++lGroup) {
    std::string szEntries;
    const int32_t lEntries = Draw(3);
    for (int32_t lEntry = 0; lEntry < lEntries; ++lEntry) {
      szEntries += Text({lEntry > 0 ? "," : "", "(", SequenceName(), ",(", Number(4), ",Button,1,0)",
                         OnceIn(2) ? "," + SequenceName() : "", ")"});
    }
    szGroups += Text({lGroup > 0 ? "," : "", "(", std::to_string(lEntries), ",,", Flag(2), ",", Flag(2), ",",
                      Flag(2), ",Group,(", szEntries, "),", m_LightsStay ? Flag(3) : "T", ")"});
  }
  return szGroups.empty() ? "" : "(" + szGroups + ")";
}

void RandomEvening::DrawShow(const std::string& szName) {
  const std::string szTrigger = OnceIn(4) ? "(5,Start,1,0)" : "";
  const std::string szAnimations = std::to_string(Draw(4) - 1) + ",0,1";
  const std::string szSongs = "0," + std::to_string(Draw(4) - 1) + ",2";
  const std::string szDelay = Number(12);
  Files.Put("D:\\" + szName, Text({"(", Playlist("0,1,2", "0", 2), ",", Playlist("0,1,2", "0", 2), ",",
                                   Playlist(szAnimations, "0", 4), ",", Playlist(szSongs, szDelay, 4), ",,",
                                   Playlist("2,0,1", "0", 1), ",", Groups(), ",", std::to_string(Draw(4) - 1),
                                   ",", szTrigger, ",F)"}));
}

/// Shows that follow each other with or without a gap, the last one maybe beyond the evening.
std::string RandomEvening::DaySchedule(int64_t midnight) {
  std::string szEvents;
  int64_t at = 18 * Hour + (Draw(10) - 1) * Minute;
  while (at < LastSecond && !OnceIn(6)) {
    const int64_t minutes = Draw(15);
    const int64_t end = at + minutes * Minute + (OnceIn(3) ? Draw(60) : 0);
    szEvents += Text({szEvents.empty() ? "(" : ",(", std::to_string(midnight + end), ",2,(,0,",
                      OnceIn(12) ? "" : ShowName(), "),", std::to_string(midnight + at), ")"});
    at = end + (OnceIn(2) ? 0 : Draw(8) * Minute);
  }
  return szEvents.empty() ? "" : "(" + szEvents + ")";
}

void RandomEvening::DrawSchedules() {
  const int64_t weekDay = Options.From.WeekDay() - 1;
  const std::string szWeek = DaySchedule(weekDay * Day);
  if (!szWeek.empty()) Files.Put("D:\\weeksched.qsc", szWeek);
  if (OnceIn(2)) return;
  const std::string szDate = FormatDate(Options.From.DatePart());
  const std::string szDay = DaySchedule(weekDay * Day);
  if (!szDay.empty()) Files.Put("D:\\yearsched.qsc", "((" + szDate + "," + szDay + "))");
}

void RandomEvening::DrawInputs() {
  const int32_t lCount = Draw(40) - 1;
  std::vector<int64_t> moments;
  for (int32_t lInput = 0; lInput < lCount; ++lInput) {
    constexpr int64_t perSecond = 1000;
    moments.push_back(
        static_cast<int64_t>(m_Random.Next() * static_cast<double>(LastSecond - FirstSecond) * perSecond));
    if (OnceIn(3)) moments.push_back(moments.back() + Draw(50));
  }
  std::sort(moments.begin(), moments.end());
  for (const int64_t at : moments) Inputs.push_back(DrawInput(at));
}

RehearsalInput RandomEvening::DrawInput(int64_t atMs) {
  static const std::array<const char*, 5> Calls{"load", "prepare", "start", "sync", "stop"};
  switch (Draw(16)) {
    case 1:
      return {atMs, InputMessage{2, "", 7}};
    case 2:
      return {atMs, InputMessage{5, "", 7}};
    case 3:
      return {atMs, InputMessage{6, OnceIn(2) ? "ON" : "OFF", 7}};
    case 4:
      return {atMs, InputMessage{9, "", 7}};
    case 5:
    case 6:
      return {atMs, InputMessage{9, "(" + ShowName() + ",(F,,F,),2,F)", 7}};
    case 7:
      return {atMs, InputMessage{11, "", 7}};
    case 8:
      return {atMs, InputMediaError{{"codec not found"}}};
    case 9:
      return {atMs, InputSequenceError{SequenceName(), Calls.at(static_cast<size_t>(Draw(Calls.size()) - 1)),
                                       "lost"}};
    case 10:
      return {atMs, InputCopy{"D:\\" + ShowName(), "D:\\" + ShowName()}};
    case 11:
      if (OnceIn(4)) return {atMs, InputClock{Options.From.PlusSeconds(Draw(2700))}};
      return {atMs, InputMessage{Draw(99), "(", 7}};
    default:
      return {atMs, InputTrigger{0, 1, Draw(5), "Button"}};
  }
}

}  // namespace vex::test
