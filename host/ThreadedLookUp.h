#pragma once

#include <memory>
#include <string>

#include "host/Datagrams.h"
#include "host/EventLoop.h"

namespace vex {

/// A question to the name service on a thread of its own, for the service may take many seconds and the show
/// must not wait. The answer reaches the loop by a signal. A question that is let go leaves its thread to end
/// by itself; what the thread then finds is heard by nobody.
class ThreadedLookUp : public HostLookUp {
 public:
  /// Finds an address, and may wait; called on the other thread.
  using Resolver = std::function<bool(const std::string& szHost, uint32_t& address)>;

  ThreadedLookUp(EventLoop& loop, const std::string& szHost, Resolver resolve, HostLookUpHandler handler);
  ~ThreadedLookUp() override;
  ThreadedLookUp(const ThreadedLookUp&) = delete;
  ThreadedLookUp& operator=(const ThreadedLookUp&) = delete;

 private:
  struct Question;

  std::shared_ptr<Question> m_Question;
  std::unique_ptr<Signal> m_Answered;
};

}  // namespace vex
