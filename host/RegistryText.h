#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/Registry.h"

namespace vex {

/// What is wrong with one line of a settings file; lines count from 1.
struct RegistryTextError {
  int32_t Line = 0;
  std::string Message;
};

struct RegistryTextValue {
  std::string Name;
  RegistryKind Kind = RegistryKind::None;  ///< String or DWord
  std::string Text;                        ///< of a String, single-byte
  uint32_t Number = 0;                     ///< of a DWord
};

struct RegistryTextKey {
  std::string Subkey;                               ///< below the current user, "Software\Brillara"
  std::map<std::string, RegistryTextValue> Values;  ///< by name in lower case
};

/// A settings file as the registry editor exports it (version 5.00 or REGEDIT4), where a machine has no
/// registry of its own. Keys of the current user and their dword and text values are understood; comments,
/// other kinds of value, unnamed values, deletions and other roots are passed over and kept. Names compare
/// without case; where a value stands twice the last one holds.
///
/// The text is changed line by line: what is not set stays as it was to the byte, with its encoding (UTF-8 or
/// UTF-16LE with a mark, UTF-8 without; a REGEDIT4 file that is no UTF-8 is single-byte) and its line ends. A
/// line that cannot be understood is an error, is passed over and kept; all the others hold.
class RegistryText {
 public:
  /// A text with nothing but the first line of version 5.00, in UTF-8.
  RegistryText();
  /// The bytes of a settings file; none at all are the empty text.
  explicit RegistryText(std::string_view szBytes);

  [[nodiscard]] const std::vector<RegistryTextError>& Errors() const { return m_Errors; }
  /// By subkey in lower case. Only keys that stand in the text, not the ones above them.
  [[nodiscard]] const std::map<std::string, RegistryTextKey>& Keys() const { return m_Keys; }

  /// True for a key of the text and every key above one; "" is the root itself.
  [[nodiscard]] bool HasKey(std::string_view szSubkey) const;
  /// Null when there is no such value that is understood.
  [[nodiscard]] const RegistryTextValue* Find(std::string_view szSubkey, std::string_view szName) const;

  /// These three raise ErrorInvalidCall for a line end or a zero inside a name or text.
  void AddKey(const std::string& szSubkey);
  /// Sets a value in its place, whatever kind it was, or as the last one of its key, made where missing.
  void SetLong(const std::string& szSubkey, const std::string& szName, uint32_t number);
  void SetText(const std::string& szSubkey, const std::string& szName, const std::string& szText);

  /// The whole file.
  [[nodiscard]] std::string Bytes() const;

 private:
  enum class Encoding { Utf8, Utf8WithMark, Utf16, SingleByte };
  /// Where a value stands for the last time, understood or not.
  struct Place {
    size_t First = 0;
    size_t Count = 0;
  };
  struct Section {
    size_t Insert = 0;  // where the next value may be put
    std::map<std::string, Place> Values;
  };

  enum class Where { Nowhere, PassedOver, InKey };

  void Decode(std::string_view szBytes);
  void SplitLines(std::string_view szText);
  void Read();
  void ReadSection(std::string_view szContent, size_t line);
  /// How many lines it took.
  size_t ReadValue(std::string_view szContent, size_t line);
  bool ReadData(std::string_view szRest, size_t line, RegistryTextValue& value);
  [[nodiscard]] size_t LinesOfValue(size_t line) const;
  void Complain(size_t line, const std::string& szMessage);
  void EndLastLine(size_t count);
  void SetLine(const std::string& szSubkey, const std::string& szName, const std::string& szContent);

  Encoding m_Encoding = Encoding::Utf8;
  std::string m_LineEnd = "\n";
  std::vector<std::string> m_Lines;  // with their ends, in UTF-8
  Where m_Where = Where::Nowhere;    // while reading: the section that the line stands in
  std::string m_Current;             // and its subkey in lower case
  std::map<std::string, RegistryTextKey> m_Keys;
  std::map<std::string, Section> m_Sections;
  std::vector<RegistryTextError> m_Errors;
};

}  // namespace vex
