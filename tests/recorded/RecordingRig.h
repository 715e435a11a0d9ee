#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/recorded/Recorder.h"
#include "host/virtual/VirtualHost.h"

namespace vex {

/// A recorder on a virtual machine, its lines read back without their time.
struct RecordingRig {
  VirtualHost Host{DateTime::FromParts(2026, 12, 24, 18, 0, 5)};
  std::vector<std::string> Lines;
  std::shared_ptr<Recorder> Recording = std::make_shared<Recorder>(
      Host.Clock(), [this](std::string_view, std::string_view, const JsonLine& line) {
        const std::string szText = line.Text();
        Lines.push_back("{" + szText.substr(szText.find("\"kind\"")));
      });

  void Advance(int64_t milliseconds) { Host.EventLoop().Advance(milliseconds); }
};

}  // namespace vex
