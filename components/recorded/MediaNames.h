#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace vex {

/// What the sequences of a run have said about their media: which name stands behind a full path, and how
/// long the sequence lasts that names it. The recorded engine writes it, the recorded media player reads it.
class MediaNames {
 public:
  void Learn(const std::string& szPath, const std::string& szName, std::optional<int32_t> lLengthMs);

  /// The name as the sequence has it, the latest one where there are several; the path itself if no sequence
  /// has named it.
  [[nodiscard]] std::string NameOf(const std::string& szPath) const;
  [[nodiscard]] std::optional<int32_t> LengthOf(const std::string& szPath) const;

 private:
  struct Entry {
    std::string Name;
    std::optional<int32_t> LengthMs;
  };
  std::map<std::string, Entry> m_Entries;
};

}  // namespace vex
