#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vex {

/// What a question about the machine came out as; Words (UTF-8) say what was found, for people.
struct FacilityAnswer {
  enum class Verdict { Unknown, Yes, No };
  Verdict Is = Verdict::Unknown;
  std::string Words;
};

/// What there is of the disk on which a file or folder lies.
struct DiskSpace {
  uint64_t Free = 0;  ///< bytes that this user may still fill
  bool ReadOnly = false;
};

/// What this user, and others, may do with a file or folder.
struct FileRights {
  bool Exists = false;  ///< and can be seen
  bool IsFolder = false;
  bool Read = false;  ///< of a folder: list it and enter it
  bool Write = false;
  bool OthersWrite = false;  ///< any other account may change it
  std::string Owner;         ///< the account that it belongs to
};

/// The machine as somebody would look it over before the season: its disk, its clock, its sound, its display,
/// its way to the lights, and who may do what. Asked by programs that check, never by the one that plays;
/// nothing is changed by asking. A machine that cannot be asked answers "unknown", as this one does. Paths
/// are the machine's own, UTF-8. No call raises.
class Facilities {
 public:
  virtual ~Facilities() = default;

  /// Of the nearest folder above that exists; none where it cannot be told.
  [[nodiscard]] virtual std::optional<DiskSpace> Space(const std::string& /*szHostPath*/) { return {}; }
  /// None where it cannot be told.
  [[nodiscard]] virtual std::optional<FileRights> Rights(const std::string& /*szHostPath*/) { return {}; }
  /// Whether shows would be played by an ordinary account, the words its name.
  [[nodiscard]] virtual FacilityAnswer OrdinaryAccount() { return {}; }
  /// Whether the clock is kept by a time service.
  [[nodiscard]] virtual FacilityAnswer ClockSynchronised() { return {}; }
  [[nodiscard]] virtual FacilityAnswer SoundDevice() { return {}; }
  /// Whether there is a display on which a video can be shown.
  [[nodiscard]] virtual FacilityAnswer Display() { return {}; }
  /// Whether datagrams to an address have a way out, by the interface with that address (0: the system's
  /// choice); the words name the interface.
  [[nodiscard]] virtual FacilityAnswer RouteTo(uint32_t /*address*/, uint32_t /*interfaceAddress*/) {
    return {};
  }
  /// Whether the folder in which the programs meet can be used.
  [[nodiscard]] virtual FacilityAnswer MeetingPlace() { return {}; }
};

}  // namespace vex
