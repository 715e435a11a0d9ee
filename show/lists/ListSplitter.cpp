#include <cstddef>
#include <vector>

#include "show/lists/ListScanner.h"
#include "show/lists/Serialize.h"

namespace vex {

namespace {

constexpr const char* Source = "Serialize.ListFromText";

[[noreturn]] void Fail(int32_t lNumber, const char* szWhat) {
  throw Error(lNumber, Source, std::string("Badly formatted list, ") + szWhat);
}

constexpr size_t None = std::string_view::npos;

/// Cuts the text between a list's outer parentheses into fields. The rules look ahead ("is there any comma,
/// any closing paren from here on"); the last position of each character answers that in one step, so one
/// walk over the text is enough whatever the nesting.
///
/// A closing paren outside an inner list, with no opening one after it, is taken as the end of an inner
/// list that began where the present field began: "a,b),c" is "a,b)" and "c". Commas cut since the last
/// inner list are then taken back. A second one of the kind would lead round in a circle.
class Splitter {
 public:
  Splitter(std::string_view szBody, FieldViews& fields) : m_Body(szBody), m_Fields(fields) {}

  void Split() {
    ListScanner scanner(m_Body);
    size_t position = scanner.Next();
    while (position < m_Body.size() && !m_Finished) {
      if (m_Depth > 0) {
        Inside(position);
      } else {
        Outside(position);
      }
      position = scanner.Next();
    }
    m_Fields.Append(m_Body.substr(m_FieldStart));
  }

 private:
  void Outside(size_t position) {
    switch (m_Body[position]) {
      case ',':
        m_Fields.Append(m_Body.substr(m_FieldStart, position - m_FieldStart));
        m_FieldStart = position + 1;
        return;
      case '(':
        Open(position);
        return;
      default:
        StrayClose(position);
    }
  }

  // A paren matters only while there is a comma to come, counted from the end of the last inner list.
  void Open(size_t position) {
    if (!CommaFrom(m_Mark)) return Finish();
    if (!CloseAfter(position)) Fail(2, "missing closing paren");
    if (!CommaFrom(m_FieldStart > m_Mark ? m_FieldStart : m_Mark)) return Finish();
    m_Depth = 1;
  }

  void StrayClose(size_t position) {
    if (!CommaFrom(m_Mark)) return Finish();
    if (OpenAfter(position)) Fail(3, "unexpected closing paren");
    m_Fields.Truncate(m_MarkCount);
    m_FieldStart = m_MarkFieldStart;
    EndInner(position);
    if (!CommaFrom(m_Mark)) return Finish();
    if (CloseAfter(position)) Fail(3, "unexpected closing paren");
  }

  void Inside(size_t position) {
    switch (m_Body[position]) {
      case '(':
        ++m_Depth;
        break;
      case ')':
        --m_Depth;
        break;
      default:
        return;
    }
    if (m_Depth == 0) {
      EndInner(position);
    } else if (!CloseAfter(position)) {
      Fail(4, "missing closing paren");
    }
  }

  void EndInner(size_t position) {
    m_Mark = position + 1;
    m_MarkCount = m_Fields.Length();
    m_MarkFieldStart = m_FieldStart;
  }

  void Finish() { m_Finished = true; }

  [[nodiscard]] bool CommaFrom(size_t position) { return ComesFrom(',', m_LastComma, position); }
  [[nodiscard]] bool CloseAfter(size_t position) { return ComesFrom(')', m_LastClose, position + 1); }
  [[nodiscard]] bool OpenAfter(size_t position) { return ComesFrom('(', m_LastOpen, position + 1); }

  /// Where a character last stands is looked for once, when first asked; no position is beyond any text.
  struct LastPlace {
    bool Known = false;
    size_t Position = None;
  };

  [[nodiscard]] bool ComesFrom(char character, LastPlace& last, size_t position) const {
    if (!last.Known) last = {true, m_Body.rfind(character)};
    return last.Position != None && last.Position >= position;
  }

  std::string_view m_Body;
  FieldViews& m_Fields;
  size_t m_FieldStart = 0;
  int32_t m_Depth = 0;
  bool m_Finished = false;
  size_t m_Mark = 0;  // behind the last inner list
  int32_t m_MarkCount = 0;
  size_t m_MarkFieldStart = 0;
  LastPlace m_LastComma;
  LastPlace m_LastClose;
  LastPlace m_LastOpen;
};

}  // namespace

FieldViews SplitList(std::string_view szText, int32_t lLowerBound) {
  FieldViews fields(lLowerBound);
  const size_t open = szText.find('(');
  const size_t close = szText.rfind(')');
  if (open == None && close == None) return fields;
  if (open == None || close == None || open > close) Fail(1, "enclosing parens");
  const std::string_view szBody = szText.substr(open + 1, close - open - 1);
  Splitter(szBody, fields).Split();
  return fields;
}

FieldArray ListFromText(std::string_view szText, int32_t lLowerBound) {
  FieldArray fields(lLowerBound);
  for (const std::string_view szField : SplitList(szText, lLowerBound)) fields.Append(std::string(szField));
  return fields;
}

}  // namespace vex
