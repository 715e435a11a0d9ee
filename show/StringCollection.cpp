#include "show/StringCollection.h"

#include <limits>

#include "show/lists/Serialize.h"

namespace vex {

void StringCollection::Add(std::string_view szName) {
  BreakSeal();
  const Span span = Append(szName);
  if (m_Count < FirstCount) {
    m_First[m_Count] = span;
  } else {
    m_Rest.push_back(span);
  }
  ++m_Count;
}

void StringCollection::Replace(int32_t lIndex, std::string_view szName) {
  const size_t position = Position(lIndex);
  BreakSeal();
  (position < FirstCount ? m_First[position] : m_Rest[position - FirstCount]) = Append(szName);
}

void StringCollection::Clear() {
  BreakSeal();
  m_Text.clear();
  m_Rest.clear();
  m_Count = 0;
}

void StringCollection::Reserve(size_t names, size_t characters) {
  if (m_Count + names > FirstCount) m_Rest.reserve(m_Count + names - FirstCount);
  m_Text.reserve(m_Text.size() + characters);
}

StringCollection::Span StringCollection::Append(std::string_view szName) {
  const size_t offset = m_Text.size();
  if (szName.size() > std::numeric_limits<uint32_t>::max() - offset) throw PlatformError(ErrorOverflow);
  m_Text.append(szName);
  return {static_cast<uint32_t>(offset), static_cast<uint32_t>(szName.size())};
}

void StringCollection::AddEscapedField(std::string_view szField) {
  // Nearly every name is plain; only an escape is worth a text of its own.
  if (szField.find('*') == std::string_view::npos) {
    Add(szField);
  } else {
    Add(UnescapeText(szField));
  }
}

}  // namespace vex
