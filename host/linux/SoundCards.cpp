#include "host/linux/SoundCards.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace vex {
namespace {

/// "pcmC0D3p" plays, "pcmC0D0c" records; the digits behind the C are the card.
std::string CardOf(const std::string& szDevice) {
  if (!szDevice.starts_with("pcmC") || !szDevice.ends_with("p")) return "";
  return szDevice.substr(4, szDevice.find('D', 4) - 4);
}

std::string CardName(const std::string& szNames, const std::string& szCard) {
  std::string szId;
  std::ifstream(szNames + "/card" + szCard + "/id") >> szId;
  return "sound card " + szCard + (szId.empty() ? "" : " (" + szId + ")");
}

std::vector<std::string> DevicesIn(const std::string& szFolder) {
  std::vector<std::string> names;
  std::error_code problem;
  for (const auto& entry : std::filesystem::directory_iterator(szFolder, problem))
    names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

}  // namespace

SoundCards FindSoundCards(const std::string& szDevices, const std::string& szNames) {
  SoundCards cards;
  for (const std::string& szDevice : DevicesIn(szDevices)) {
    const std::string szCard = CardOf(szDevice);
    if (szCard.empty()) continue;
    const auto path = std::filesystem::path(szDevices) / szDevice;
    const bool boolUsable = access(path.c_str(), R_OK | W_OK) == 0;
    std::string& szFound = boolUsable ? cards.Usable : cards.Locked;
    if (szFound.empty()) szFound = CardName(szNames, szCard);
  }
  return cards;
}

}  // namespace vex
