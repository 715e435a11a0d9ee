#pragma once

#include <sys/types.h>
#include <cstdint>
#include <string>
#include <vector>

namespace vex::test {

/// A display of its own that nobody looks at (Xvfb), with a window manager where one is needed.
class XServer {
 public:
  XServer();
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// The programs that are needed and not there, each with a blank before it.
  [[nodiscard]] static std::string MissingPrograms();
  [[nodiscard]] bool Runs() const { return !m_Name.empty(); }
  /// DISPLAY names it from now on; with or without a window manager.
  void Use(bool boolWithManager);

  /// The display is no more, and whatever it showed.
  void BreakAway();

  struct Window {
    std::string Id;  // empty for none
    int32_t Left = 0;
    int32_t Top = 0;
    int32_t Width = 0;
    int32_t Height = 0;
  };
  /// The window on the screen with that caption.
  [[nodiscard]] Window Find(const std::string& szCaption) const;
  /// Presses its close box, as a window manager does.
  void Close(const std::string& szCaption) const;
  /// How many different colours some pixels of a photograph of the window have.
  [[nodiscard]] size_t Colours(const Window& window) const;

 private:
  pid_t Start(const std::vector<std::string>& words, int readiness) const;
  pid_t m_Server = 0;
  pid_t m_Manager = 0;
  std::string m_Name;
};

}  // namespace vex::test
