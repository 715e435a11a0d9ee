#include "tray/truth/StateLight.h"

#include <algorithm>
#include <chrono>

namespace vex {

namespace {

/// The wall clock's time of a moment that has passed.
DateTime WallOf(const LightFacts& facts, Elapsed moment) {
  return facts.Wall.PlusSeconds(-std::chrono::floor<std::chrono::seconds>(facts.Now - moment).count());
}

void Set(LightCause& cause, bool boolNeeded, const std::string& szMissing, DateTime dtSince) {
  cause.Needed = boolNeeded;
  cause.Ok = szMissing.empty();
  if (cause.Ok) {
    cause.Since.reset();
    cause.Why.clear();
    return;
  }
  if (!cause.Since) cause.Since = dtSince;
  cause.Why = szMissing + ", since " + FormatDateTime(*cause.Since);
}

}  // namespace

const char* LightWord(LightColour colour) {
  constexpr std::array<const char*, 4> words = {"off", "idle", "playing", "trouble"};
  return words.at(static_cast<size_t>(colour));
}

std::vector<std::string> StateLight::State::Why() const {
  std::vector<std::string> why;
  for (const LightCause* cause : {&Player, &Packets, &Sound}) {
    if (!cause->Ok) why.push_back(cause->Why);
  }
  return why;
}

void StateLight::LookAtPlayer(const LightFacts& facts) {
  std::string szMissing;
  DateTime since = facts.Wall;
  if (!facts.PlayerRuns) {
    if (facts.PlayerEverRan && !facts.Farewell) szMissing = "the player has gone without a farewell";
  } else if (!facts.Answers) {
    szMissing = "the player runs and does not answer";
  } else if (facts.LastError && facts.Now - *facts.LastError < ErrorLasts) {
    szMissing = "the player says: " + facts.ErrorText;
    since = WallOf(facts, *facts.LastError);
  }
  Set(m_State.Player, facts.PlayerEverRan, szMissing, since);
}

void StateLight::LookAtPackets(const LightFacts& facts) {
  const bool boolNeeded = facts.PlayerRuns && facts.PacketsCount && facts.LightsDue;
  std::string szMissing;
  DateTime since = facts.Wall;
  if (boolNeeded && !facts.PacketsTrouble.empty()) {
    szMissing = facts.PacketsTrouble;
  } else if (boolNeeded && facts.Universes.empty()) {
    if (facts.Now - *facts.LightsDue >= PacketPatience) {
      szMissing = "no lighting packet is seen";
      since = WallOf(facts, *facts.LightsDue);
    }
  } else if (boolNeeded) {
    std::string szUniverses;
    Elapsed last = facts.Now;
    for (const auto& universe : facts.Universes) {
      if (facts.Now - universe.Last < PacketPatience) continue;
      szUniverses += (szUniverses.empty() ? "" : ", ") + std::to_string(universe.Number);
      last = std::min(last, universe.Last);
    }
    if (!szUniverses.empty()) szMissing = "no packets are seen of universe " + szUniverses;
    since = WallOf(facts, last);
  }
  Set(m_State.Packets, boolNeeded, szMissing, since);
}

void StateLight::LookAtSound(const LightFacts& facts) {
  const bool boolNeeded = facts.PlayerRuns && facts.SongSince;
  std::string szMissing;
  DateTime since = facts.Wall;
  if (boolNeeded && facts.SoundIsSeen) {
    const Elapsed moved = std::max(facts.SoundMoved, *facts.SongSince);
    if (facts.Now - moved >= facts.SoundPatience) szMissing = "the sound position stands still";
    since = WallOf(facts, moved);
  }
  Set(m_State.Sound, boolNeeded, szMissing, since);
}

bool StateLight::Look(const LightFacts& facts) {
  LookAtPlayer(facts);
  LookAtPackets(facts);
  LookAtSound(facts);
  LightColour colour = LightColour::Idle;
  if (!m_State.Player.Ok || !m_State.Packets.Ok || !m_State.Sound.Ok)
    colour = LightColour::Trouble;
  else if (!facts.PlayerRuns)
    colour = LightColour::Off;
  else if (facts.Plays)
    colour = LightColour::Playing;
  const bool boolChanged = !m_State.Since || colour != m_State.Colour;
  if (boolChanged) m_State.Since = facts.Wall;
  m_State.Colour = colour;
  return boolChanged;
}

}  // namespace vex
