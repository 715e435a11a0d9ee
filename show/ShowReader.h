#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "show/Show.h"

namespace vex {

/// Reads the show file again and again, as the heartbeat does every second, without parsing bytes that
/// have not changed. What it hands out is what ShowFromText would give: a show of its own, unused, with a
/// new Monitoring record; the errors are those of ShowFromText too.
///
/// Shows that can be written are handed out sealed, so that comparing two of them from the same bytes
/// costs nothing; one that cannot be written is parsed anew and never sealed, and so always counts as
/// changed.
class ShowReader {
 public:
  /// May be empty, as from ShowFromText.
  [[nodiscard]] std::shared_ptr<Show> Read(std::string_view szFileBytes);

 private:
  [[nodiscard]] bool SpareIsFresh() const;

  std::string m_LastBytes;
  /// The contents text of the show in m_LastBytes; empty when there is none to be had.
  std::shared_ptr<const std::string> m_Contents;
  /// The show handed out last, kept in the hope that nobody takes it.
  std::shared_ptr<Show> m_Spare;
};

}  // namespace vex
