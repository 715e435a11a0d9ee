#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "basic/DateTime.h"
#include "host/Clock.h"

namespace vex {

/// What is known at one moment, each thing by whoever knows it. Times are the clock's elapsed ones.
struct LightFacts {
  Elapsed Now{0};
  DateTime Wall;

  bool PlayerRuns = false;
  bool PlayerEverRan = false;
  /// The player that ran last has said that it ends.
  bool Farewell = false;
  /// False once it owes a report for too long.
  bool Answers = true;
  std::optional<Elapsed> LastError;
  std::string ErrorText;

  /// Some sequence plays.
  bool Plays = false;
  /// From when on packets have to be there, because a sequence that plays drives lights; none without one.
  std::optional<Elapsed> LightsDue;
  /// Why packets cannot be watched; empty while they can, or while they are not to count.
  std::string PacketsTrouble;
  bool PacketsCount = true;
  struct Universe {
    uint16_t Number = 0;
    Elapsed Last{0};
  };
  /// Those whose stream has not been ended.
  std::vector<Universe> Universes;

  /// Since when the player holds the song or video that it holds; none without one.
  std::optional<Elapsed> SongSince;
  /// Whether there is anything by which the sound position can be seen, and when it was last seen to move.
  bool SoundIsSeen = false;
  Elapsed SoundMoved{0};
  /// How long the position may seem to stand, by what it is seen.
  Elapsed SoundPatience{0};
};

/// One of the three causes.
struct LightCause {
  bool Needed = false;
  bool Ok = true;
  std::optional<DateTime> Since;  ///< when it began to be missing
  std::string Why;                ///< a sentence, with that time in it; empty while Ok
};

enum class LightColour : uint8_t { Off, Idle, Playing, Trouble };
[[nodiscard]] const char* LightWord(LightColour colour);

/// The state light: what the player says, what is on the network and whether the sound moves, put together to
/// one word that can be trusted. It says "playing" only while all that the show needs is seen. A pure matter
/// of facts and the time that goes with them.
class StateLight {
 public:
  /// Every universe counts as missing after so long; receivers give a source up then, too.
  static constexpr Elapsed PacketPatience{2'500'000'000};
  /// A line of level 3 is trouble for so long.
  static constexpr Elapsed ErrorLasts{30'000'000'000};

  struct State {
    LightColour Colour = LightColour::Off;
    std::optional<DateTime> Since;
    LightCause Player;
    LightCause Packets;
    LightCause Sound;

    [[nodiscard]] std::vector<std::string> Why() const;
  };

  /// True when the colour has changed.
  bool Look(const LightFacts& facts);
  [[nodiscard]] const State& Now() const { return m_State; }

 private:
  void LookAtPlayer(const LightFacts& facts);
  void LookAtPackets(const LightFacts& facts);
  void LookAtSound(const LightFacts& facts);

  State m_State;
};

}  // namespace vex
