#include "components/recorded/SequenceFaults.h"

#include <algorithm>

#include "basic/Error.h"

namespace vex {

void SequenceFaults::Inject(const std::string& szFile, const std::string& szCall, const std::string& szText) {
  m_Faults.push_back({szFile, szCall, szText});
  if (Injected) Injected();
}

bool SequenceFaults::Wait(const std::string& szFile) const {
  return std::any_of(m_Faults.begin(), m_Faults.end(),
                     [&](const Fault& fault) { return fault.File == szFile; });
}

void SequenceFaults::Check(const std::string& szFile, std::string_view szCall) {
  const auto fault = std::find_if(m_Faults.begin(), m_Faults.end(), [&](const Fault& candidate) {
    return candidate.File == szFile && candidate.Call == szCall;
  });
  if (fault == m_Faults.end()) return;
  const std::string szText = fault->Text;
  m_Faults.erase(fault);
  throw Error(1, "Sequence", szText);
}

}  // namespace vex
