#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vex {

class Files;
class Registry;
struct OpenSequence;

/// Whether a show has what it needs: its file, the sequences that it names, the songs that these name. What
/// is missing or damaged is found here before the season instead of by the player at night.
class ShowContents {
 public:
  /// The user data folder, with its trailing "\" or empty, is where shows without a place of their own lie.
  ShowContents(Files& files, Registry& registry, std::string szUserDataPath);

  /// Songs are then not only to be there: the call gives why the one at a path cannot be played, or nothing.
  void LookIntoSongs(std::function<std::string(const std::string&)> songTrouble);

  /// One line for each trouble, each naming show, file and where it was looked for; empty when all is there.
  [[nodiscard]] std::vector<std::string> Troubles(const std::string& szShow) const;
  /// Whether a sequence of the show names a song; false for a show that cannot be read.
  [[nodiscard]] bool HasSongs(const std::string& szShow) const;

 private:
  [[nodiscard]] OpenSequence Load(const std::string& szSequence) const;
  [[nodiscard]] std::string SequenceTrouble(const std::string& szSequence) const;
  [[nodiscard]] std::string PlacesOf(const std::string& szSequence) const;
  [[nodiscard]] std::string SongTrouble(const std::string& szSong, const std::string& szSequence) const;

  Files& m_Files;
  Registry& m_Registry;
  std::string m_UserDataPath;
  std::function<std::string(const std::string&)> m_SongTrouble;
};

}  // namespace vex
