#include "tools/authoring/JsonObject.h"

#include <limits>
#include <utility>

#include "basic/Error.h"
#include "host/CodePage.h"

namespace vex {

namespace {

std::string SingleByte(const nlohmann::ordered_json& value, const std::string& szPlace) {
  if (!value.is_string()) RefuseJson(szPlace, "must be a text");
  std::string szText;
  if (!Utf8ToAnsi(value.get_ref<const std::string&>(), szText)) {
    RefuseJson(szPlace, "holds a character outside " + CodePageName());
  }
  return szText;
}

const nlohmann::ordered_json& List(const nlohmann::ordered_json& value, const std::string& szPlace) {
  if (!value.is_array()) RefuseJson(szPlace, "must be a list");
  return value;
}

std::string ItemPlace(const std::string& szPlace, size_t index) {
  return szPlace + "[" + std::to_string(index) + "]";
}

}  // namespace

void RefuseJson(const std::string& szPlace, const std::string& szWhat) {
  throw Error(ErrorTypeMismatch, "", szPlace + ": " + szWhat);
}

JsonObject::JsonObject(const nlohmann::ordered_json& value, std::string szPlace)
    : m_Value(&value), m_Place(std::move(szPlace)) {
  if (!value.is_object()) RefuseJson(m_Place.empty() ? "the show" : m_Place, "must be an object, { ... }");
}

bool JsonObject::Flag(const char* szName, bool boolDefault) {
  const auto* const value = Value(szName);
  if (!value) return boolDefault;
  if (!value->is_boolean()) RefuseJson(PlaceOf(szName), "must be true or false");
  return value->get<bool>();
}

int32_t JsonObject::Number(const char* szName, int32_t lDefault) {
  const auto* const value = Value(szName);
  if (!value) return lDefault;
  constexpr int64_t smallest = std::numeric_limits<int32_t>::min();
  constexpr int64_t greatest = std::numeric_limits<int32_t>::max();
  const bool boolFits =
      value->is_number_unsigned()  ? value->get<uint64_t>() <= static_cast<uint64_t>(greatest)
      : value->is_number_integer() ? value->get<int64_t>() >= smallest && value->get<int64_t>() <= greatest
                                   : false;
  if (!boolFits) RefuseJson(PlaceOf(szName), "must be a whole number of 32 bits");
  return value->get<int32_t>();
}

std::string JsonObject::Text(const char* szName) {
  const auto* const value = Value(szName);
  return value ? SingleByte(*value, PlaceOf(szName)) : std::string();
}

std::vector<std::string> JsonObject::Texts(const char* szName) {
  std::vector<std::string> texts;
  const auto* const value = Value(szName);
  if (!value) return texts;
  for (const auto& item : List(*value, PlaceOf(szName))) {
    texts.push_back(SingleByte(item, ItemPlace(PlaceOf(szName), texts.size())));
  }
  return texts;
}

const nlohmann::ordered_json* JsonObject::Value(const char* szName) {
  m_Asked.insert(szName);
  const auto found = m_Value->find(szName);
  return found == m_Value->end() || found->is_null() ? nullptr : &*found;
}

std::vector<JsonObject> JsonObject::Objects(const char* szName) {
  std::vector<JsonObject> objects;
  const auto* const value = Value(szName);
  if (!value) return objects;
  for (const auto& item : List(*value, PlaceOf(szName))) {
    objects.emplace_back(item, ItemPlace(PlaceOf(szName), objects.size()));
  }
  return objects;
}

std::string JsonObject::PlaceOf(const std::string& szName) const {
  return m_Place.empty() ? szName : m_Place + "." + szName;
}

void JsonObject::NothingElse() const {
  for (const auto& [szName, value] : m_Value->items()) {
    if (m_Asked.contains(szName)) continue;
    std::string szKnown;
    for (const std::string& szAsked : m_Asked) szKnown += (szKnown.empty() ? "" : ", ") + szAsked;
    RefuseJson(PlaceOf(szName), "is not known here; known are " + szKnown);
  }
}

}  // namespace vex
