#include "show/Show.h"

#include <utility>

#include "basic/Error.h"
#include "show/PlaylistFunctions.h"
#include "show/ShowFunctions.h"

namespace vex {

namespace {

template <class Part>
void PutPartUnder(const std::shared_ptr<Part>& part, const std::shared_ptr<ContentsSeal>& seal) {
  if (part) part->PutUnder(seal);
}

}  // namespace

Show::Show()
    : m_Startup(NewMusicalPlaylist(1, 0)),
      m_Shutdown(NewMusicalPlaylist(1, 0)),
      m_Main(NewAnimationPlaylist(1)),
      m_Musical(NewMusicalPlaylist(1, 0)),
      m_Background(NewAnimationPlaylist(2)),
      m_Monitoring(std::make_shared<MonitoredShowEvent>()) {}

void Show::Background(std::shared_ptr<Playlist> playlist) {
  BreakSeal();
  m_Background = std::move(playlist);
}

bool Show::HasSameContents(const Show* other) const {
  if (other == nullptr) return false;
  const auto contents = SealedContents();
  const auto otherContents = other->SealedContents();
  if (contents && otherContents) return contents == otherContents || *contents == *otherContents;
  try {
    return ShowToText(*this) == ShowToText(*other);
  } catch (const Error&) {
    return false;  // what cannot be written has no contents to be the same
  }
}

void Show::InteractiveGroups(InteractiveGroupCollection groups) {
  BreakSeal();
  m_InteractiveGroups = std::move(groups);
}

void Show::Main(std::shared_ptr<Playlist> playlist) {
  BreakSeal();
  m_Main = std::move(playlist);
}

void Show::Monitoring(std::shared_ptr<MonitoredShowEvent> event) {
  m_Monitoring = event ? std::move(event) : std::make_shared<MonitoredShowEvent>();
}

void Show::Musical(std::shared_ptr<Playlist> playlist) {
  BreakSeal();
  m_Musical = std::move(playlist);
}

void Show::PreloadSequences(bool boolPreload) {
  BreakSeal();
  m_PreloadSequences = boolPreload;
}

void Show::Shutdown(std::shared_ptr<Playlist> playlist) {
  BreakSeal();
  m_Shutdown = std::move(playlist);
}

void Show::Startup(std::shared_ptr<Playlist> playlist) {
  BreakSeal();
  m_Startup = std::move(playlist);
}

void Show::StartupTrigger(std::shared_ptr<Trigger> trigger) {
  BreakSeal();
  m_StartupTrigger = std::move(trigger);
}

void Show::StartupType(int32_t lStartupType) {
  BreakSeal();
  m_StartupType = lStartupType;
}

void Show::Seal(std::shared_ptr<const std::string> contentsText) {
  auto seal = std::make_shared<ContentsSeal>();
  seal->Text = std::move(contentsText);
  PutUnder(seal);
  for (const auto& playlist : {m_Startup, m_Shutdown, m_Main, m_Musical, m_Background}) {
    PutPartUnder(playlist, seal);
  }
  for (const auto& group : m_InteractiveGroups) PutPartUnder(group, seal);
  PutPartUnder(m_StartupTrigger, seal);
}

std::shared_ptr<const std::string> Show::SealedContents() const {
  const auto& seal = CurrentSeal();
  return seal && !seal->Broken ? seal->Text : nullptr;
}

bool Show::AsRead() const {
  const auto& seal = CurrentSeal();
  return seal && !seal->Broken && !seal->Played;
}

}  // namespace vex
