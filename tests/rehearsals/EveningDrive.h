#pragma once

#include <filesystem>
#include <memory>

#include "host/Files.h"

namespace vex::test {

/// This machine's files, where that folder is drive D.
[[nodiscard]] std::unique_ptr<Files> FilesWithDriveD(const std::filesystem::path& folder);

}  // namespace vex::test
