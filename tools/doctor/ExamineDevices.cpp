#include <array>

#include "basic/DateTime.h"
#include "basic/Error.h"
#include "components/ComponentTable.h"
#include "components/open/OutputSettings.h"
#include "components/open/wire/UniversePacket.h"
#include "host/Clock.h"
#include "host/CodePage.h"
#include "host/Datagrams.h"
#include "host/Facilities.h"
#include "host/Files.h"
#include "monitor/Installation.h"
#include "settings/LibRegistryVex.h"
#include "settings/VideoPreferences.h"
#include "tools/doctor/Examination.h"

// What a show is played with: components, lights, link, sound, display, clock and disk.

namespace vex {
namespace {

using Verdict = FacilityAnswer::Verdict;

constexpr uint32_t Broadcast = 0xFFFFFFFF;
constexpr uint32_t Loopback = 0x7F000000;
constexpr uint32_t LoopbackMask = 0xFF000000;
constexpr uint64_t MegaByte = 1'000'000;
constexpr uint64_t LittleSpace = 200 * MegaByte;
constexpr uint64_t TooLittleSpace = 20 * MegaByte;
constexpr int32_t EarliestYear = 2024;

/// What the settings choose, or nothing where they choose what there is not.
ChosenComponents Chosen(const Examination& examination) {
  try {
    return ComponentsChosen(examination.Needs.Settings);
  } catch (const Error&) {
    return {};
  }
}

/// Where lighting data are sent to; false, after a line, where that cannot be told.
bool OutputAddress(Examination& examination, const OutputSettings& settings, uint32_t& address) {
  if (settings.Host.empty()) {
    const bool boolE131 = settings.Protocol == OutputProtocol::E131;
    address = boolE131 ? E131Group(static_cast<uint16_t>(settings.FirstUniverse)) : Broadcast;
    return true;
  }
  if (examination.Needs.Network.Resolve(settings.Host, address)) return true;
  examination.Bad("lights", "the name service does not know the host \"" + AnsiToUtf8(settings.Host) + "\"",
                  "correct Host in the subkey Output, or give its dotted address");
  return false;
}

void ExamineRoute(Examination& examination, const OutputSettings& settings) {
  uint32_t address = 0;
  uint32_t interfaceAddress = 0;
  if (!settings.Interface.empty() && !AddressFromText(settings.Interface, interfaceAddress)) {
    examination.Bad("lights", "the interface \"" + AnsiToUtf8(settings.Interface) + "\" is no dotted address",
                    "correct Interface in the subkey Output");
    return;
  }
  if (!OutputAddress(examination, settings, address)) return;
  const bool boolE131 = settings.Protocol == OutputProtocol::E131;
  std::string szWay = boolE131 ? "E1.31" : "Art-Net";
  szWay += " to " + (settings.Host.empty() ? std::string(boolE131 ? "multicast" : "broadcast")
                                           : AnsiToUtf8(settings.Host));
  const FacilityAnswer route = examination.Needs.Machine.RouteTo(address, interfaceAddress);
  if (route.Is == Verdict::No)
    examination.Bad("lights", szWay + " has no way out: " + route.Words,
                    "see to network cable and address, or set Host and Interface in the subkey Output");
  else if (route.Is == Verdict::Yes)
    examination.Good("lights", szWay + ", " + route.Words);
  else
    examination.Warn("lights", szWay + "; whether there is a way out cannot be asked here",
                     "look whether the lights answer: vexctl play SHOW --for 30");
}

}  // namespace

void ExamineComponents(Examination& examination) {
  try {
    const ChosenComponents chosen = ComponentsChosen(examination.Needs.Settings);
    const bool boolRecorded = chosen.Lights == "recorded" || chosen.Media == "recorded";
    const std::string szFound = "lights \"" + chosen.Lights + "\", media \"" + chosen.Media + "\"";
    if (boolRecorded)
      examination.Warn("components", szFound + ": what is recorded is neither seen nor heard",
                       "set Lights and Media in the subkey Components, unless this is a trial");
    else
      examination.Good("components", szFound);
  } catch (const Error& error) {
    examination.Bad("components", AnsiToUtf8(error.Description),
                    "correct that setting; the player does not start with it");
  }
}

void ExamineLights(Examination& examination) {
  if (Chosen(examination).Lights != "open") return;
  const OutputSettings settings = ReadOutputSettings(examination.Needs.Settings);
  if (settings.Protocol == OutputProtocol::None)
    examination.Warn("lights", "the protocol is \"none\": nothing is sent",
                     "set Protocol in the subkey Output to sacn or artnet");
  else if (settings.Protocol == OutputProtocol::Unknown)
    examination.Bad("lights", "the protocol in the settings is not known: nothing is sent",
                    "set Protocol in the subkey Output to sacn, artnet or none");
  else
    ExamineRoute(examination, settings);
}

void ExamineLink(Examination& examination) {
  const DoctorNeeds& needs = examination.Needs;
  Installation installation(needs.Settings, needs.FileSystem, needs.Programs, needs.Boxes);
  const auto port = static_cast<uint16_t>(installation.LocalPort());
  const std::string szPort = "port " + std::to_string(port);
  uint32_t remote = 0;
  if (!installation.On()) {
    examination.Good("link", "off, so no trigger comes in; vexctl link on switches it");
    return;
  }
  if (!needs.Network.Resolve(installation.RemoteHost(), remote)) {
    examination.Bad(
        "link", "the name service does not know the host \"" + AnsiToUtf8(installation.RemoteHost()) + "\"",
        "correct RemoteHost in the subkey XLK, or give its dotted address");
    return;
  }
  if (needs.Player == 0) {
    try {
      const bool boolInside = (remote & LoopbackMask) == Loopback;
      const auto tried = needs.Network.NewReceiver(needs.Loop, {boolInside ? remote : 0, port},
                                                   [](const DatagramAddress&, std::span<const uint8_t>) {});
    } catch (const Error& error) {
      examination.Bad("link", szPort + " cannot be opened: " + error.Description,
                      "end the program that holds it, or set another LocalPort in the subkey XLK");
      return;
    }
  }
  examination.Good("link", "on, " + szPort + ", triggers from " + AnsiToUtf8(installation.RemoteHost()));
}

void ExamineSound(Examination& examination) {
  if (Chosen(examination).Media != "mpv") return;
  if (!examination.HasSongs) {
    examination.Good("sound", "no scheduled show names a song");
    return;
  }
  const std::string szOutput = GetProductString(examination.Needs.Settings, "AudioOutput", "Components", "");
  if (szOutput == "null") {
    examination.Warn("sound", "the settings choose the output \"null\": songs are silent",
                     "take AudioOutput out of the subkey Components");
    return;
  }
  const FacilityAnswer sound = examination.Needs.Machine.SoundDevice();
  if (sound.Is == Verdict::No)
    examination.Bad("sound", sound.Words,
                    "connect a card, start the sound server, or add the account to the group audio");
  else if (sound.Is == Verdict::Yes)
    examination.Good("sound", sound.Words);
  else
    examination.Warn("sound", sound.Words.empty() ? "it cannot be asked here" : sound.Words,
                     "play a song and listen");
}

void ExamineDisplay(Examination& examination) {
  if (Chosen(examination).Media != "mpv") return;
  const VideoPreferences preferences = GetVideoPreferences(examination.Needs.Settings);
  if (!examination.HasSongs) {
    examination.Good("display", "no scheduled show names a video");
    return;
  }
  if (!preferences.DisplayVideos && !preferences.DisplayVisualizations) {
    examination.Good("display", "none needed: the settings show no videos");
    return;
  }
  const FacilityAnswer display = examination.Needs.Machine.Display();
  if (display.Is == Verdict::Yes)
    examination.Good("display", display.Words);
  else
    examination.Warn("display",
                     (display.Words.empty() ? "it cannot be asked here" : display.Words) +
                         "; of videos only the sound plays without one",
                     "start the player in the desktop's session, or set DisplayVideos to 0 in the subkey "
                     "Shared\\VideoPreferences");
}

void ExamineClock(Examination& examination) {
  const DateTime dtNow = examination.Needs.Time.Now();
  const std::string szNow = "it is " + FormatDateTime(dtNow) + " here";
  const FacilityAnswer clock = examination.Needs.Machine.ClockSynchronised();
  if (dtNow.Year() < EarliestYear)
    examination.Bad("clock", szNow + ", which cannot be", "set date, time and time zone: timedatectl");
  else if (clock.Is == Verdict::No)
    examination.Warn("clock", clock.Words + "; " + szNow,
                     "switch a time service on: timedatectl set-ntp true");
  else if (clock.Is == Verdict::Yes)
    examination.Good("clock", clock.Words + "; " + szNow);
  else
    examination.Warn("clock", "whether a time service keeps it cannot be asked here; " + szNow,
                     "compare it with another clock");
}

void ExamineDisk(Examination& examination) {
  const bool boolData = !examination.UserDataPath.empty();
  const std::string szPath = boolData ? examination.Needs.FileSystem.HostPath(examination.UserDataPath)
                                      : examination.Needs.SettingsFile;
  if (szPath.empty()) return;
  const auto space = examination.Needs.Machine.Space(szPath);
  if (!space) {
    examination.Warn("disk space", "that of " + szPath + " cannot be asked here", "look for yourself");
    return;
  }
  const std::string szFound = std::to_string(space->Free / MegaByte) + " MB free at " + szPath;
  if (space->ReadOnly)
    examination.Bad("disk space", szPath + " lies on a disk that is read-only",
                    "look what the kernel says of it (dmesg): such a disk is often about to fail");
  else if (space->Free < TooLittleSpace)
    examination.Bad("disk space", szFound, "make room: schedules can no longer be changed");
  else if (space->Free < LittleSpace)
    examination.Warn("disk space", szFound, "make room before the season");
  else
    examination.Good("disk space", szFound);
}

}  // namespace vex
