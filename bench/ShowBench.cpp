// How fast show files are read, beside RapidJSON parsing the same content as JSON arrays in the same run, and
// what a heartbeat costs that finds its show file unchanged, beside reading and comparing the bytes.

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "show/ShowReader.h"

namespace {

constexpr size_t TenMegabytes = 10'000'000;

const std::string EmptyMusical = "(0,1,2,0,,,T,F,F)";
const std::string EmptyAnimation = "(2,0,1,0,,,T,F,F)";

/// A sequence's name of 40 bytes.
std::string Name(size_t number) {
  const std::string szNumber = std::to_string(number);
  return "C:\\Shows\\Sequences\\sequence" + std::string(9 - szNumber.size(), '0') + szNumber + ".seq";
}

std::string ShowText(const std::string& szMain, const std::string& szGroups) {
  return "(" + EmptyMusical + "," + EmptyMusical + "," + szMain + "," + EmptyMusical + ",," + EmptyAnimation +
         "," + szGroups + ",0,,F)\r\n";
}

std::string PlaylistShow(size_t bytes) {
  std::string szNames;
  for (size_t number = 0; szNames.size() < bytes; ++number) {
    szNames += (szNames.empty() ? "" : ",") + Name(number);
  }
  return ShowText("(1,0,1,0,,(" + szNames + "),T,F,F)", "");
}

std::string GroupsShow(size_t bytes) {
  std::string szGroups;
  for (size_t number = 0; szGroups.size() < bytes; ++number) {
    const std::string szNumber = std::to_string(number);
    std::string szEntries;
    for (int input = 1; input <= 4; ++input) {
      szEntries += (input == 1 ? "(" : ",(") + Name(number) + ",(" + std::to_string(input) + ",Button " +
                   std::to_string(input) + ",1,0)," + Name(number + 1) + ")";
    }
    szGroups += (number == 0 ? "(4,On the porch,F,T,T,Group " : ",(4,On the porch,F,T,T,Group ") + szNumber +
                ",(" + szEntries + "),T)";
  }
  return ShowText("(1,0,1,0,,,T,F,F)", "(" + szGroups + ")");
}

/// The same fields as JSON arrays of strings.
std::string AsJson(const std::string& szText) {
  std::string szJson;
  bool boolInField = false;
  bool boolAfterList = false;
  const auto endField = [&] {
    if (!boolInField && !boolAfterList) szJson += '"';
    if (!boolAfterList) szJson += '"';
    boolInField = false;
    boolAfterList = false;
  };
  for (const char character : szText.substr(0, szText.rfind(')') + 1)) {
    if (character == '(') {
      szJson += '[';
    } else if (character == ')') {
      endField();
      szJson += ']';
      boolAfterList = true;
    } else if (character == ',') {
      endField();
      szJson += ',';
    } else {
      if (!boolInField) szJson += '"';
      boolInField = true;
      if (character == '\\')
        szJson += '/';
      else
        szJson += character;
    }
  }
  return szJson;
}

void ReadShow(benchmark::State& state, const std::string& szText) {
  for (auto step : state) {
    auto show = vex::ShowFromText(szText);
    if (!show) state.SkipWithError("no show");
    benchmark::DoNotOptimize(show.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * szText.size()));
}

void ParseJson(benchmark::State& state, const std::string& szJson) {
  for (auto step : state) {
    rapidjson::Document document;
    document.Parse(szJson.data(), szJson.size());
    if (document.HasParseError()) state.SkipWithError("no JSON");
    benchmark::DoNotOptimize(&document);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * szJson.size()));
}

void PlaylistFromShowText(benchmark::State& state) {
  ReadShow(state, PlaylistShow(TenMegabytes));
}
void PlaylistByRapidJson(benchmark::State& state) {
  ParseJson(state, AsJson(PlaylistShow(TenMegabytes)));
}
void GroupsFromShowText(benchmark::State& state) {
  ReadShow(state, GroupsShow(TenMegabytes));
}
void GroupsByRapidJson(benchmark::State& state) {
  ParseJson(state, AsJson(GroupsShow(TenMegabytes)));
}
BENCHMARK(PlaylistFromShowText)->Unit(benchmark::kMillisecond);
BENCHMARK(PlaylistByRapidJson)->Unit(benchmark::kMillisecond);
BENCHMARK(GroupsFromShowText)->Unit(benchmark::kMillisecond);
BENCHMARK(GroupsByRapidJson)->Unit(benchmark::kMillisecond);

/// A show file of 2,000 sequences on disk, half of them in groups.
class ShowFile {
 public:
  ShowFile() {
    const std::string szPlaylist = PlaylistShow(1000 * 41), szGroups = GroupsShow(1000 * 56);
    std::string szMain = szPlaylist.substr(szPlaylist.find("(1,0,1,0,,("));
    szMain = szMain.substr(0, szMain.find(",T,F,F)") + 7);
    const size_t from = szGroups.find("((4,");
    const std::string szList = szGroups.substr(from, szGroups.rfind("),0,,F)") + 1 - from);
    std::ofstream(m_Path, std::ios::binary) << ShowText(szMain, szList);
  }
  ~ShowFile() { std::remove(m_Path.c_str()); }
  void Read(std::string& szContents) const {
    std::FILE* file = std::fopen(m_Path.c_str(), "rb");
    if (!file) throw std::runtime_error("cannot open " + m_Path);
    std::fseek(file, 0, SEEK_END);
    szContents.resize(static_cast<size_t>(std::ftell(file)));
    std::rewind(file);
    const size_t read = std::fread(szContents.data(), 1, szContents.size(), file);
    std::fclose(file);
    if (read != szContents.size()) throw std::runtime_error("cannot read " + m_Path);
  }

 private:
  std::string m_Path = "ShowBench.shw";
};

void ReadAndCompareBytes(benchmark::State& state) {
  const ShowFile file;
  std::string szLast, szContents;
  file.Read(szLast);
  for (auto step : state) {
    file.Read(szContents);
    bool boolSame = szContents == szLast;
    benchmark::DoNotOptimize(boolSame);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * szLast.size()));
}

void HeartbeatOfUnchangedShow(benchmark::State& state) {
  const ShowFile file;
  vex::ShowReader reader;
  std::string szContents;
  file.Read(szContents);
  const auto playing = reader.Read(szContents);
  for (auto step : state) {
    file.Read(szContents);
    const auto show = reader.Read(szContents);
    if (!playing->HasSameContents(show.get())) state.SkipWithError("changed");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * szContents.size()));
}

void HeartbeatOfChangedShow(benchmark::State& state) {
  const ShowFile file;
  vex::ShowReader reader;
  std::string szContents;
  file.Read(szContents);
  const auto playing = reader.Read(szContents);
  const std::string szOther = szContents + " ";
  for (auto step : state) {
    file.Read(szContents);
    if (!playing->HasSameContents(reader.Read(szOther).get())) state.SkipWithError("changed");
    if (!playing->HasSameContents(reader.Read(szContents).get())) state.SkipWithError("changed");
  }
}
BENCHMARK(ReadAndCompareBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(HeartbeatOfUnchangedShow)->Unit(benchmark::kMicrosecond);
BENCHMARK(HeartbeatOfChangedShow)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
