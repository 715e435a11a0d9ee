#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "components/open/media/MpvMediaPlayer.h"
#include "host/Host.h"

namespace vex::test {

using namespace std::chrono_literals;

/// The real library on real files, with no sound card.
class MpvRig : public testing::Test {
 protected:
  MpvRig() {
    char pattern[] = "/tmp/vexmediaXXXXXX";
    m_Folder = mkdtemp(pattern);
    setenv("VEX_RUNTIME_DIR", (m_Folder + "/run").c_str(), 1);
    setenv("VEX_SETTINGS", (m_Folder + "/settings.reg").c_str(), 1);
    m_Host = NativeHost();
    MakePlayer();
  }
  ~MpvRig() override {
    m_Player.reset();
    m_Host.reset();
    std::filesystem::remove_all(m_Folder);
  }

  void MakePlayer(int32_t lPatienceMs = 30000) {
    m_Player = std::make_shared<MpvMediaPlayer>(m_Host->Clock(), m_Host->EventLoop(), m_Host->Files(),
                                                MpvSettings{0, "null", lPatienceMs});
    m_Player->ErrorEvent = [this] {
      m_StateAtError = m_Player->PlayState();
      for (int32_t i = 0; i < m_Player->ErrorCount(); ++i) m_Errors += m_Player->ErrorDescription(i) + "|";
      ++m_ErrorEvents;
    };
    m_Player->OpenStateChange = [this](int32_t lState) {
      m_OpenStates.push_back(lState);
      m_MediaType = m_Player->CurrentMedia()->GetItemInfo("MediaType");
    };
    m_Player->Changed = [this] { ++m_Changes; };
  }

  std::string Path(const std::string& szName) const {
    return m_Host->Files().SystemPath(m_Folder + "/" + szName);
  }

  /// A real wave file: 8 kHz, 16 bit, one channel, a tone.
  std::string Wave(const std::string& szName, double seconds) const {
    constexpr uint32_t rate = 8000;
    const auto count = static_cast<uint32_t>(seconds * rate);
    std::ofstream file(m_Folder + "/" + szName, std::ios::binary);
    const auto number = [&file](uint32_t value, int bytes) {
      for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i)));
    };
    file << "RIFF";
    number(36 + count * 2, 4);
    file << "WAVEfmt ";
    number(16, 4);
    number(1, 2);
    number(1, 2);
    number(rate, 4);
    number(rate * 2, 4);
    number(2, 2);
    number(16, 2);
    file << "data";
    number(count * 2, 4);
    for (uint32_t i = 0; i < count; ++i) {
      number(static_cast<uint32_t>(static_cast<int32_t>(8000 * std::sin(i * 0.3))) & 0xFFFF, 2);
    }
    return Path(szName);
  }

  void Play(const std::string& szPath) {
    m_Player->CurrentMedia(m_Player->NewMedia(szPath));
    m_Player->CurrentPosition(0);
    m_Player->Play();
  }

  /// Runs the loop until it is so, at the longest ten seconds.
  bool RunUntil(const std::function<bool()>& isSo) {
    const Elapsed end = m_Host->Clock().Elapsed() + 10s;
    const auto timer = m_Host->EventLoop().NewTimer(TimerOrder::Component);
    timer->Interval(2);
    timer->Tick([&] {
      if (isSo() || m_Host->Clock().Elapsed() > end) m_Host->EventLoop().Quit();
    });
    timer->Enabled(true);
    m_Host->EventLoop().Run();
    return isSo();
  }
  bool RunUntilStopped() {
    return RunUntil([this] { return m_Player->PlayState() == MediaPlayer::StateStopped; });
  }
  bool RunUntilPosition(double seconds) {
    return RunUntil([this, seconds] { return m_Player->CurrentPosition() >= seconds; });
  }

  std::string m_Folder;
  std::unique_ptr<Host> m_Host;
  std::shared_ptr<MpvMediaPlayer> m_Player;
  std::vector<int32_t> m_OpenStates;
  std::string m_MediaType;
  std::string m_Errors;
  int32_t m_ErrorEvents = 0;
  int32_t m_StateAtError = 0;
  int32_t m_Changes = 0;
};

}  // namespace vex::test
