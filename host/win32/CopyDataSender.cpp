#include "host/win32/CopyDataSender.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

#include "host/DetachedThread.h"
#include "host/win32/WindowNumber.h"

namespace vex {
namespace {

constexpr size_t MostKept = 60000;
constexpr UINT PatienceMs = 5000;
constexpr auto PatienceAtEnd = std::chrono::seconds(1);

struct Message {
  WindowHandle Sender = 0;
  WindowHandle Target = 0;
  uint32_t Data = 0;
  std::string Bytes;
};

void SendNow(const Message& message) {
  COPYDATASTRUCT copy{};
  copy.dwData = message.Data;
  copy.cbData = static_cast<DWORD>(message.Bytes.size());
  copy.lpData = const_cast<char*>(message.Bytes.data());  // the receiver gets a copy
  DWORD_PTR result = 0;
  SendMessageTimeoutA(WindowOf(message.Target), WM_COPYDATA,
                      reinterpret_cast<WPARAM>(WindowOf(message.Sender)), reinterpret_cast<LPARAM>(&copy),
                      SMTO_ABORTIFHUNG, PatienceMs, &result);
}

}  // namespace

/// What both threads hold; it lives as long as the one that lets it go last.
struct CopyDataSender::Outbox {
  std::mutex Guard;
  std::condition_variable Changed;
  std::deque<Message> Messages;  // the first one may be on its way
  bool Stop = false;

  void Add(Message message) {
    const std::lock_guard lock(Guard);
    const WindowHandle target = message.Target;
    Messages.push_back(std::move(message));
    while (Kept(target) > MostKept && DropOldest(target)) continue;
    Changed.notify_all();
  }

  void Work() {
    std::unique_lock lock(Guard);
    while (true) {
      Changed.wait(lock, [this] { return Stop || !Messages.empty(); });
      if (Stop) return;
      const Message message = Messages.front();
      lock.unlock();
      SendNow(message);
      lock.lock();
      if (!Messages.empty()) Messages.pop_front();
      Changed.notify_all();
    }
  }

 private:
  [[nodiscard]] size_t Kept(WindowHandle target) const {
    size_t total = 0;
    for (size_t i = 1; i < Messages.size(); ++i)
      if (Messages[i].Target == target) total += Messages[i].Bytes.size();
    return total;
  }
  /// Neither the first message, which is on its way, nor the newest goes.
  bool DropOldest(WindowHandle target) {
    for (size_t i = 1; i + 1 < Messages.size(); ++i) {
      if (Messages[i].Target != target) continue;
      Messages.erase(Messages.begin() + static_cast<std::ptrdiff_t>(i));
      return true;
    }
    return false;
  }
};

CopyDataSender::~CopyDataSender() {
  if (!m_Outbox) return;
  std::unique_lock lock(m_Outbox->Guard);
  m_Outbox->Changed.wait_for(lock, PatienceAtEnd, [this] { return m_Outbox->Messages.empty(); });
  m_Outbox->Stop = true;
  m_Outbox->Messages.clear();
  m_Outbox->Changed.notify_all();
}

void CopyDataSender::Send(WindowHandle sender, WindowHandle target, const CopyData& copy) {
  if (!m_Outbox) {
    m_Outbox = std::make_shared<Outbox>();
    StartDetached([outbox = m_Outbox] { outbox->Work(); });
  }
  const bool boolBytes = copy.Size > 0 && copy.Bytes != nullptr;
  m_Outbox->Add({sender, target, copy.Data, boolBytes ? std::string(copy.Bytes, copy.Size) : std::string()});
}

bool CopyDataSender::Unsent(WindowHandle target) const {
  if (!m_Outbox) return false;
  const std::lock_guard lock(m_Outbox->Guard);
  return std::ranges::any_of(m_Outbox->Messages,
                             [&](const Message& message) { return message.Target == target; });
}

}  // namespace vex
