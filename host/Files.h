#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vex {

/// A file open for reading at any place; closes itself.
class OpenFile {
 public:
  virtual ~OpenFile() = default;
  [[nodiscard]] virtual uint64_t Size() const = 0;
  /// Fills the whole span from the offset; false when the file has not that many bytes or cannot be read.
  virtual bool ReadAt(uint64_t offset, std::span<uint8_t> bytes) = 0;
};

/// A file that is written bit by bit, as a log is: at its end, or over its last bytes. One program writes it
/// at a time; others may read it meanwhile. Closes itself.
class GrowingFile {
 public:
  virtual ~GrowingFile() = default;
  [[nodiscard]] virtual uint64_t Size() const = 0;
  /// Writes the bytes from the offset on, which is at most the file's end. What has been written outlasts
  /// this program, however it ends. False on any failure, and any part of the bytes may then stand there.
  virtual bool WriteAt(uint64_t offset, std::string_view bytes) = 0;
  /// Waits until what has been written outlasts a power cut too.
  virtual bool Flush() = 0;
};

/// Held while a file is read, changed and written; let go when destroyed, or when the program ends.
class FileLock {
 public:
  FileLock() = default;
  virtual ~FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
};

/// The file system as the system sees it. Paths are written the Windows way in single-byte text, as in
/// "D:\shows\eve.shw"; the host turns them into its own at the moment a file is opened. No call raises.
class Files {
 public:
  virtual ~Files() = default;

  /// Reads the whole file into szContents, whose memory is used again; false on any failure, and then
  /// szReason, where given, says why in the system's words ("File not found" where it is missing).
  virtual bool Read(const std::string& szPath, std::string& szContents, std::string* szReason = nullptr) = 0;
  /// Writes the whole file or leaves the old one: a temporary file beside it, flushed and renamed over it,
  /// with the old file's permissions.
  virtual bool Write(const std::string& szPath, const std::string& szText,
                     std::string* szReason = nullptr) = 0;
  /// The same without the flush, for what other programs look at while this one runs and nobody needs after
  /// a power cut: it never waits for the disk.
  virtual bool Publish(const std::string& szPath, const std::string& szText) { return Write(szPath, szText); }
  /// For those who change a file that others may change at the same time: waits until no other holder of the
  /// lock is left. The file need not exist and is left alone; readers never wait. All files of one folder
  /// share a lock. Empty when there can be none, and then szReason, where given, says why.
  [[nodiscard]] virtual std::unique_ptr<FileLock> Lock(const std::string& szPath,
                                                       std::string* szReason = nullptr) = 0;
  /// Empty when it cannot be opened.
  [[nodiscard]] virtual std::unique_ptr<OpenFile> Open(const std::string& szPath) = 0;

  /// Opens a file as it is, or makes it, to be written bit by bit. Empty when it cannot be, while another
  /// program has it open so, and on machines where no program of the system keeps such files.
  [[nodiscard]] virtual std::unique_ptr<GrowingFile> Grow(const std::string& /*szPath*/) { return nullptr; }
  /// Gives a file another name in its folder, in place of whatever file has that name; false on any failure,
  /// and on machines where nobody needs it.
  virtual bool Rename(const std::string& /*szPath*/, const std::string& /*szNewPath*/) { return false; }

  /// True when the path exists and is not a folder.
  [[nodiscard]] virtual bool Exists(const std::string& szPath) = 0;
  /// The names of the files in a folder, without its folders, sorted; none where it cannot be read, and on
  /// machines where nobody asks. Names with characters that the system does not know are left out.
  [[nodiscard]] virtual std::vector<std::string> FilesIn(const std::string& /*szFolder*/) { return {}; }
  virtual bool MakeFolder(const std::string& szPath) = 0;
  virtual bool Remove(const std::string& szPath) = 0;

  /// The path as this machine's libraries take it, UTF-8.
  [[nodiscard]] virtual std::string HostPath(const std::string& szPath) = 0;
  /// A path of this machine (UTF-8) as the system writes it.
  [[nodiscard]] virtual std::string SystemPath(const std::string& szHostPath) = 0;
  /// A path of this machine that stands in one of its files: a relative one is meant from that file's folder.
  [[nodiscard]] virtual std::string HostPathBeside(const std::string& szHostFile,
                                                   const std::string& szHostPath) const {
    return szHostPath.starts_with('/') ? szHostPath
                                       : szHostFile.substr(0, szHostFile.rfind('/') + 1) + szHostPath;
  }
  /// The folder from which the running program was started, without a trailing backslash.
  [[nodiscard]] virtual std::string ProgramFolder() = 0;
  /// What program file names end in: ".exe", or nothing.
  [[nodiscard]] virtual std::string ProgramSuffix() const = 0;
};

}  // namespace vex
