#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/virtual/VirtualFiles.h"
#include "time/WeekTimeFunctions.h"
#include "tools/authoring/ChangeSchedule.h"
#include "tools/authoring/CheckFile.h"

namespace {

using namespace vex;

const std::string Path = "C:\\d\\file";

void Expect(bool boolHolds) {
  if (!boolHolds) std::abort();
}

std::string Contents(Files& files) {
  std::string szText;
  Expect(files.Read(Path, szText));
  return szText;
}

/// A refused change leaves the file to the byte; what is written is sound and says what was told.
void Change(VirtualFiles& files, const FileOutcome& outcome, const std::string& szBefore, FileKind kind) {
  if (outcome.Failure) {
    Expect(Contents(files) == szBefore);
    return;
  }
  Expect(Contents(files) == outcome.Text + "\r\n");
  Expect(!CheckFile(files, Path, kind).Failure);
  files.Put(Path, szBefore);
}

}  // namespace

/// The first byte is the kind, the rest the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const auto kind = static_cast<FileKind>(data[0] % 4);
  const std::string szText(reinterpret_cast<const char*>(data) + 1, size - 1);
  VirtualFiles files;
  files.Put(Path, szText);
  const CheckedFile checked = CheckFile(files, Path, kind);
  Expect(checked.Failure.has_value() || kind == FileKind::List || !checked.Text.empty());
  if (kind == FileKind::Week) {
    Change(files, AddToWeek(files, Path, NewWeekTime(1, 18, 0, 0), NewWeekTime(1, 22, 0, 0), "s"), szText,
           kind);
    Change(files, RemoveFromWeek(files, Path, NewWeekTime(1, 19, 0, 0)), szText, kind);
  } else if (kind == FileKind::Year) {
    const DateTime dtDay = DateTime::FromParts(2026, 12, 24);
    Change(files, AddToYear(files, Path, dtDay.PlusSeconds(72000), dtDay.PlusSeconds(90000), "s"), szText,
           kind);
    Change(files, RemoveFromYear(files, Path, dtDay.PlusSeconds(72000)), szText, kind);
  }
  return 0;
}
