#include "tests/media/XServer.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <set>
#include <sstream>

// A core whose display has broken away is left behind as it stood, with what only its lost threads know of.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libmpv.so\n";
}

namespace vex::test {

namespace {

std::string OutputOf(const std::string& szCommand) {
  std::string szOutput;
  FILE* const pipe = popen(szCommand.c_str(), "r");
  if (!pipe) return szOutput;
  char buffer[4096];
  while (const size_t got = fread(buffer, 1, sizeof buffer, pipe)) szOutput.append(buffer, got);
  pclose(pipe);
  return szOutput;
}

void End(pid_t& process) {
  if (process <= 0) return;
  kill(process, SIGTERM);
  waitpid(process, nullptr, 0);
  process = 0;
}

int32_t NumberAfter(const std::string& szText, const std::string& szWord) {
  const size_t at = szText.find(szWord);
  return at == std::string::npos ? -1 : std::atoi(szText.c_str() + at + szWord.size());
}

uint32_t BigEndian(const std::string& szBytes, size_t word) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(szBytes[word * 4 + i]);
  return value;
}

/// The graphics driver, which a display in memory has no use for, leaks and is unloaded; a sanitizer could
/// not tell that from a leak of ours.
void WithoutGraphicsDriver() {
#ifdef __has_feature
#if __has_feature(address_sanitizer)
  setenv("__EGL_VENDOR_LIBRARY_DIRS", "/dev/null", 1);
#endif
#endif
}

}  // namespace

std::string XServer::MissingPrograms() {
  std::string szMissing;
  for (const char* szProgram : {"Xvfb", "openbox", "wmctrl", "xwininfo", "xwd"})
    if (OutputOf(std::string("command -v ") + szProgram).empty()) szMissing += std::string(" ") + szProgram;
  return szMissing;
}

XServer::XServer() {
  int ready[2];
  if (pipe(ready) != 0) return;
  m_Server = Start({"Xvfb", "-displayfd", std::to_string(ready[1]), "-screen", "0", "1280x800x24",
                    "-nolisten", "tcp", "-noreset"},
                   ready[1]);
  close(ready[1]);
  std::string szNumber;
  for (char character; read(ready[0], &character, 1) == 1 && character != '\n';) szNumber += character;
  close(ready[0]);
  if (!szNumber.empty()) m_Name = ":" + szNumber;
}

void XServer::Use(bool boolWithManager) {
  setenv("DISPLAY", m_Name.c_str(), 1);
  WithoutGraphicsDriver();
  if (!boolWithManager) return End(m_Manager);
  m_Manager = Start({"openbox", "--sm-disable"}, -1);
  for (int i = 0; i < 200 && OutputOf("wmctrl -m 2>/dev/null").empty(); ++i) usleep(50000);
}

void XServer::BreakAway() {
  End(m_Manager);
  End(m_Server);
}

XServer::~XServer() {
  BreakAway();
}

/// Everything but the descriptor on which readiness is told is closed; what it says is of no interest.
pid_t XServer::Start(const std::vector<std::string>& words, int readiness) const {
  const pid_t process = fork();
  if (process != 0) return process;
  prctl(PR_SET_PDEATHSIG, SIGTERM);  // also when a test program dies
  const int nowhere = open("/dev/null", O_RDWR);
  for (int descriptor = 0; descriptor <= 2; ++descriptor) dup2(nowhere, descriptor);
  for (int descriptor = 3; descriptor < 256; ++descriptor)
    if (descriptor != readiness) close(descriptor);
  std::vector<char*> pointers;
  for (const std::string& szWord : words) pointers.push_back(const_cast<char*>(szWord.c_str()));
  pointers.push_back(nullptr);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

XServer::Window XServer::Find(const std::string& szCaption) const {
  Window window;
  const std::string szText = OutputOf("xwininfo -name '" + szCaption + "' 2>/dev/null");
  if (szText.find("IsViewable") == std::string::npos) return window;
  const size_t at = szText.find("0x");
  window.Id = szText.substr(at, szText.find(' ', at) - at);
  window.Left = NumberAfter(szText, "Absolute upper-left X:");
  window.Top = NumberAfter(szText, "Absolute upper-left Y:");
  window.Width = NumberAfter(szText, "Width:");
  window.Height = NumberAfter(szText, "Height:");
  return window;
}

void XServer::Close(const std::string& szCaption) const {
  OutputOf("wmctrl -F -c '" + szCaption + "'");
}

size_t XServer::Colours(const Window& window) const {
  const std::string szPhoto = OutputOf("xwd -silent -id " + window.Id + " 2>/dev/null");
  constexpr size_t words = 25;
  if (szPhoto.size() < words * 4) return 0;
  const size_t pixels = BigEndian(szPhoto, 0) + BigEndian(szPhoto, 19) * 12;  // behind header and colour map
  std::set<std::string> colours;
  constexpr size_t step = 4 * 13;  // enough pixels to tell a picture from an empty window
  for (size_t at = pixels; at + 4 <= szPhoto.size(); at += step) colours.insert(szPhoto.substr(at, 3));
  return colours.size();
}

}  // namespace vex::test
