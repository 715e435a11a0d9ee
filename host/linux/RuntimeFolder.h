#pragma once

#include <string>

#include "host/Windows.h"

namespace vex {

/// The folder in which the programs of one user meet: the sockets that are their windows, the player's
/// handle, its lock and its status. Only that user may enter it (0700), and this is what keeps everybody
/// else from steering the show.
class RuntimeFolder {
 public:
  explicit RuntimeFolder(std::string szPath) : m_Path(std::move(szPath)) {}
  /// VEX_RUNTIME_DIR, else vexmonitor below XDG_RUNTIME_DIR, else /tmp/vexmonitor-UID.
  static RuntimeFolder FromEnvironment();

  [[nodiscard]] const std::string& Path() const { return m_Path; }
  [[nodiscard]] std::string WindowPath(WindowHandle hWnd) const {
    return m_Path + "/" + std::to_string(hWnd);
  }
  [[nodiscard]] std::string PlayerPath() const { return m_Path + "/player"; }
  [[nodiscard]] std::string LockPath() const { return m_Path + "/player.lock"; }
  [[nodiscard]] std::string StatusPath() const { return m_Path + "/status.json"; }

  /// Makes the folder where it is missing and closes it to others where it is this user's own. Raises Error
  /// when it is too long for a socket's name, a link, another user's, or shared by the whole machine.
  void Prepare() const;
  /// Why Prepare would raise, found without changing anything; empty where it would not.
  [[nodiscard]] std::string Trouble() const;

 private:
  std::string m_Path;
};

}  // namespace vex
