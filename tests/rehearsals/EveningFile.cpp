#include "tests/rehearsals/EveningFile.h"

#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>
#include <stdexcept>

#include "tests/rehearsals/ExpectedLines.h"

namespace vex::test {
namespace {

constexpr const char* Settings = R"(Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\Software\Brillara]
"UserDataPath"="D:\\"

[HKEY_CURRENT_USER\Software\Brillara\Shared]
"AudioPath"="D:\\"
"NonAudioPath"="D:\\"

[HKEY_CURRENT_USER\Software\Brillara\XLK]
"On"=dword:00000001

)";

/// A silent wave file, 8000 Hz, 8 bit, one channel.
std::string Wave(double seconds) {
  constexpr uint32_t rate = 8000;
  const auto count = static_cast<uint32_t>(seconds * rate);
  std::string szWave = "RIFF";
  const auto number = [&szWave](uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) szWave += static_cast<char>(value >> (8 * i));
  };
  number(36 + count, 4);
  szWave += "WAVEfmt ";
  number(16, 4);
  number(1, 2);
  number(1, 2);
  number(rate, 4);
  number(rate, 4);
  number(1, 2);
  number(8, 2);
  szWave += "data";
  number(count, 4);
  return szWave + std::string(count, '\x80');
}

class Reader {
 public:
  Reader(const std::filesystem::path& file, std::filesystem::path folder)
      : m_Name(file.filename().string()),
        m_Path(file.parent_path()),
        m_Folder(std::move(folder)),
        m_Stream(file, std::ios::binary) {}

  EveningFile Read() {
    ReadSections();
    if (m_Evening.Options.From >= m_Evening.Options.Until) Fail("has no span to rehearse");
    Write("settings.reg", m_Settings);
    return std::move(m_Evening);
  }

 private:
  void ReadSections() {
    std::string szLine;
    while (std::getline(m_Stream, szLine) && !szLine.starts_with("== ")) {
    }
    while (szLine.starts_with("== ")) {
      const std::string szHead = szLine.substr(3);
      std::vector<std::string> body;
      while (std::getline(m_Stream, szLine) && !szLine.starts_with("== ")) body.push_back(WrittenOut(szLine));
      Section(szHead, body);
      if (!m_Stream) break;
    }
  }

  [[noreturn]] void Fail(const std::string& szWhat) const { throw std::runtime_error(m_Name + " " + szWhat); }

  void Section(const std::string& szHead, const std::vector<std::string>& body) {
    std::istringstream words(szHead);
    std::string szKind;
    std::string szName;
    words >> szKind;
    if (szKind == "rehearse") return Options(words);
    if (szKind == "settings") return static_cast<void>(m_Settings += Joined(body, true) + "\n");
    if (szKind == "inputs") return static_cast<void>(m_Evening.Inputs = Joined(WithoutRemarks(body), true));
    if (szKind == "expected") return Expect(words, WithoutRemarks(body));
    // A file's name is the rest of the line, blanks and all.
    if (!(szKind == "file" ? std::getline(words >> std::ws, szName) : words >> szName))
      Fail("has a section without a name: " + szHead);
    if (szKind == "with") return Include(szName);
    if (szKind == "file") return Write(szName, Joined(body, false));
    if (szKind == "word") return Word(szName, words);
    double seconds = 0;
    if (szKind != "wav" || !(words >> seconds)) Fail("has an unknown section: " + szHead);
    Write(szName, Wave(seconds));
  }

  /// The sections of another file beside this one.
  void Include(const std::string& szName) {
    Reader other(m_Path / szName, m_Folder);
    if (!other.m_Stream) Fail("has no file " + szName + " beside it");
    other.ReadSections();
    if (!other.m_Evening.Impossible.empty()) m_Evening.Impossible = other.m_Evening.Impossible;
  }

  /// A word that stands for a text many times over, so that a long line can be read.
  void Word(const std::string& szName, std::istringstream& words) {
    size_t count = 0;
    std::string szText;
    if (!(words >> count >> szText)) Fail("has a word without count and text: " + szName);
    std::string& szMeaning = m_Words[szName];
    for (size_t i = 0; i < count; ++i) szMeaning += szText;
  }

  /// The line with every word written out.
  [[nodiscard]] std::string WrittenOut(std::string szLine) const {
    for (const auto& [szName, szMeaning] : m_Words) {
      for (size_t at = szLine.find(szName); at != std::string::npos;
           at = szLine.find(szName, at + szMeaning.size()))
        szLine.replace(at, szName.size(), szMeaning);
    }
    return szLine;
  }

  void Expect(std::istringstream& words, const std::vector<std::string>& lines) {
    words >> m_Evening.LowestLevel;
    m_Evening.Expected = ExpectedLines(lines, m_Evening.Options.From);
  }

  void Options(std::istringstream& words) {
    std::string szOption;
    const auto value = [&] {
      std::string szValue;
      if (!(words >> std::quoted(szValue))) Fail("lacks a value of " + szOption);
      return szValue;
    };
    while (words >> szOption) {
      if (szOption == "--from")
        m_Evening.Options.From = ParseDateTime(value());
      else if (szOption == "--until")
        m_Evening.Options.Until = ParseDateTime(value());
      else if (szOption == "--seed")
        m_Evening.Options.Seed = std::stoull(value());
      else if (szOption == "--noschedule")
        m_Evening.Options.NoSchedule = true;
      else if (szOption == "--assume-media")
        m_Evening.Options.AssumeMedia = true;
      else if (szOption == "--only") {
        std::istringstream kinds(value());
        for (std::string szKind; std::getline(kinds, szKind, ',');) m_Evening.Only.push_back(szKind);
      } else
        Fail("has an unknown option " + szOption);
    }
  }

  static std::string Joined(const std::vector<std::string>& lines, bool boolLastEnds) {
    std::string szText;
    for (const std::string& szLine : lines)
      szText += (szText.empty() && &szLine == lines.data() ? "" : "\n") + szLine;
    return boolLastEnds ? szText + "\n" : szText;
  }

  static std::vector<std::string> WithoutRemarks(const std::vector<std::string>& lines) {
    std::vector<std::string> kept;
    for (const std::string& szLine : lines) {
      if (!szLine.empty() && szLine.front() != '#') kept.push_back(szLine);
    }
    return kept;
  }

  void Write(const std::string& szName, const std::string& szText) {
    std::ofstream stream(m_Folder / szName, std::ios::binary);
    stream << szText;
    if (!stream) m_Evening.Impossible = szName;
  }

  std::string m_Name;
  std::filesystem::path m_Path;
  std::filesystem::path m_Folder;
  std::ifstream m_Stream;
  std::map<std::string, std::string> m_Words;
  std::string m_Settings = Settings;
  EveningFile m_Evening;
};

}  // namespace

EveningFile LayOutEvening(const std::filesystem::path& file, const std::filesystem::path& folder) {
  return Reader(file, folder).Read();
}

}  // namespace vex::test
