#include "monitor/StatusFile.h"

#include <utility>

#include "basic/Number.h"
#include "host/CodePage.h"
#include "host/Files.h"

namespace vex {

namespace {

std::string JsonText(const std::string& szText) {
  constexpr char hexDigits[] = "0123456789abcdef";
  std::string szJson = "\"";
  for (const char character : AnsiToUtf8(szText)) {
    const auto code = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      szJson += '\\';
      szJson += character;
    } else if (code < 0x20) {
      szJson += "\\u00";
      szJson += hexDigits[code >> 4];
      szJson += hexDigits[code & 15];
    } else {
      szJson += character;
    }
  }
  return szJson + "\"";
}

const char* JsonBool(bool boolValue) {
  return boolValue ? "true" : "false";
}

std::string PlayingToJson(const std::vector<PlayerStatus::PlayingSequence>& playing) {
  std::string szJson = "[";
  for (const auto& sequence : playing) {
    if (szJson.size() > 1) szJson += ",";
    szJson += "{\"play\":" + JsonText(sequence.PlayWord) + ",\"file\":" + JsonText(sequence.Filename) + "}";
  }
  return szJson + "]";
}

std::string FailureToJson(const std::optional<PlayerStatus::Failure>& failure) {
  if (!failure) return "null";
  return "{\"time\":" + JsonText(FormatDateTime(failure->Time)) + ",\"text\":" + JsonText(failure->Text) +
         "}";
}

}  // namespace

std::string PlayerStatusToJson(const PlayerStatus& status) {
  std::string szJson = "{\"pid\":" + FormatNumber(status.Pid);
  szJson += ",\"started\":" + JsonText(FormatDateTime(status.Started));
  szJson += std::string(",\"ready\":") + JsonBool(status.Ready);
  szJson += std::string(",\"noSchedule\":") + JsonBool(status.NoSchedule);
  szJson += std::string(",\"shuttingDown\":") + JsonBool(status.ShuttingDown);
  szJson += std::string(",\"link\":") + JsonBool(status.Link);
  szJson += ",\"current\":" + JsonText(status.Current);
  szJson += ",\"next\":" + JsonText(status.Next);
  szJson += ",\"playing\":" + PlayingToJson(status.Playing);
  szJson += ",\"media\":" + (status.Media ? JsonText(*status.Media) : "null");
  szJson += ",\"lastError\":" + FailureToJson(status.LastError);
  return szJson + "}\n";
}

StatusFile::StatusFile(Files& files, std::string szFilename)
    : m_Files(files), m_Filename(std::move(szFilename)) {}

StatusFile::~StatusFile() {
  m_Files.Remove(m_Filename);
}

bool StatusFile::Update(const PlayerStatus& status) {
  std::string szJson = PlayerStatusToJson(status);
  if (szJson == m_Written) return false;
  if (m_Files.Publish(m_Filename, szJson)) m_Written = std::move(szJson);
  return true;
}

}  // namespace vex
