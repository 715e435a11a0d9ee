#include "components/open/OutputSettings.h"

#include <algorithm>

#include "components/open/OutputUniverse.h"
#include "components/open/wire/UniversePacket.h"
#include "host/CodePage.h"
#include "settings/LibRegistryVex.h"

namespace vex {
namespace {

constexpr int32_t HighestPriority = 200;
constexpr int32_t HighestFrameRate = 250;

OutputProtocol ProtocolNamed(const std::string& szName) {
  if (szName == "sacn") return OutputProtocol::E131;
  if (szName == "artnet") return OutputProtocol::ArtNet;
  return szName == "none" ? OutputProtocol::None : OutputProtocol::Unknown;
}

}  // namespace

OutputSettings Bounded(OutputSettings settings) {
  const bool boolArtNet = settings.Protocol == OutputProtocol::ArtNet;
  const int32_t lLowest = boolArtNet ? 0 : E131LowestUniverse;
  const int32_t lHighest = boolArtNet ? ArtNetHighestUniverse : E131HighestUniverse;
  settings.FirstUniverse =
      std::clamp(settings.FirstUniverse, lLowest, lHighest - (OutputUniverse::MostUniverses - 1));
  settings.Priority = std::clamp(settings.Priority, 0, HighestPriority);
  settings.FrameRate = std::clamp(settings.FrameRate, 1, HighestFrameRate);
  return settings;
}

OutputSettings ReadOutputSettings(Registry& registry) {
  const std::string szKey = "Output";
  OutputSettings settings;
  settings.Protocol = ProtocolNamed(FoldCase(GetProductString(registry, "Protocol", szKey, "sacn")));
  settings.Host = GetProductString(registry, "Host", szKey, settings.Host);
  settings.Interface = GetProductString(registry, "Interface", szKey, settings.Interface);
  settings.FirstUniverse = GetProductLong(registry, "FirstUniverse", szKey, settings.FirstUniverse);
  settings.SourceName = GetProductString(registry, "SourceName", szKey, settings.SourceName);
  settings.Priority = GetProductLong(registry, "Priority", szKey, settings.Priority);
  settings.FrameRate = GetProductLong(registry, "FrameRate", szKey, settings.FrameRate);
  settings.MediaOffset = GetProductLong(registry, "MediaOffset", szKey, settings.MediaOffset);
  return Bounded(settings);
}

}  // namespace vex
