#pragma once

#include <string>
#include <string_view>

#include "components/com/ComPointer.h"

namespace vex {

/// A value as components take and give it. Components look at the type of what they are handed, so each maker
/// here makes exactly one; what they give back is read as the type that is wanted, converted by the machine's
/// own rules (halves to even). A value that cannot be converted raises "Type mismatch" or "Overflow".
class Variant {
 public:
  Variant() { VariantInit(&m_Value); }
  ~Variant() { VariantClear(&m_Value); }
  Variant(const Variant& other);
  Variant(Variant&& other) noexcept : Variant() { std::swap(m_Value, other.m_Value); }
  Variant& operator=(Variant other) noexcept {
    std::swap(m_Value, other.m_Value);
    return *this;
  }

  [[nodiscard]] static Variant Long(int32_t lValue);     // I4
  [[nodiscard]] static Variant Integer(int16_t value);   // I2
  [[nodiscard]] static Variant Byte(uint8_t value);      // UI1
  [[nodiscard]] static Variant ByteAt(uint8_t& value);   // UI1 by reference: the component may change it
  [[nodiscard]] static Variant Double(double value);     // R8
  [[nodiscard]] static Variant Boolean(bool boolValue);  // BOOL
  [[nodiscard]] static Variant Text(std::string_view szText);  // BSTR
  [[nodiscard]] static Variant Object(IDispatch* object);      // an object, or none

  [[nodiscard]] const VARIANT& Get() const { return m_Value; }
  /// Where a call puts the value that it gives.
  [[nodiscard]] VARIANT* Put();

  /// No value, or no object.
  [[nodiscard]] bool IsNothing() const;
  [[nodiscard]] int32_t AsLong() const;
  [[nodiscard]] double AsDouble() const;
  [[nodiscard]] bool AsBoolean() const;
  /// No value is the empty text.
  [[nodiscard]] std::string AsText() const;
  /// Empty for no object; another value is a type mismatch.
  [[nodiscard]] ComPointer<IDispatch> AsObject() const;

 private:
  explicit Variant(VARTYPE type) : Variant() { m_Value.vt = type; }
  [[nodiscard]] Variant Converted(VARTYPE type) const;

  VARIANT m_Value;
};

/// The object in a value that a component passes, by reference or not; empty where there is none.
[[nodiscard]] ComPointer<IDispatch> ObjectIn(const VARIANT& value);

}  // namespace vex
