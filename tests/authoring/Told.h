#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/virtual/VirtualFiles.h"
#include "tools/authoring/FileOutcome.h"

namespace vex {

/// "number/source/description" of a failure, "done" without one.
inline std::string Told(const FileOutcome& outcome) {
  if (!outcome.Failure) return "done";
  return std::to_string(outcome.Failure->Number) + "/" + outcome.Failure->Source + "/" +
         outcome.Failure->Description;
}

inline std::string Contents(Files& files, const std::string& szPath) {
  std::string szText;
  return files.Read(szPath, szText) ? szText : "(none)";
}

inline const std::string Conflict = "/Schedule.AddShowEvent/Can't add event -- event conflict";
inline const std::string NoShowEvent = "1/Schedule.RemoveShowEvent/Can not remove non-show event";

/// Monday 18:00 to 22:00.
inline const std::string MondayShow = "((165600,2,(,0,eve.shw),151200))";
/// 24 December 2026, a Thursday, 16:00 to 23:00.
inline const std::string ChristmasEve = "((2026-12-24,((428400,2,(,0,x.shw),403200))))";

}  // namespace vex
