#include "programs/vexctl/MediaLook.h"

#include "components/machine/MachineComponents.h"
#include "components/open/media/MediaProbe.h"
#include "components/recorded/MediaFacts.h"
#include "host/CodePage.h"
#include "settings/LibRegistryVex.h"

namespace vex {

MediaLook::MediaLook(CommandContext& context)
    : MediaLook(context, GetProductString(context.Machine.Registry(), "Media", "Components", "")) {}

MediaLook::MediaLook(CommandContext& context, const std::string& szMediaSetting) {
  const auto newControlProbe = ComponentsOfThisMachine().NewControlProbe;
  if (newControlProbe == nullptr || FoldCase(szMediaSetting) == "mpv") {
    m_Look = [probe = std::make_shared<MediaProbe>(context.Machine.Files())](const std::string& szPath) {
      return probe->Look(szPath);
    };
    return;
  }
  m_Look = [probe = newControlProbe(context.Machine.Clock(), context.Machine.EventLoop())](
               const std::string& szPath) {
    ProbedMedia media = probe(szPath);
    // Not every control can tell what it plays; its name can.
    if (media.MediaType.empty() && media.Failure.empty())
      media.MediaType = IsVideoName(szPath) ? "video" : "audio";
    return media;
  };
}

}  // namespace vex
