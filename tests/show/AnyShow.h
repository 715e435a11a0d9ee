#pragma once

#include <rapidcheck.h>

#include <memory>
#include <string>
#include <vector>

#include "show/PlaylistFunctions.h"
#include "show/ShowFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"

namespace vex {

/// Shows drawn by chance, for properties that hold of any show.

/// Names with many special characters among the plain ones, every byte possible.
inline std::string AnyName() {
  return *rc::gen::container<std::string>(
      rc::gen::oneOf(rc::gen::elementOf(std::string("*(),ESOC")), rc::gen::arbitrary<char>()));
}

/// A name that a group's entry keeps as it stands.
inline std::string PlainName() {
  return *rc::gen::container<std::string>(rc::gen::suchThat<char>(
      rc::gen::arbitrary<char>(), [](char c) { return std::string("*(),").find(c) == std::string::npos; }));
}

inline bool AnyFlag() {
  return *rc::gen::arbitrary<bool>();
}
inline int32_t AnyNumber() {
  return *rc::gen::arbitrary<int32_t>();
}
inline int32_t SmallCount() {
  return *rc::gen::inRange(0, 4);
}

inline std::shared_ptr<Playlist> AnyPlaylist(bool boolMusical) {
  auto playlist =
      boolMusical ? NewMusicalPlaylist(AnyNumber(), AnyNumber()) : NewAnimationPlaylist(AnyNumber());
  playlist->CleanUp(AnyName());
  for (int32_t lLeft = SmallCount(); lLeft > 0; --lLeft) playlist->List().Add(AnyName());
  playlist->LightsOffAtEnd(AnyFlag());
  playlist->ShuffleAllowsBackToBack(AnyFlag());
  playlist->ShuffleWithReplacement(AnyFlag());
  return playlist;
}

inline std::shared_ptr<Trigger> AnyTrigger() {
  return NewTrigger(AnyNumber(), AnyNumber(), AnyNumber(), AnyName());
}

inline std::shared_ptr<InteractiveGroup> AnyGroup() {
  auto group = std::make_shared<InteractiveGroup>();
  group->Description(AnyName());
  group->Independent(AnyFlag());
  group->Interruptible(AnyFlag());
  group->MusicalAllowed(AnyFlag());
  group->LightsOffAtEnd(AnyFlag());
  group->Name(AnyName());
  for (int32_t lLeft = SmallCount() + 1; lLeft > 0; --lLeft) {
    std::vector<std::string> names(static_cast<size_t>(SmallCount()) + 1);
    for (auto& szName : names) szName = PlainName();
    group->AddTriggeredSequences(NewTriggeredSequences(AnyTrigger(), names));
  }
  return group;
}

inline std::shared_ptr<Show> AnyShow() {
  InteractiveGroupCollection groups;
  for (int32_t lLeft = SmallCount(); lLeft > 0; --lLeft) groups.Add(AnyGroup());
  return NewShow(AnyPlaylist(true), AnyPlaylist(true), AnyPlaylist(false), AnyPlaylist(true),
                 AnyPlaylist(false), groups, AnyNumber(), AnyFlag() ? AnyTrigger() : nullptr, AnyFlag());
}

}  // namespace vex
