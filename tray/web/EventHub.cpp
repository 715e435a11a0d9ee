#include "tray/web/EventHub.h"

#include <algorithm>

namespace vex {
namespace {

constexpr size_t MostLines = 200;
constexpr size_t MostKeys = 128;

}  // namespace

std::string AsEvent(const std::string& szEvent, const std::string& szJson) {
  std::string szText = "event: " + szEvent + "\ndata: " + szJson;
  // Between the parts of a JSON text a line break is a blank; inside its texts there is none.
  std::replace_if(
      szText.begin() + static_cast<std::ptrdiff_t>(szEvent.size()) + 8, szText.end(),
      [](char letter) { return letter == '\n' || letter == '\r'; }, ' ');
  return szText + "\n\n";
}

void EventHub::Listener::Add(const std::string& szKey, const std::shared_ptr<const std::string>& text) {
  const std::lock_guard lock(m_Mutex);
  if (m_Closed) return;
  if (szKey.empty()) {
    if (m_Lines == MostLines) LeaveOutOldest();
    m_Lines++;
    m_Waiting.push_back({szKey, text});
  } else {
    const auto older = std::find_if(m_Waiting.begin(), m_Waiting.end(),
                                    [&szKey](const Entry& entry) { return entry.Key == szKey; });
    if (older != m_Waiting.end()) {
      older->Text = text;
    } else if (m_Waiting.size() - m_Lines < MostKeys) {
      m_Waiting.push_back({szKey, text});
    }
  }
  m_Wake.notify_one();
}

void EventHub::Listener::LeaveOutOldest() {
  m_Waiting.erase(
      std::find_if(m_Waiting.begin(), m_Waiting.end(), [](const Entry& entry) { return entry.Key.empty(); }));
  m_Lines--;
  m_Lost++;
}

void EventHub::Listener::Close() {
  const std::lock_guard lock(m_Mutex);
  m_Closed = true;
  m_Wake.notify_one();
}

bool EventHub::Listener::Next(std::string& szEvents, std::chrono::milliseconds longest) {
  szEvents.clear();
  std::unique_lock lock(m_Mutex);
  m_Wake.wait_for(lock, longest, [this] { return m_Closed || !m_Waiting.empty(); });
  if (m_Lost != 0) szEvents += AsEvent("lost", "{\"lines\":" + std::to_string(m_Lost) + "}");
  for (const auto& entry : m_Waiting) szEvents += *entry.Text;
  m_Waiting.clear();
  m_Lines = 0;
  m_Lost = 0;
  return !m_Closed || !szEvents.empty();
}

std::shared_ptr<EventHub::Listener> EventHub::Join() {
  const std::lock_guard lock(m_Mutex);
  if (m_Closed || m_Listeners.size() >= m_Most) return nullptr;
  auto listener = std::make_shared<Listener>();
  m_Listeners.insert(listener);
  return listener;
}

void EventHub::Leave(const std::shared_ptr<Listener>& listener) {
  const std::lock_guard lock(m_Mutex);
  m_Listeners.erase(listener);
}

void EventHub::Publish(const std::string& szEvent, const std::string& szJson, const std::string& szKey) {
  const auto text = std::make_shared<const std::string>(AsEvent(szEvent, szJson));
  const auto szReplaces = szEvent == "line" ? std::string() : szEvent + ' ' + szKey;
  const std::lock_guard lock(m_Mutex);
  for (const auto& listener : m_Listeners) listener->Add(szReplaces, text);
}

void EventHub::Close() {
  const std::lock_guard lock(m_Mutex);
  m_Closed = true;
  for (const auto& listener : m_Listeners) listener->Close();
}

size_t EventHub::Count() const {
  const std::lock_guard lock(m_Mutex);
  return m_Listeners.size();
}

}  // namespace vex
