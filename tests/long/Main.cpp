#include <atomic>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/RegistryText.h"
#include "tests/long/RandomEvening.h"

// Plays many random evenings, each by its seed, and looks whether what must hold holds in all of them:
//
//     long_evenings [COUNT [FIRST_SEED]]      10000 evenings from seed 1 where nothing is said
//     long_evenings lines SEED                everything that happens in one of them, but no lighting events
//
// The exit status is 1 where something was broken; each such evening is named by its seed.

namespace vex::test {
namespace {

struct Totals {
  std::atomic<int64_t> Evenings = 0;
  std::atomic<int64_t> Shows = 0;
  std::atomic<int64_t> Songs = 0;
  std::atomic<int64_t> Faults = 0;
  std::atomic<int64_t> Errors = 0;
  std::atomic<int64_t> Broken = 0;
};

/// What was broken in it.
std::vector<std::string> Play(uint64_t seed, Totals& totals) {
  RandomEvening evening(seed);
  Rehearsal rehearsal(evening.Files, RegistryText(evening.Settings), evening.Options, evening.Inputs,
                      [](const std::string&) { return MediaFacts(); });
  rehearsal.Write(
      [&](const RehearsalEvent& event) {
        if (event.Text.starts_with("Finished show: ")) ++totals.Shows;
        if (event.Text == "Starting" && event.Play == "Musical") ++totals.Songs;
        if (event.Kind == "fault") ++totals.Faults;
        if (event.Kind == "log" && event.Level == 3) ++totals.Errors;
        return false;
      },
      [](const JsonLine&) {});
  try {
    rehearsal.Run();
  } catch (const std::exception& error) {
    return {std::string("something left the player: ") + error.what()};
  }
  return rehearsal.Broken();
}

int PrintLines(uint64_t seed) {
  RandomEvening evening(seed);
  Rehearsal rehearsal(evening.Files, RegistryText(evening.Settings), evening.Options, evening.Inputs,
                      [](const std::string&) { return MediaFacts(); });
  rehearsal.Write([](const RehearsalEvent& event) { return event.Call != "send" && event.Call != "flush"; },
                  [](const JsonLine& line) { std::cout << line.Text() << "\n"; });
  rehearsal.Run();
  for (const std::string& szWhat : rehearsal.Broken()) std::cout << "broken: " << szWhat << "\n";
  return EXIT_SUCCESS;
}

void PlayAll(uint64_t first, uint64_t count, Totals& totals) {
  std::atomic<uint64_t> next = first;
  std::mutex printing;
  const auto play = [&] {
    for (uint64_t seed = next++; seed < first + count; seed = next++) {
      const auto broken = Play(seed, totals);
      const std::lock_guard lock(printing);
      for (const std::string& szWhat : broken) std::cout << "seed " << seed << ": " << szWhat << "\n";
      if (!broken.empty()) ++totals.Broken;
      constexpr int64_t often = 100;
      if (++totals.Evenings % often == 0) std::cerr << totals.Evenings << " of " << count << " evenings\r";
    }
  };
  std::vector<std::thread> players(std::max(1U, std::thread::hardware_concurrency()));
  for (std::thread& player : players) player = std::thread(play);
  for (std::thread& player : players) player.join();
}

int Main(const std::vector<std::string>& arguments) {
  if (arguments.size() == 2 && arguments[0] == "lines") return PrintLines(std::stoull(arguments[1]));
  const uint64_t count = arguments.empty() ? 10000 : std::stoull(arguments[0]);
  const uint64_t first = arguments.size() < 2 ? 1 : std::stoull(arguments[1]);
  const auto start = std::chrono::steady_clock::now();
  Totals totals;
  PlayAll(first, count, totals);
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start).count();
  std::cout << totals.Evenings << " evenings, seeds " << first << " to " << first + count - 1 << ": "
            << totals.Shows << " shows finished, " << totals.Songs << " songs, " << totals.Faults
            << " faults on purpose, " << totals.Errors << " errors told; " << totals.Broken
            << " evenings broken; " << seconds << " s\n";
  return totals.Broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace vex::test

int main(int argc, char** argv) {
  try {
    return vex::test::Main({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "long_evenings [COUNT [FIRST_SEED]]: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
