#pragma once

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "player/StatusReport.h"

namespace vex::bench {

// What a show on the real machine needs around it.

constexpr uint16_t E131Port = 5568;
constexpr int32_t FrameMs = 25;

/// A folder with settings of its own: lights go to the loopback interface, sound nowhere.
inline std::string MakeFolder(const std::string& szSourceName, const std::string& szMoreSettings = {}) {
  char pattern[] = "/tmp/vexbenchXXXXXX";
  std::string szFolder = mkdtemp(pattern);
  setenv("VEX_RUNTIME_DIR", (szFolder + "/run").c_str(), 1);
  setenv("VEX_SETTINGS", (szFolder + "/settings.reg").c_str(), 1);
  std::ofstream(szFolder + "/settings.reg")
      << "Windows Registry Editor Version "
         "5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara\\Output]\n\"Host\"=\"127.0.0.1\"\n"
         "\"SourceName\"=\""
      << szSourceName
      << "\"\n\n[HKEY_CURRENT_USER\\Software\\Brillara\\Components]\n\"AudioOutput\"=\"null\"\n"
      << szMoreSettings;
  return szFolder;
}

class Silent : public StatusReport {
 public:
  void LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo*) override {
    if (lLevel >= LevelError) std::fprintf(stderr, "%s\n", szText.c_str());
  }
  void ReportShowsToTray(bool) override {}
};

inline int64_t RealTimeNs() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return time.tv_sec * 1000000000LL + time.tv_nsec;
}

inline void WriteWave(const std::string& szPath, int seconds) {
  constexpr uint32_t rate = 44100;
  const auto count = static_cast<uint32_t>(seconds) * rate;
  std::ofstream file(szPath, std::ios::binary);
  const auto number = [&file](uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i)));
  };
  file << "RIFF";
  number(36 + count * 2, 4);
  file << "WAVEfmt ";
  number(16, 4);
  number(1, 2);
  number(1, 2);
  number(rate, 4);
  number(rate * 2, 4);
  number(2, 2);
  number(16, 2);
  file << "data";
  number(count * 2, 4);
  for (uint32_t i = 0; i < count; ++i) number(i * 40 & 0x0FFF, 2);
}

/// Frame n holds n in the first two slots of each universe, and something else in every slot each frame.
inline std::string FrameFile(int seconds) {
  constexpr uint32_t channels = 4 * 512;
  const auto frames = static_cast<uint32_t>(seconds * 1000 / FrameMs);
  std::string szFile = "PSEQ";
  const auto number = [&szFile](uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) szFile += static_cast<char>(value >> (8 * i));
  };
  number(28, 2);
  number(0, 1);
  number(1, 1);
  number(28, 2);
  number(channels, 4);
  number(frames, 4);
  number(FrameMs, 1);
  szFile.resize(28, '\0');
  for (uint32_t frame = 0; frame < frames; ++frame) {
    for (uint32_t channel = 0; channel < channels; ++channel) {
      const uint32_t slot = channel % 512;
      szFile += static_cast<char>(slot == 0 ? frame : slot == 1 ? frame >> 8 : frame + slot);
    }
  }
  return szFile;
}

inline double Percentile(std::vector<double> values, double share) {
  if (values.empty()) return NAN;
  std::sort(values.begin(), values.end());
  return values[static_cast<size_t>(share * static_cast<double>(values.size() - 1))];
}

}  // namespace vex::bench
