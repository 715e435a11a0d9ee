#include "host/linux/UnsentMessages.h"

#include <algorithm>
#include <string_view>

#include "host/linux/CopyDataWire.h"

namespace vex {
namespace {

constexpr std::string_view StatusType = "07";
constexpr std::string_view LineEnd = "\r\n";

}  // namespace

size_t UnsentMessages::Message::Characters() const {
  return Bytes.size() - (!Bytes.empty() && Bytes.back() == '\0' ? 1 : 0);
}

bool UnsentMessages::Message::IsStatus() const {
  return std::string_view(Bytes.data(), Bytes.size()).starts_with(StatusType);
}

bool UnsentMessages::Add(WindowHandle sender, const CopyData& copy) {
  Message message{sender, copy.Data, {}};
  if (copy.Size > 0) message.Bytes.assign(copy.Bytes, copy.Bytes + copy.Size);
  if (message.Characters() > MostCharacters && !message.IsStatus()) return false;
  m_Characters += message.Characters();
  const bool boolStatus = message.IsStatus();
  m_Messages.push_back(std::move(message));
  if (boolStatus) m_Status.push_back(std::prev(m_Messages.end()));
  Trim();
  return true;
}

std::vector<uint8_t> UnsentMessages::FirstDatagram() const {
  const Message& first = m_Messages.front();
  return EncodeCopyData(first.Sender,
                        {first.Data, static_cast<uint32_t>(first.Bytes.size()), first.Bytes.data()});
}

void UnsentMessages::RemoveFirst() {
  if (!m_Status.empty() && m_Status.front() == m_Messages.begin()) m_Status.pop_front();
  Remove(m_Messages.begin());
}

void UnsentMessages::Trim() {
  while (m_Characters > MostCharacters) {
    if (m_Status.empty())
      Remove(m_Messages.begin());
    else
      DropOldestLine();
  }
}

void UnsentMessages::DropOldestLine() {
  const Position message = m_Status.front();
  auto& bytes = message->Bytes;
  const auto text = bytes.begin() + StatusType.size();
  const auto end = std::search(text, bytes.end(), LineEnd.begin(), LineEnd.end());
  if (end == bytes.end()) {
    m_Status.pop_front();
    Remove(message);
    return;
  }
  const auto next = end + LineEnd.size();
  m_Characters -= static_cast<size_t>(next - text);
  bytes.erase(text, next);
}

void UnsentMessages::Remove(Position message) {
  m_Characters -= message->Characters();
  m_Messages.erase(message);
}

}  // namespace vex
