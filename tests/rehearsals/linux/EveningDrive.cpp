#include "tests/rehearsals/EveningDrive.h"

#include "host/linux/LinuxFiles.h"

namespace vex::test {

std::unique_ptr<Files> FilesWithDriveD(const std::filesystem::path& folder) {
  auto files = std::make_unique<LinuxFiles>();
  files->Drives(
      [szFolder = folder.string()](char letter) { return letter == 'D' ? szFolder : std::string(); });
  return files;
}

}  // namespace vex::test
