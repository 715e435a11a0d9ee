#include "show/ShowReader.h"

#include <utility>

#include "basic/Error.h"
#include "show/ShowFunctions.h"

namespace vex {

namespace {

std::shared_ptr<const std::string> ContentsOf(const Show& show) {
  try {
    return std::make_shared<const std::string>(ShowToText(show));
  } catch (const Error&) {
    return nullptr;  // it can be read but not written
  }
}

}  // namespace

std::shared_ptr<Show> ShowReader::Read(std::string_view szFileBytes) {
  const bool boolSameBytes = m_Contents && szFileBytes == m_LastBytes;
  if (boolSameBytes && SpareIsFresh()) {
    m_Spare->Monitoring(nullptr);
    return m_Spare;
  }
  m_Spare.reset();
  auto show = ShowFromText(szFileBytes);
  if (!boolSameBytes) {
    m_Contents = show ? ContentsOf(*show) : nullptr;
    m_LastBytes = m_Contents ? szFileBytes : std::string_view();
  }
  if (m_Contents) {
    show->Seal(m_Contents);
    m_Spare = show;
  }
  return show;
}

bool ShowReader::SpareIsFresh() const {
  return m_Spare && m_Spare.use_count() == 1 && m_Spare->AsRead();
}

}  // namespace vex
