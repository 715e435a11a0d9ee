#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "show/lists/ListShape.h"
#include "show/lists/Serialize.h"

namespace vex {

namespace {

constexpr const char* Source = "Serialize.ListFromText";
constexpr size_t None = std::string_view::npos;

[[noreturn]] void Fail(int32_t lNumber, const char* szWhat) {
  throw Error(lNumber, Source, std::string("Badly formatted list, ") + szWhat);
}

/// Where a character last stands; looked for once, when first asked. It answers "is there any from here
/// on" in one step, which the rules ask at every field.
class LastPlace {
 public:
  LastPlace(std::string_view szText, char character) : m_Text(szText), m_Character(character) {}

  [[nodiscard]] bool IsFrom(size_t position) {
    if (!m_Known) m_Position = m_Text.rfind(m_Character);
    m_Known = true;
    return m_Position != None && m_Position >= position;
  }

 private:
  std::string_view m_Text;
  size_t m_Position = None;
  char m_Character;
  bool m_Known = false;
};

/// Cuts the text between a list's outer parentheses into fields in one walk, whatever the nesting.
///
/// Outside an inner list each look ahead sees the next parens even when a comma stands before them, so a
/// fault behind a field is the failure of the whole list. A closing paren with no opening one after it is
/// taken as the end of an inner list that began where the present field began: "a,b),c" is "a,b)" and "c".
/// Commas cut since the last inner list are then taken back, which is why that place is marked. Looking
/// from the end of such a list onto another closing paren would begin the same field again for ever.
class Splitter {
 public:
  explicit Splitter(std::string_view szBody)
      : m_Body(szBody), m_LastComma(szBody, ','), m_LastOpen(szBody, '('), m_LastClose(szBody, ')') {}

  /// Where each field ends.
  [[nodiscard]] std::vector<uint32_t> Split() {
    constexpr size_t blockSize = ListShape::BlockSize;
    size_t block = 0;
    for (; block + blockSize <= m_Body.size() && !m_Finished; block += blockSize) {
      Walk(block, ShapeOf(m_Body.data() + block));
    }
    if (!m_Finished && block < m_Body.size()) {
      std::array<char, blockSize> rest{};
      std::memcpy(rest.data(), m_Body.data() + block, m_Body.size() - block);
      Walk(block, ShapeOf(rest.data()));
    }
    if (m_Depth > 0) Fail(4, "missing closing paren");
    m_Ends.push_back(static_cast<uint32_t>(m_Body.size()));
    return std::move(m_Ends);
  }

 private:
  void Walk(size_t block, ListShape shape) {
    if (m_Depth == 0 && shape.Parens == 0) {
      for (uint64_t commas = shape.Commas; commas != 0; commas &= commas - 1) {
        Cut(block + static_cast<size_t>(std::countr_zero(commas)));
      }
      return;
    }
    while (!m_Finished) {
      const uint64_t next = shape.Parens | (m_Depth == 0 ? shape.Commas : 0);
      if (next == 0) return;
      Meet(block + static_cast<size_t>(std::countr_zero(next)));
      const uint64_t behind = ~(next ^ (next - 1));
      shape.Commas &= behind;
      shape.Parens &= behind;
    }
  }

  void Meet(size_t position) {
    const char character = m_Body[position];
    if (m_Depth > 0) {
      m_Depth += character == '(' ? 1 : -1;
      if (m_Depth == 0) Mark(position + 1);
    } else if (character == ',') {
      Cut(position);
    } else if (character == '(') {
      Open(position);
    } else {
      StrayClose(position);
    }
  }

  void Cut(size_t comma) {
    if (m_Ends.size() == m_Ends.capacity()) Grow(comma);
    m_Ends.push_back(static_cast<uint32_t>(comma));
  }

  // A paren counts only while there is a comma to come, seen from the end of the last inner list and from
  // the start of the present field.
  void Open(size_t position) {
    if (!m_LastComma.IsFrom(m_Mark)) return Finish();
    if (!m_LastClose.IsFrom(position)) Fail(2, "missing closing paren");
    const size_t fieldStart = m_Ends.empty() ? 0 : size_t{m_Ends.back()} + 1;
    if (!m_LastComma.IsFrom(fieldStart)) return Finish();
    m_Depth = 1;
  }

  void StrayClose(size_t position) {
    if (!m_LastComma.IsFrom(m_Mark)) return Finish();
    if (m_LastOpen.IsFrom(position)) Fail(3, "unexpected closing paren");
    m_Ends.resize(m_MarkCount);
    Mark(position + 1);
    if (!m_LastComma.IsFrom(m_Mark)) return Finish();
    if (m_LastClose.IsFrom(m_Mark)) Fail(3, "unexpected closing paren");
  }

  void Mark(size_t position) {
    m_Mark = position;
    m_MarkCount = m_Ends.size();
  }

  void Finish() { m_Finished = true; }

  // Room for the fields that the rest of the text would hold if it were like the part behind; never more
  // than eight times what is there, since the rest may be quite unlike.
  void Grow(size_t position) {
    const size_t count = m_Ends.size();
    constexpr size_t first = 16;
    const auto expected = static_cast<size_t>(
        static_cast<double>(count) * static_cast<double>(m_Body.size()) / static_cast<double>(position + 1));
    m_Ends.reserve(std::max(first, std::clamp(expected + expected / 16, count * 2, count * 8)));
  }

  std::string_view m_Body;
  std::vector<uint32_t> m_Ends;
  size_t m_Depth = 0;
  bool m_Finished = false;
  size_t m_Mark = 0;  // behind the last inner list
  size_t m_MarkCount = 0;
  LastPlace m_LastComma;
  LastPlace m_LastOpen;
  LastPlace m_LastClose;
};

}  // namespace

FieldViews SplitList(std::string_view szText, int32_t lLowerBound) {
  const size_t open = szText.find('(');
  const size_t close = szText.rfind(')');
  if (open == None && close == None) return FieldViews(lLowerBound);
  if (open == None || close == None || open > close) Fail(1, "enclosing parens");
  const std::string_view szBody = szText.substr(open + 1, close - open - 1);
  if (szBody.size() > std::numeric_limits<uint32_t>::max()) throw PlatformError(ErrorOverflow);
  return {lLowerBound, szBody, Splitter(szBody).Split()};
}

FieldArray ListFromText(std::string_view szText, int32_t lLowerBound) {
  const FieldViews views = SplitList(szText, lLowerBound);
  std::vector<std::string> fields;
  fields.reserve(static_cast<size_t>(views.Length()));
  for (const std::string_view szField : views) fields.emplace_back(szField);
  return {lLowerBound, std::move(fields)};
}

}  // namespace vex
