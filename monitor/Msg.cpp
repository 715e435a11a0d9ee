#include "monitor/Msg.h"

#include <algorithm>

#include "basic/Error.h"
#include "basic/Number.h"
#include "monitor/MsgHook.h"

namespace vex {

namespace {

constexpr size_t TypeDigits = 2;

}  // namespace

std::string MessageTypeText(int32_t lMessageType) {
  if (lMessageType < 1 || lMessageType > 99) return "00";
  std::string szType = FormatNumber(lMessageType);
  return szType.size() < TypeDigits ? "0" + szType : szType;
}

bool SendVexMessage(Windows& windows, WindowHandle senderHwnd, WindowHandle targetHwnd, int32_t lMessageType,
                    const std::string& szText) {
  const std::string szPayload = MessageTypeText(lMessageType) + szText;
  CopyData copy;
  copy.Data = VexMessageData;
  copy.Size = static_cast<uint32_t>(szPayload.size() + 1);
  copy.Bytes = szPayload.c_str();
  const SendResult result = windows.SendCopyData(senderHwnd, targetHwnd, copy);
  if (result == SendResult::TooLong) {
    throw Error(ErrorInvalidCall, "Msg.SendVexMessage",
                "Message of " + FormatNumber(static_cast<int32_t>(szPayload.size())) +
                    " characters is too long to be sent");
  }
  return result == SendResult::Sent;
}

void ReceiveVexMessage(uintptr_t wParam, const CopyData* copy, Queue<VexMessage>& queue) {
  const std::string szMessage = CopyDataToString(copy);
  VexMessage message;
  message.SenderHwnd(static_cast<WindowHandle>(wParam));
  message.MessageType(MessageTypeOf(szMessage));
  message.Text(MessageTextOf(szMessage));
  queue.Enqueue(std::move(message));
}

std::string CopyDataToString(const CopyData* copy) {
  if (copy == nullptr || copy->Size == 0 || copy->Bytes == nullptr) return {};
  const std::string_view szBytes(copy->Bytes, copy->Size);
  return std::string(szBytes.substr(0, szBytes.find('\0')));
}

int32_t MessageTypeOf(std::string_view szMessage) {
  return RoundToLong(LeadingNumber(szMessage.substr(0, TypeDigits)));
}

std::string MessageTextOf(std::string_view szMessage) {
  return std::string(szMessage.substr(std::min(TypeDigits, szMessage.size())));
}

HookRecords::HookRecords(Windows& windows)
    : m_Windows(windows),
      m_Procedure(std::make_shared<vex::WindowProcedure>(
          [this](const WindowMessage& message) { return WindowProcedure(message); })) {}

HookRecords::~HookRecords() {
  while (!m_Records.empty()) Remove(*m_Records.back().Hook);
}

void HookRecords::Add(WindowHandle hWnd, MsgHook& hook) {
  m_Records.push_back({hWnd, m_Windows.ExchangeProcedure(hWnd, m_Procedure), &hook});
}

void HookRecords::Remove(const MsgHook& hook) {
  const auto record = std::find_if(m_Records.begin(), m_Records.end(),
                                   [&](const Record& candidate) { return candidate.Hook == &hook; });
  if (record == m_Records.end()) return;
  const Record removed = *record;
  m_Records.erase(record);
  if (m_Windows.Exists(removed.hWnd)) m_Windows.ExchangeProcedure(removed.hWnd, removed.Previous);
}

const HookRecords::Record* HookRecords::Find(WindowHandle hWnd) const {
  const auto record = std::find_if(m_Records.begin(), m_Records.end(),
                                   [&](const Record& candidate) { return candidate.hWnd == hWnd; });
  return record == m_Records.end() ? nullptr : &*record;
}

bool HookRecords::Holds(WindowHandle hWnd, const MsgHook* hook) const {
  const Record* record = Find(hWnd);
  return record != nullptr && record->Hook == hook;
}

// A handler may unhook the window or destroy its hook, so record and handlers are copied, and the hook is
// looked for anew after every call that can reach a handler.
intptr_t HookRecords::WindowProcedure(const WindowMessage& message) {
  const Record* found = Find(message.hWnd);
  if (found == nullptr) return 0;
  const Record record = *found;
  if (!record.Hook->Enabled()) return m_Windows.CallProcedure(record.Previous, message);

  intptr_t result = 0;
  bool boolHandled = false;
  if (const auto before = record.Hook->BeforeMessage) before(message, result, boolHandled);
  if (boolHandled) return result;
  result = m_Windows.CallProcedure(record.Previous, message);
  if (!Holds(message.hWnd, record.Hook)) return result;
  if (const auto after = record.Hook->AfterMessage) after(message, result);
  return result;
}

}  // namespace vex
