#pragma once

#include <string>
#include <vector>

#include "host/Host.h"
#include "tray/channel/TrayWindow.h"
#include "tray/web/Site.h"

namespace vex {

/// Asks of the player what somebody at the page wants; on the loop.
[[nodiscard]] Outcome AskPlayer(TrayWindow& channel, Host& host, const Action& action);

/// The week that begins today as a picture, from the schedules in the user data folder; empty where they
/// cannot be understood.
[[nodiscard]] std::string WeekPicture(Host& host);
/// The show files in the user data folder and those that the schedules name, UTF-8, each once.
[[nodiscard]] std::vector<std::string> ShowNames(Host& host);

}  // namespace vex
