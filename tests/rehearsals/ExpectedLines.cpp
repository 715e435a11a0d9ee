#include "tests/rehearsals/ExpectedLines.h"

#include <sstream>
#include <stdexcept>

namespace vex::test {
namespace {

std::string Quoted(const std::string& szText) {
  std::string szQuoted = "\"";
  for (const char letter : szText) {
    if (letter == '"' || letter == '\\') szQuoted += '\\';
    szQuoted += letter;
  }
  return szQuoted + "\"";
}

class Writer {
 public:
  explicit Writer(DateTime first) : m_Date(FormatDate(first)) {}

  void Write(const std::string& szLine) {
    if (szLine.front() == '{') {
      Lines.push_back(szLine);
      return;
    }
    std::istringstream words(szLine);
    std::string szTime;
    std::string szKind;
    words >> szTime >> szKind;
    std::string szRest;
    std::getline(words >> std::ws, szRest);
    if (szTime == "date")
      m_Date = szKind;
    else if (szTime == "start")
      StartUp(szKind);
    else
      Lines.push_back("{\"t\":\"" + m_Date + " " + szTime + "\",\"kind\":" + Members(szKind, szRest, szLine) +
                      "}");
  }

  std::vector<std::string> Lines;

 private:
  /// The second before the heartbeats is four after the start.
  void StartUp(const std::string& szTime) {
    const DateTime dtStart = ParseDateTime(m_Date + " " + szTime);
    constexpr size_t timeOfDay = 11;
    const std::string szReady = FormatDateTime(dtStart.PlusSeconds(4)).substr(timeOfDay);
    Write(szTime + ".000 1 Show Player starting");
    Write(szTime + ".000 1 Schedule loaded");
    Write(szReady + ".000 1 Show Player initialized");
  }

  static std::string Members(const std::string& szKind, const std::string& szRest,
                             const std::string& szLine) {
    if (szKind.size() == 1 && szKind >= "0" && szKind <= "3") return LogMembers(szKind, szRest);
    const size_t blank = szRest.find(' ');
    const std::string szFirst = szRest.substr(0, blank);
    const std::string szSecond = blank == std::string::npos ? "" : szRest.substr(blank + 1);
    const std::string szCall = Quoted(szKind) + ",\"call\":" + Quoted(szFirst);
    if (szKind == "seq" || (szKind == "media" && szFirst == "open"))
      return szCall + ",\"file\":" + Quoted(szSecond);
    if (szKind == "media" || szKind == "window") return szCall;
    if (szKind == "io") return szCall + ",\"args\":" + szSecond;
    if (szKind == "sent") return "\"sent\",\"type\":" + szFirst + ",\"text\":" + Quoted(szSecond);
    if (szKind == "shell") return "\"shell\",\"commandLine\":" + Quoted(szRest);
    if (szKind == "box") return "\"box\",\"title\":\"\",\"text\":" + Quoted(szRest);
    throw std::runtime_error("no kind of line: " + szLine);
  }

  static std::string LogMembers(const std::string& szLevel, const std::string& szRest) {
    const size_t at = szRest.rfind(" @ ");
    const std::string szLog = "\"log\",\"level\":" + szLevel + ",\"text\":" + Quoted(szRest.substr(0, at));
    if (at == std::string::npos) return szLog + ",\"play\":null,\"file\":null";
    const std::string szSequence = szRest.substr(at + 3);
    const size_t blank = szSequence.find(' ');
    return szLog + ",\"play\":" + Quoted(szSequence.substr(0, blank)) +
           ",\"file\":" + Quoted(szSequence.substr(blank + 1));
  }

  std::string m_Date;
};

}  // namespace

std::vector<std::string> ExpectedLines(const std::vector<std::string>& lines, DateTime first) {
  Writer writer(first);
  for (const std::string& szLine : lines) writer.Write(szLine);
  return std::move(writer.Lines);
}

}  // namespace vex::test
