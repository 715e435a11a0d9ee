#pragma once

#include <httplib.h>

#include <string>

namespace vex {

/// What every answer has in common.

/// The headers that go with all of them: nothing but our own files runs in the page, nobody frames it,
/// nothing of it is kept.
[[nodiscard]] httplib::Headers SafeHeaders();

/// An answer that something is not done, with the sentence why: {"error": "..."}.
void Deny(httplib::Response& response, int status, const std::string& szWhy);

}  // namespace vex
