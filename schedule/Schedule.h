#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/Files.h"
#include "schedule/ShowEvent.h"
#include "show/lists/LinkedList.h"

namespace vex {

/// One week of shows: a chain of events in week order that covers the week without gap and overlap, so at
/// every second exactly one event is on. Stretches without a show are null events.
///
///     Sun 0:00 |--- null ---|== eve.shw ==|------- null -------| Sun 0:00
///
/// Neighbours touch, the last one's end is the first one's start across the week's end, and two null
/// events are never neighbours except across the week's end. Boundaries are shared WeekTime objects: they
/// are exchanged, never changed in place. A new schedule is one null event of 604800 seconds whose start
/// and end are Sunday 0:00:00. Start counts to an event, end does not.
class Schedule {
 public:
  using ShowNode = Node<ShowEvent>;
  using EventReference = std::shared_ptr<ShowEvent>;

  Schedule();
  Schedule(const Schedule&) = delete;
  Schedule& operator=(const Schedule&) = delete;

  [[nodiscard]] ShowNode* FirstNode() const { return m_Events->FirstNode(); }
  [[nodiscard]] ShowNode* LastNode() const { return m_Events->LastNode(); }
  /// Events in the chain, null events too.
  [[nodiscard]] int32_t Count() const { return m_Events->Count(); }
  /// Empty when the schedule has no show.
  [[nodiscard]] EventReference FirstShowEvent() const;
  [[nodiscard]] EventReference LastShowEvent() const;
  [[nodiscard]] bool Modified() const { return m_Modified; }
  void Modified(bool boolModified) { m_Modified = boolModified; }

  /// The first node whose event is on at that time; null when there is none.
  [[nodiscard]] ShowNode* GetNodeByTime(const WeekTime::Reference& newTime) const;
  /// The event as the shell sees it: null time is joined across the week's end. Empty for none.
  [[nodiscard]] EventReference AmalgamatedShowEvent(const EventReference& event) const;

  /// Carves a show out of null time. Errors, with source "Schedule.AddShowEvent": 1, 2 and 3 "Can't add
  /// event -- event conflict" (its start lies in a show; its end lies outside; there is no null time), 3
  /// "Internal error" (its end comes before its start). The chain is left as it was; Modified is set by 2
  /// and 3 all the same.
  void AddShowEvent(const EventReference& event);
  /// The same errors with source "Schedule.AddShowEventByFile".
  void AddShowEventByFile(const std::string& szFilename, WeekTime::Reference startTime,
                          WeekTime::Reference endTime);
  /// Turns a show back into null time. Raises number 1, source "Schedule.RemoveShowEvent", "Can not remove
  /// non-show event".
  void RemoveShowEvent(ShowNode* node);

  /// 0 when the show fits into one null event, else the number of the conflict. Kept on purpose: stricter
  /// than AddShowEvent, it takes no show laid over the week's end.
  [[nodiscard]] int32_t CheckAdd(const WeekTime::Reference& startTime,
                                 const WeekTime::Reference& endTime) const;
  /// CheckAdd for the same show moved to start on another day.
  [[nodiscard]] int32_t CheckAddSlide(const WeekTime::Reference& startTime,
                                      const WeekTime::Reference& endTime, int32_t lNewDay) const;

  /// Writes the schedule's text and a line end; false, with Modified as it was and the reason in szReason
  /// where given, when that fails.
  bool Save(Files& files, const std::string& szFilename, std::string* szReason = nullptr);
  /// Traces every event.
  void DebugDump() const;

 private:
  void Reset();
  void AddOverWeekEnd(const EventReference& event);
  void AddToSingle(ShowNode* node, const EventReference& event);
  void AddInside(ShowNode* node, const EventReference& event);
  void SplitAround(ShowNode* node, const EventReference& event);
  void DeleteIfEmpty(ShowNode* node);

  std::shared_ptr<LinkedList<ShowEvent>> m_Events;
  bool m_Modified = false;
};

}  // namespace vex
