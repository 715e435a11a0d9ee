// What the heartbeat asks of a year of 366 dates with ten shows each.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "schedule/YearSchedule.h"
#include "schedule/YearScheduleFunctions.h"
#include "time/WeekTimeFunctions.h"

namespace {

constexpr int32_t Dates = 366;
const vex::DateTime FirstDate = vex::DateTime::FromParts(2028, 1, 1);

/// Dates added from the year's end, so that a search over all of them can skip none.
std::shared_ptr<vex::YearSchedule> FullYear() {
  auto year = std::make_shared<vex::YearSchedule>();
  for (int32_t lDate = Dates - 1; lDate >= 0; --lDate) {
    for (int32_t lShow = 0; lShow < 10; ++lShow) {
      const vex::DateTime dtStart = FirstDate.PlusDays(lDate).PlusSeconds((2 + 2 * lShow) * 3600);
      year->AddShowEventByFile("show" + std::to_string(lShow), dtStart, dtStart.PlusSeconds(3600));
    }
  }
  return year;
}

void EventInForce(benchmark::State& state) {
  const auto year = FullYear();
  int32_t lStep = 0;
  for (auto step : state) {
    const vex::DateTime dtNow = FirstDate.PlusSeconds(int64_t{lStep++ % Dates} * 86400 + 20 * 3600 + 1800);
    const auto day = year->DateSchedule(dtNow);
    const auto event = day->GetNodeByTime(vex::WeekTimeFromDate(dtNow))->Obj();
    if (event->Filename() != "show9") state.SkipWithError("another show");
    auto range = event->Range(dtNow);
    benchmark::DoNotOptimize(range);
  }
}

void FirstShowOfTheYear(benchmark::State& state) {
  const auto year = FullYear();
  vex::TimeRange range;
  for (auto step : state) {
    vex::DateTime dtStart;
    const auto event = year->FirstShowWithinRange(range, dtStart);
    if (dtStart != FirstDate.PlusSeconds(2 * 3600)) state.SkipWithError("another show");
    benchmark::DoNotOptimize(event.get());
  }
}

void FirstShowOfOneDay(benchmark::State& state) {
  const auto year = FullYear();
  vex::TimeRange range;
  range.StartTime(FirstDate.PlusDays(180));
  range.EndTime(FirstDate.PlusDays(181));
  for (auto step : state) {
    vex::DateTime dtStart;
    const auto event = year->FirstShowWithinRange(range, dtStart);
    if (!event) state.SkipWithError("no show");
    benchmark::DoNotOptimize(event.get());
  }
}

void ReadYear(benchmark::State& state) {
  const std::string szText = vex::YearScheduleToText(*FullYear());
  for (auto step : state) {
    const auto year = vex::YearScheduleFromText(szText);
    benchmark::DoNotOptimize(year.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * szText.size()));
}

BENCHMARK(EventInForce)->Unit(benchmark::kMicrosecond);
BENCHMARK(FirstShowOfTheYear)->Unit(benchmark::kMicrosecond);
BENCHMARK(FirstShowOfOneDay)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadYear)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
