#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "show/lists/ListShape.h"
#include "show/lists/Serialize.h"

namespace {

constexpr size_t TenMegabytes = 10'000'000;

/// A list of fields of one length, about so many bytes in all.
std::string ListOfFields(size_t bytes, size_t fieldLength) {
  std::string szText = "(";
  szText.reserve(bytes + fieldLength + 2);
  while (szText.size() < bytes) {
    szText.append(fieldLength, 'a');
    szText += ',';
  }
  szText.back() = ')';
  return szText;
}

/// A list whose one field is lists in lists, so many deep, as often as the bytes allow, and a last field.
std::string NestedList(size_t bytes, size_t depth) {
  std::string szText = "(";
  szText.reserve(bytes + 2 * depth + 8);
  while (szText.size() < bytes) {
    szText.append(depth, '(').append("a,b").append(depth, ')');
    szText += ',';
  }
  szText += "c)";
  return szText;
}

/// What any reader must do at least: look at every byte and keep the depth.
int64_t PlainDepthPass(std::string_view szText) {
  int64_t depth = 0;
  for (const char character : szText) depth += (character == '(') - (character == ')');
  return depth;
}

void SetSpeed(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
}

void Plain(benchmark::State& state) {
  const std::string szText = ListOfFields(TenMegabytes, static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    std::string_view szSeen = szText;
    benchmark::DoNotOptimize(szSeen);
    benchmark::DoNotOptimize(PlainDepthPass(szSeen));
  }
  SetSpeed(state, szText.size());
}
BENCHMARK(Plain)->Arg(40)->Arg(6);

void Split(benchmark::State& state) {
  const std::string szText = ListOfFields(TenMegabytes, static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(vex::SplitList(szText));
  SetSpeed(state, szText.size());
}
BENCHMARK(Split)->Arg(40)->Arg(6);

void Shape(benchmark::State& state) {
  const std::string szText = ListOfFields(TenMegabytes, 40);
  for (auto _ : state) {
    uint64_t all = 0;
    for (size_t from = 0; from + vex::ListShape::BlockSize <= szText.size();
         from += vex::ListShape::BlockSize) {
      const vex::ListShape shape =
          state.range(0) == 0 ? vex::PlainShapeOf(szText.data() + from) : vex::ShapeOf(szText.data() + from);
      all ^= shape.Commas ^ shape.Parens;
    }
    benchmark::DoNotOptimize(all);
  }
  SetSpeed(state, szText.size());
}
BENCHMARK(Shape)->Arg(0)->Arg(1);

constexpr int64_t Smallest = 10'000;
constexpr int64_t Greatest = 100'000'000;

void SplitSize(benchmark::State& state, const std::string& szText) {
  for (auto _ : state) benchmark::DoNotOptimize(vex::SplitList(szText));
  SetSpeed(state, szText.size());
  state.SetComplexityN(static_cast<int64_t>(szText.size()));
}

void SplitFields(benchmark::State& state, size_t fieldLength) {
  SplitSize(state, ListOfFields(static_cast<size_t>(state.range(0)), fieldLength));
}
BENCHMARK_CAPTURE(SplitFields, Of40, 40)
    ->RangeMultiplier(10)
    ->Range(Smallest, Greatest)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(SplitFields, Of6, 6)
    ->RangeMultiplier(10)
    ->Range(Smallest, Greatest)
    ->Complexity(benchmark::oN);

/// Inner lists so many deep one after another; 0 stands for one that nests as deep as the text is long.
void SplitNested(benchmark::State& state, size_t depth) {
  const auto bytes = static_cast<size_t>(state.range(0));
  SplitSize(state, NestedList(bytes, depth == 0 ? bytes / 2 : depth));
}
BENCHMARK_CAPTURE(SplitNested, OneDeep, 1)
    ->RangeMultiplier(10)
    ->Range(Smallest, Greatest)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(SplitNested, HundredDeep, 100)
    ->RangeMultiplier(10)
    ->Range(Smallest, Greatest)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(SplitNested, AllDeep, 0)
    ->RangeMultiplier(10)
    ->Range(Smallest, Greatest)
    ->Complexity(benchmark::oN);

}  // namespace

BENCHMARK_MAIN();
