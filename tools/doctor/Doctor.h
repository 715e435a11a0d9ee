#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/doctor/Finding.h"

namespace vex {

/// What the examination looks at. The references outlive it.
struct DoctorNeeds {
  vex::Clock& Time;
  vex::EventLoop& Loop;
  vex::Files& FileSystem;
  vex::Registry& Settings;
  vex::Datagrams& Network;
  vex::Facilities& Machine;
  vex::Processes& Programs;
  vex::MessageBoxes& Boxes;
  /// The settings' file as the machine writes paths; empty where they are kept elsewhere.
  std::string SettingsFile;
  /// The running player's window, 0 for none.
  WindowHandle Player = 0;
  /// Why a song's file cannot be played, or nothing; empty where songs need only exist.
  std::function<std::string(const std::string& szPath)> SongTrouble;
  /// This machine's own words for what helps.
  PlaceWords Places = {};
};

/// Looks a machine over before the season, from the account that plays to the last song of the last show:
/// every line is good, a warning or bad, and what is not good names its remedy. Nothing is changed, played or
/// sent.
///
/// Lines come in the order in which a start would need things; each subject has one line when it is good,
/// and as many as it has troubles when it is not.
[[nodiscard]] std::vector<Finding> Examine(const DoctorNeeds& needs);

}  // namespace vex
