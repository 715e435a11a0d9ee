#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "basic/Collection.h"
#include "schedule/MonitoredShowEvent.h"
#include "show/ContentsSeal.h"
#include "show/InteractiveGroup.h"
#include "show/Playlist.h"
#include "show/Trigger.h"

namespace vex {

using InteractiveGroupCollection = Collection<std::shared_ptr<InteractiveGroup>>;

/// What a scheduled event plays: startup sequences, then animation and musical sequences while the show
/// runs, a background under them, groups that answer to inputs, and shutdown sequences at the end.
///
/// Monitoring, the schedule entry for which the show is played, is never empty and no part of the
/// contents. A show read from a file may be sealed: HasSameContents then compares the sealed texts; any
/// change to the show or one of its parts breaks the seal, and the comparison writes both shows out.
class Show : public SealedPart {
 public:
  Show();
  Show(const Show&) = delete;
  Show& operator=(const Show&) = delete;

  [[nodiscard]] const std::shared_ptr<Playlist>& Background() const { return m_Background; }
  void Background(std::shared_ptr<Playlist> playlist);
  /// True when both shows have the same text; false for no show and for one that cannot be written.
  [[nodiscard]] bool HasSameContents(const Show* other) const;
  [[nodiscard]] const InteractiveGroupCollection& InteractiveGroups() const { return m_InteractiveGroups; }
  void InteractiveGroups(InteractiveGroupCollection groups);
  [[nodiscard]] const std::shared_ptr<Playlist>& Main() const { return m_Main; }
  void Main(std::shared_ptr<Playlist> playlist);
  [[nodiscard]] const std::shared_ptr<MonitoredShowEvent>& Monitoring() const { return m_Monitoring; }
  /// A new record in place of an empty reference.
  void Monitoring(std::shared_ptr<MonitoredShowEvent> event);
  [[nodiscard]] const std::shared_ptr<Playlist>& Musical() const { return m_Musical; }
  void Musical(std::shared_ptr<Playlist> playlist);
  [[nodiscard]] bool PreloadSequences() const { return m_PreloadSequences; }
  void PreloadSequences(bool boolPreload);
  [[nodiscard]] const std::shared_ptr<Playlist>& Shutdown() const { return m_Shutdown; }
  void Shutdown(std::shared_ptr<Playlist> playlist);
  [[nodiscard]] const std::shared_ptr<Playlist>& Startup() const { return m_Startup; }
  void Startup(std::shared_ptr<Playlist> playlist);
  /// Empty when the show waits for no input.
  [[nodiscard]] const std::shared_ptr<Trigger>& StartupTrigger() const { return m_StartupTrigger; }
  void StartupTrigger(std::shared_ptr<Trigger> trigger);
  [[nodiscard]] int32_t StartupType() const { return m_StartupType; }
  void StartupType(int32_t lStartupType);

  /// Seals the show with the text that ShowToText gives for it; its parts must belong to it alone.
  void Seal(std::shared_ptr<const std::string> contentsText);
  /// The text under an unbroken seal, else empty.
  [[nodiscard]] std::shared_ptr<const std::string> SealedContents() const;
  /// True for a sealed show that is still as it was read: unchanged, and no round robin moved on.
  [[nodiscard]] bool AsRead() const;

 private:
  std::shared_ptr<Playlist> m_Startup;
  std::shared_ptr<Playlist> m_Shutdown;
  std::shared_ptr<Playlist> m_Main;
  std::shared_ptr<Playlist> m_Musical;
  std::shared_ptr<Playlist> m_Background;
  InteractiveGroupCollection m_InteractiveGroups;
  int32_t m_StartupType = 0;
  std::shared_ptr<Trigger> m_StartupTrigger;
  bool m_PreloadSequences = false;
  std::shared_ptr<MonitoredShowEvent> m_Monitoring;
};

}  // namespace vex
