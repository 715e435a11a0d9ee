#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <functional>
#include <string>

#include "tests/host_linux/LinuxMachine.h"

namespace vex::test {

/// A second process, forked to run one function. It tells this one lines of text, and is killed at the end.
class OtherProgram {
 public:
  using Tell = std::function<void(const std::string&)>;

  explicit OtherProgram(const std::function<void(const Tell&)>& run) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
    m_Process = fork();
    if (m_Process == 0) {
      run([&](const std::string& szLine) {
        const std::string szText = szLine + "\n";
        if (write(ends[1], szText.data(), szText.size()) < 0) _exit(2);
      });
      _exit(0);
    }
    close(ends[1]);
    m_Lines = fdopen(ends[0], "r");
  }
  ~OtherProgram() {
    Kill();
    std::fclose(m_Lines);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  /// The next line that it tells; waits for it. Empty when it has ended.
  std::string Line() {
    std::string szLine;
    for (int character = std::fgetc(m_Lines); character != EOF && character != '\n';
         character = std::fgetc(m_Lines))
      szLine += static_cast<char>(character);
    return szLine;
  }

  void Stop() const {
    kill(m_Process, SIGSTOP);
    waitpid(m_Process, nullptr, WUNTRACED);
  }
  void Continue() const { kill(m_Process, SIGCONT); }
  void Raise(int number) const { kill(m_Process, number); }
  void Kill() {
    if (m_Process <= 0) return;
    kill(m_Process, SIGKILL);
    waitpid(m_Process, nullptr, 0);
    m_Process = 0;
  }

 private:
  pid_t m_Process = 0;
  FILE* m_Lines = nullptr;
};

}  // namespace vex::test
