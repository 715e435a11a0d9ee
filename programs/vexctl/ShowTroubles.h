#pragma once

#include <memory>
#include <string>
#include <vector>

#include "programs/vexctl/Command.h"

namespace vex {

/// Whether songs are looked into, by the media library, or need only be there.
enum class SongLook { Exists, Plays };

/// What the shows of this machine lack, as the player would find at night: files, sequences, songs. Each
/// song is looked into once.
class ShowTroubles {
 public:
  ShowTroubles(CommandContext& context, SongLook look);
  ~ShowTroubles();
  ShowTroubles(const ShowTroubles&) = delete;
  ShowTroubles& operator=(const ShowTroubles&) = delete;

  /// A line each; a show is named as in a schedule.
  [[nodiscard]] std::vector<std::string> Of(const std::string& szShow) const;
  /// The same on standard output, below what has been said of the show.
  void Print(const std::string& szShow) const;

 private:
  class Songs;
  CommandContext& m_Context;
  std::shared_ptr<Songs> m_Songs;
  std::string m_UserDataPath;
};

}  // namespace vex
