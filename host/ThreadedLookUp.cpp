#include "host/ThreadedLookUp.h"

#include <mutex>
#include <system_error>
#include <utility>

#include "host/DetachedThread.h"

namespace vex {

/// What both threads hold; it lives as long as the one that lets it go last.
struct ThreadedLookUp::Question {
  std::mutex Guard;
  Signal* Answered = nullptr;  ///< none once nobody waits for the answer
  std::optional<uint32_t> Address;

  void Answer(std::optional<uint32_t> address) {
    const std::lock_guard lock(Guard);
    Address = address;
    if (Answered != nullptr) Answered->Raise();
  }
};

ThreadedLookUp::ThreadedLookUp(EventLoop& loop, const std::string& szHost, Resolver resolve,
                               HostLookUpHandler handler)
    : m_Question(std::make_shared<Question>()),
      m_Answered(loop.NewSignal([question = m_Question, handler = std::move(handler)] {
        std::unique_lock lock(question->Guard);
        const auto address = question->Address;
        lock.unlock();
        handler(address);
      })) {
  m_Question->Answered = m_Answered.get();
  try {
    StartDetached([question = m_Question, szHost, resolve = std::move(resolve)] {
      uint32_t address = 0;
      const bool boolFound = resolve(szHost, address);
      question->Answer(boolFound ? std::optional(address) : std::nullopt);
    });
  } catch (const std::system_error&) {
    m_Question->Answer(std::nullopt);  // a machine without room for a thread knows no names either
  }
}

ThreadedLookUp::~ThreadedLookUp() {
  const std::lock_guard lock(m_Question->Guard);
  m_Question->Answered = nullptr;
}

}  // namespace vex
