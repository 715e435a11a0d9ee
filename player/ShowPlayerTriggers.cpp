#include <memory>
#include <string>

#include "player/ShowPlayer.h"
#include "show/InteractiveGroup.h"
#include "show/Show.h"
#include "show/Trigger.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequences.h"

namespace vex {

namespace {

/// The trigger that the control's object describes, or none when a property cannot be read.
std::shared_ptr<Trigger> ReadTrigger(const NamedProperties& input) {
  try {
    const int32_t lNetwork = input.Integer("Network");
    const int32_t lUnitId = input.Integer("UnitId");
    const int32_t lInputNumber = input.Integer("InputNumber");
    return NewTrigger(lNetwork, lUnitId, lInputNumber, input.Text("Name"));
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace

void ShowPlayer::RegisterStartupTrigger() {
  if (!m_CurrentShow || m_CurrentShow->StartupType() == 0 || !m_CurrentShow->StartupTrigger()) return;
  Log(StatusReport::LevelCourse, "Registering startup trigger");
  m_CIO->RegisterTrigger(*m_CurrentShow->StartupTrigger());
  m_TriggersRegistered = true;
}

void ShowPlayer::RegisterInteractiveTriggers() {
  if (!m_CurrentShow) return;
  for (const auto& group : m_CurrentShow->InteractiveGroups()) {
    for (int32_t lEntry = 0; lEntry < group->Count(); ++lEntry) {
      if (!m_State.InteractiveLogged) {
        Log(StatusReport::LevelCourse, "Registering interactive triggers");
        m_State.InteractiveLogged = true;
      }
      m_CIO->RegisterTrigger(Required(group->GetTriggeredSequences(lEntry)->Trig()));
      m_TriggersRegistered = true;
    }
  }
  m_State.InteractiveRegistered = true;
}

void ShowPlayer::ClearTriggers() {
  if (!m_TriggersRegistered) return;
  Log(StatusReport::LevelCourse, "Clearing triggers");
  m_CIO->ClearTriggers();
  m_TriggersRegistered = false;
}

void ShowPlayer::m_CIO_TriggerDetected(const NamedProperties& input) {
  if (!m_CurrentShow || m_State.ShutdownMode) return;
  const std::shared_ptr<Trigger> detected = ReadTrigger(input);
  if (!detected) return;
  WakeTimer();
  const bool boolStartup = ServeStartupTrigger(*detected);
  if (!m_State.MainEnabled) return;
  if (m_State.InteractiveRegistered || boolStartup) ServeInteractiveTriggers(*detected);
}

bool ShowPlayer::ServeStartupTrigger(const Trigger& detected) {
  const auto& startup = m_CurrentShow->StartupTrigger();
  if (!startup || !startup->Equals(&detected)) {
    Log(StatusReport::LevelCourse, "Trigger detected: " + detected.Name());
    return false;
  }
  Log(StatusReport::LevelCourse, "Startup trigger detected");
  if (!m_State.BackgroundEnabled) {
    m_State.BackgroundEnabled = true;
    StartBackground();
  }
  m_State.MainEnabled = true;
  if (!m_State.InteractiveLogged) ClearTriggers();
  return true;
}

void ShowPlayer::ServeInteractiveTriggers(const Trigger& detected) {
  int32_t lGroup = 0;
  for (const auto& group : m_CurrentShow->InteractiveGroups()) {
    ++lGroup;
    for (int32_t lEntry = 0; lEntry < group->Count(); ++lEntry) {
      const auto& entry = group->GetTriggeredSequences(lEntry);
      if (!entry->Triggered(&detected)) continue;
      SequenceList& sequences = m_State.Interactive.Item(lGroup).Item(lEntry + 1);
      if (!group->Independent().IsClear()) {
        StopGroupSequences(group);
        for (int32_t lIndex = 1; lIndex <= sequences.Count(); ++lIndex)
          QueueSequence(sequences, lIndex, false);
      } else {
        QueueSequence(sequences, entry->RoundRobinIndex() + 1, false);
      }
    }
  }
}

void ShowPlayer::StopGroupSequences(const std::shared_ptr<InteractiveGroup>& group) {
  for (const auto& sequence : m_Playing) {
    if (sequence->Group() == group) sequence->StopPlay();
  }
}

}  // namespace vex
