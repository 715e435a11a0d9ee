#include "tray/web/LoginLimits.h"

#include <algorithm>

#include "tray/web/Addresses.h"

namespace vex {
namespace {

constexpr size_t MostSources = 1024;
constexpr int FreeForOne = 5;
constexpr int FreeForAll = 50;
constexpr std::chrono::seconds FirstWait{30};
constexpr std::chrono::seconds LongestWait{900};
constexpr std::chrono::hours Forgotten{1};

}  // namespace

std::chrono::seconds LoginLimits::Wait(const std::string& szAddress, Clock::time_point now) const {
  auto until = m_All.Until;
  const auto found = m_Sources.find(SourceOf(szAddress));
  if (found != m_Sources.end()) until = std::max(until, found->second.Until);
  if (until <= now) return std::chrono::seconds{0};
  return std::chrono::ceil<std::chrono::seconds>(until - now);
}

void LoginLimits::Count(Record& record, int free, Clock::time_point now) {
  if (now - record.Last >= Forgotten) record.Failures = 0;
  record.Failures++;
  record.Last = now;
  if (record.Failures < free) return;
  const int doublings = std::min(record.Failures - free, 10);
  record.Until = now + std::min(FirstWait * (1 << doublings), LongestWait);
}

void LoginLimits::Failed(const std::string& szAddress, Clock::time_point now) {
  const auto szSource = SourceOf(szAddress);
  if (m_Sources.count(szSource) == 0) MakeRoom();
  Count(m_Sources[szSource], FreeForOne, now);
  Count(m_All, FreeForAll, now);
}

void LoginLimits::Succeeded(const std::string& szAddress) {
  m_Sources.erase(SourceOf(szAddress));
}

void LoginLimits::MakeRoom() {
  if (m_Sources.size() < MostSources) return;
  m_Sources.erase(std::min_element(
      m_Sources.begin(), m_Sources.end(),
      [](const auto& left, const auto& right) { return left.second.Last < right.second.Last; }));
}

}  // namespace vex
