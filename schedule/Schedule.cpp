#include "schedule/Schedule.h"

#include <utility>

#include "basic/Error.h"
#include "schedule/DebugTrace.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/ShowEventFunctions.h"
#include "show/lists/LinkedListFunctions.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

namespace {

constexpr int32_t WeekSeconds = 604800;
constexpr int32_t WeekDays = 7;

bool IsNull(const Schedule::ShowNode* node) {
  return node && node->Obj()->EventType() == NullEvent;
}

bool Holds(const Schedule::ShowNode& node, const WeekTime::Reference& time) {
  return Required(time).BetweenEquals(node.Obj()->StartTime(), node.Obj()->EndTime());
}

[[noreturn]] void Conflict(int32_t lNumber) {
  throw Error(lNumber, "Schedule.AddShowEvent", "Can't add event -- event conflict");
}

}  // namespace

Schedule::Schedule() {
  Reset();
}

void Schedule::Reset() {
  m_Events = NewLinkedList(NewNullShowEvent(NewWeekTime(0, 0, 0, 0), WeekSeconds));
}

Schedule::EventReference Schedule::FirstShowEvent() const {
  for (ShowNode* node = FirstNode(); node; node = node->NextNode()) {
    if (node->Obj()->EventType() == ShowFileEvent) return node->Obj();
  }
  return nullptr;
}

Schedule::EventReference Schedule::LastShowEvent() const {
  for (ShowNode* node = LastNode(); node; node = node->PreviousNode()) {
    if (node->Obj()->EventType() == ShowFileEvent) return node->Obj();
  }
  return nullptr;
}

Schedule::ShowNode* Schedule::GetNodeByTime(const WeekTime::Reference& newTime) const {
  const WeekTime& time = Required(newTime);
  for (ShowNode* node = FirstNode(); node; node = node->NextNode()) {
    if (time.InRange(node->Obj()->StartTime(), node->Obj()->EndTime())) return node;
  }
  return nullptr;
}

Schedule::EventReference Schedule::AmalgamatedShowEvent(const EventReference& event) const {
  if (!event || event->EventType() != NullEvent) return event;
  const bool boolStartsAtZero = event->StartTime()->TimeVal() == 0;
  if (boolStartsAtZero && event->EndTime()->TimeVal() == 0) return event;
  EventReference joined = event;
  if (boolStartsAtZero && IsNull(LastNode())) {
    joined = NewShowEvent("", LastNode()->Obj()->StartTime(), joined->EndTime());
  }
  if (joined->EndTime()->TimeVal() == 0 && IsNull(FirstNode())) {
    joined = NewShowEvent("", joined->StartTime(), FirstNode()->Obj()->EndTime());
  }
  return joined;
}

void Schedule::AddShowEvent(const EventReference& event) {
  const ShowEvent& added = Required(event);
  ShowNode* const node = GetNodeByTime(added.StartTime());
  if (Required(node).Obj()->EventType() != NullEvent) Conflict(1);
  m_Modified = true;
  if (!Holds(*node, added.EndTime())) {
    AddOverWeekEnd(event);
  } else if (Count() == 1) {
    AddToSingle(node, event);
  } else {
    AddInside(node, event);
  }
}

// The one layout in which a show takes from two null events: its start from the last, its end from the
// first. It becomes the last node.
void Schedule::AddOverWeekEnd(const EventReference& event) {
  ShowNode* const first = FirstNode();
  ShowNode* const last = LastNode();
  const bool boolFits =
      IsNull(first) && IsNull(last) && Holds(*last, event->StartTime()) && Holds(*first, event->EndTime());
  if (!boolFits) Conflict(2);
  last->Obj()->EndTime(event->StartTime());
  first->Obj()->StartTime(event->EndTime());
  m_Events->InsertAfter(last, event);
  DeleteIfEmpty(first);
  DeleteIfEmpty(last);
}

void Schedule::DeleteIfEmpty(ShowNode* node) {
  if (node->Obj()->StartTime()->Equals(node->Obj()->EndTime())) m_Events->DeleteNode(node);
}

void Schedule::AddToSingle(ShowNode* node, const EventReference& event) {
  if (!IsNull(node)) Conflict(3);
  ShowEvent& rest = *node->Obj();
  if (!rest.StartTime()->BetweenEquals(event->StartTime(), event->EndTime())) {
    SplitAround(node, event);
    return;
  }
  rest.StartTime(event->EndTime());
  rest.EndTime(event->StartTime());
  m_Events->InsertAfter(node, event);
}

void Schedule::AddInside(ShowNode* node, const EventReference& event) {
  ShowEvent& free = *node->Obj();
  const bool boolSameStart = event->StartTime()->Equals(free.StartTime());
  const bool boolSameEnd = event->EndTime()->Equals(free.EndTime());
  if (boolSameStart && boolSameEnd) {
    m_Events->InsertAfter(node, event);
    m_Events->DeleteNode(node);
  } else if (boolSameStart) {
    free.StartTime(event->EndTime());
    m_Events->InsertBefore(node, event);
  } else if (boolSameEnd) {
    free.EndTime(event->StartTime());
    m_Events->InsertAfter(node, event);
  } else if (event->StartTime()->Minus(free.StartTime()) <= event->EndTime()->Minus(free.StartTime())) {
    SplitAround(node, event);
  } else {
    throw Error(3, "Schedule.AddShowEvent", "Internal error");
  }
}

void Schedule::SplitAround(ShowNode* node, const EventReference& event) {
  const EventReference after = NewShowEvent("", event->EndTime(), node->Obj()->EndTime());
  node->Obj()->EndTime(event->StartTime());
  m_Events->InsertAfter(node, event);
  m_Events->InsertAfter(node->NextNode(), after);
}

void Schedule::AddShowEventByFile(const std::string& szFilename, WeekTime::Reference startTime,
                                  WeekTime::Reference endTime) {
  try {
    AddShowEvent(NewShowEvent(szFilename, std::move(startTime), std::move(endTime)));
  } catch (const Error& error) {
    if (error.Source.empty()) throw;
    throw Error(error.Number, "Schedule.AddShowEventByFile", error.Description);
  }
}

void Schedule::RemoveShowEvent(ShowNode* node) {
  DebugTrace("Entering Remove Show Event");
  ShowEvent& removed = *Required(node).Obj();
  if (removed.EventType() != ShowFileEvent) {
    throw Error(1, "Schedule.RemoveShowEvent", "Can not remove non-show event");
  }
  m_Modified = true;
  ShowNode* const previous = node->PreviousNode();
  ShowNode* const next = node->NextNode();
  if (IsNull(previous) && IsNull(next)) {
    previous->Obj()->EndTime(next->Obj()->EndTime());
    m_Events->DeleteNode(node);
    m_Events->DeleteNode(next);
  } else if (IsNull(previous)) {
    previous->Obj()->EndTime(removed.EndTime());
    m_Events->DeleteNode(node);
  } else if (IsNull(next)) {
    next->Obj()->StartTime(removed.StartTime());
    m_Events->DeleteNode(node);
  } else {
    removed.EventType(NullEvent);
  }
  if (Count() == 1) Reset();
  DebugDump();
}

int32_t Schedule::CheckAdd(const WeekTime::Reference& startTime, const WeekTime::Reference& endTime) const {
  const ShowNode* const node = GetNodeByTime(startTime);
  if (!IsNull(node) || !Holds(*node, startTime)) return 1;
  if (!Holds(*node, endTime)) return 2;
  if (!startTime->BetweenEquals(node->Obj()->StartTime(), endTime)) return 3;
  return 0;
}

int32_t Schedule::CheckAddSlide(const WeekTime::Reference& startTime, const WeekTime::Reference& endTime,
                                int32_t lNewDay) const {
  const WeekTime& start = Required(startTime);
  const WeekTime& end = Required(endTime);
  const int32_t lDays = (end.Day() - start.Day() + WeekDays) % WeekDays;
  return CheckAdd(NewWeekTime(lNewDay, start.Hour(), start.Minute(), start.Second()),
                  NewWeekTime((lNewDay + lDays) % WeekDays, end.Hour(), end.Minute(), end.Second()));
}

bool Schedule::Save(Files& files, const std::string& szFilename, std::string* szReason) {
  if (!files.Write(szFilename, ScheduleToText(*this) + "\r\n", szReason)) return false;
  DebugDump();
  m_Modified = false;
  return true;
}

void Schedule::DebugDump() const {
  if (!DebugTraced()) return;
  DebugTrace("BEGIN SCHEDULE DUMP");
  for (const ShowNode* node = FirstNode(); node; node = node->NextNode()) {
    const ShowEvent& event = *node->Obj();
    std::string szLine = event.StartTime()->ToString() + " - " + event.EndTime()->ToString();
    if (event.EventType() == ShowFileEvent) szLine += " " + event.Filename();
    DebugTrace(szLine);
  }
  DebugTrace("END SCHEDULE DUMP");
}

}  // namespace vex
