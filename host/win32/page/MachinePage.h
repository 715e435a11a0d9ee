#pragma once

#include <string>
#include <string_view>

namespace vex {

/// A code page of the machine by its number, as the machine converts. Of the pages that a machine may have
/// for its ANSI text those of the West, of the Far East and UTF-8 itself are alike to whoever asks here.
class MachinePage {
 public:
  explicit MachinePage(unsigned number) : m_Number(number) {}

  /// The ANSI code page; it stays the same for as long as the program runs.
  static const MachinePage& Ansi();

  /// False, with nothing appended, where the page has no bytes that come back as the character.
  [[nodiscard]] bool Append(char32_t character, std::string& szBytes) const;
  [[nodiscard]] std::u16string ToUtf16(std::string_view szBytes) const;
  [[nodiscard]] bool IsLead(char byte) const;
  [[nodiscard]] std::string Fold(std::string_view szBytes) const;
  [[nodiscard]] std::string Name() const;

 private:
  unsigned m_Number;
};

}  // namespace vex
