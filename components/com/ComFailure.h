#pragma once

#include <string>

#include "basic/Error.h"
#include "components/com/ComHeaders.h"

namespace vex {

/// The component model's failures in the system's terms. A component says what went wrong by a result code or
/// by a record with number, source and description of its own; handlers and the start-up box tell them apart
/// by the number, so it is the one that the component meant (a busy port is 8005 however it is wrapped).

/// The number behind a result code: the component's own where the code wraps one, else the code itself.
[[nodiscard]] int32_t ErrorNumberOf(HRESULT result);
/// The machine's words for a result code.
[[nodiscard]] std::string WordsFor(HRESULT result);

/// A result code as the exception, about what was being done.
[[nodiscard]] Error ComError(HRESULT result, const std::string& szSource, const std::string& szAbout);
/// What a component raised, to the word; szSource stands where it names none. Empties the record.
[[nodiscard]] Error RaisedError(EXCEPINFO& raised, const std::string& szSource);

}  // namespace vex
