#include "host/win32/WholeFile.h"

#include <algorithm>

#include "basic/Error.h"
#include "host/win32/Handle.h"
#include "host/win32/SystemError.h"

namespace vex {
namespace {

constexpr DWORD Share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr size_t Block = 1U << 30;
// A program that looks at the old file for a moment (a virus scanner, say) keeps it from being replaced.
constexpr int Attempts = 20;
constexpr DWORD BetweenAttemptsMs = 1;

// What somebody may have said of a file, and what holds for the one in its place too.
constexpr DWORD KeptAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                 FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

/// None for a file that does not exist.
DWORD AttributesOf(const std::string& szPath) {
  const DWORD attributes = GetFileAttributesA(szPath.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES ? 0 : attributes;
}

uint32_t WriteAll(HANDLE file, std::string_view szText) {
  while (!szText.empty()) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min(szText.size(), Block));
    if (WriteFile(file, szText.data(), wanted, &count, nullptr) == 0) return GetLastError();
    szText.remove_prefix(count);
  }
  return 0;
}

/// A file beside szPath that did not exist before; its name tells what it was if it is ever left over.
Handle NewFileBeside(const std::string& szPath, DWORD attributes, std::string& szNew) {
  static unsigned counter = 0;
  while (true) {
    szNew = szPath + ".new-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++counter);
    Handle file(CreateFileA(szNew.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, attributes, nullptr));
    if (file.Open() || GetLastError() != ERROR_FILE_EXISTS) return file;
  }
}

bool MayPass(uint32_t code) {
  return code == ERROR_SHARING_VIOLATION || code == ERROR_ACCESS_DENIED || code == ERROR_USER_MAPPED_FILE ||
         code == ERROR_UNABLE_TO_REMOVE_REPLACED;
}

/// Whether the old file may go now. Asked first, because a replacement that fails half-way leaves scraps.
uint32_t MayGo(const std::string& szPath) {
  const Handle file(CreateFileA(szPath.c_str(), DELETE, Share, nullptr, OPEN_EXISTING, 0, nullptr));
  return file.Open() ? 0 : GetLastError();
}

uint32_t PutInPlace(const std::string& szNew, const std::string& szPath) {
  if (GetFileAttributesA(szPath.c_str()) != INVALID_FILE_ATTRIBUTES) {
    if (const uint32_t code = MayGo(szPath)) return code;
    if (ReplaceFileA(szPath.c_str(), szNew.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                     nullptr))
      return 0;
  }
  return MoveFileExA(szNew.c_str(), szPath.c_str(), MOVEFILE_REPLACE_EXISTING) != 0 ? 0 : GetLastError();
}

}  // namespace

uint32_t ReadWholeFile(const std::string& szPath, std::string& szContents) {
  const Handle file(CreateFileA(szPath.c_str(), GENERIC_READ, Share, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.Open()) return GetLastError();
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file.Get(), &size) == 0) return GetLastError();
  size_t from = 0;
  size_t wanted = static_cast<size_t>(size.QuadPart) + 1;  // one more, so that one read also finds the end
  while (true) {
    szContents.resize(wanted);
    DWORD count = 0;
    const auto room = static_cast<DWORD>(std::min(wanted - from, Block));
    if (ReadFile(file.Get(), szContents.data() + from, room, &count, nullptr) == 0) return GetLastError();
    from += count;
    if (count == 0) break;
    if (from == wanted) wanted += 65536;
  }
  szContents.resize(from);
  return 0;
}

uint32_t WriteWholeFile(const std::string& szPath, std::string_view szText, Flush flush) {
  const DWORD old = AttributesOf(szPath);
  // Not every machine refuses to put another file in the place of one that is read-only.
  if ((old & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) return ERROR_ACCESS_DENIED;
  const DWORD kept = old & KeptAttributes;
  std::string szNew;
  Handle file = NewFileBeside(szPath, kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept, szNew);
  if (!file.Open()) return GetLastError();
  uint32_t code = WriteAll(file.Get(), szText);
  if (code == 0 && flush == Flush::Yes && FlushFileBuffers(file.Get()) == 0) code = GetLastError();
  file.Close();
  if (code == 0) code = PutInPlace(szNew, szPath);
  for (int attempt = 1; MayPass(code) && attempt < Attempts; ++attempt) {
    Sleep(BetweenAttemptsMs);
    code = PutInPlace(szNew, szPath);
  }
  if (code != 0) DeleteFileA(szNew.c_str());
  return code;
}

std::string DescribeFileCode(uint32_t code) {
  const bool boolMissing = code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
  return boolMissing ? PlatformError(ErrorFileNotFound).Description : DescribeCode(code);
}

}  // namespace vex
