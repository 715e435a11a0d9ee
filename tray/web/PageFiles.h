#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vex {

/// A file of tray/web/page, as it was when the program was built: the page needs nothing beside the program.
struct PageFile {
  std::string_view Name;
  std::string_view Bytes;
};

[[nodiscard]] const std::vector<PageFile>& PageFiles();

}  // namespace vex
