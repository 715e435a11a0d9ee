#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <deque>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "demo/lightview/Picture.h"
#include "demo/lightview/Receiver.h"
#include "demo/lightview/Screen.h"

// A live picture of the lights, made from the packets on the network and from nothing else. Status lines that
// arrive on standard input scroll below it. Without a terminal it prints those lines as they come and, every
// few seconds, what the receiver has counted. It ends with the end of its input, or when interrupted.

namespace vex {
namespace {

using Moments = std::chrono::steady_clock;

constexpr uint16_t LightingPort = 5568;
constexpr auto FrameTime = std::chrono::milliseconds(50);
constexpr auto ReportTime = std::chrono::seconds(5);

struct Arguments {
  std::string PictureFile;
  std::string CountsFile;
  std::string Address = "127.0.0.1";
};

constexpr const char* Usage =
    "usage: lightview [--address A] [--counts FILE] PICTURE\n"
    "Draws the lights of PICTURE from E1.31 packets that arrive at address A (127.0.0.1) by UDP port 5568.\n"
    "Lines on standard input are shown below. --counts writes what was received as JSON at the end.\n";

std::optional<Arguments> ParseArguments(const std::vector<std::string>& words) {
  Arguments arguments;
  for (size_t i = 0; i < words.size(); ++i) {
    if ((words[i] == "--address" || words[i] == "--counts") && i + 1 < words.size()) {
      (words[i] == "--address" ? arguments.Address : arguments.CountsFile) = words[i + 1];
      ++i;
    } else if (words[i].empty() || words[i][0] == '-' || !arguments.PictureFile.empty()) {
      return std::nullopt;
    } else {
      arguments.PictureFile = words[i];
    }
  }
  if (arguments.PictureFile.empty()) return std::nullopt;
  return arguments;
}

/// Beside others who listen there; only what this machine itself sends.
void JoinGroup(int32_t lSocket, in_addr group) {
  constexpr int32_t on = 1;
  setsockopt(lSocket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const ip_mreq membership{group, {htonl(INADDR_LOOPBACK)}};
  setsockopt(lSocket, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership);
}

int32_t OpenSocket(const std::string& szAddress) {
  const int32_t lSocket = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(LightingPort);
  if (inet_pton(AF_INET, szAddress.c_str(), &address.sin_addr) != 1) {
    throw std::runtime_error("\"" + szAddress + "\" is no address like 127.0.0.1");
  }
  if (IN_MULTICAST(ntohl(address.sin_addr.s_addr))) JoinGroup(lSocket, address.sin_addr);
  constexpr int32_t bufferSize = 1 << 20;
  setsockopt(lSocket, SOL_SOCKET, SO_RCVBUF, &bufferSize, sizeof bufferSize);
  if (lSocket < 0 || bind(lSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("cannot listen at " + szAddress + " port 5568 (" + std::strerror(errno) +
                             "); end the other program that receives lights there");
  }
  return lSocket;
}

/// Interrupt and termination as something that can be waited for beside the packets.
int32_t OpenSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

class Viewer {
 public:
  explicit Viewer(const Arguments& arguments)
      : m_Arguments(arguments),
        m_Picture(ReadPicture(arguments.PictureFile)),
        m_Socket(OpenSocket(arguments.Address)),
        m_Signals(OpenSignals()) {
    if (isatty(STDOUT_FILENO) != 0) m_Screen = std::make_unique<Screen>(m_Picture, TerminalColours());
  }

  ~Viewer() {
    close(m_Socket);
    close(m_Signals);
  }
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  void Run() {
    const bool boolInput = isatty(STDIN_FILENO) == 0;
    auto nextFrame = Moments::now() + FrameTime;
    while (!m_Ended) {
      std::array<pollfd, 3> waited{pollfd{m_Socket, POLLIN, 0}, pollfd{m_Signals, POLLIN, 0},
                                   pollfd{boolInput ? STDIN_FILENO : -1, POLLIN, 0}};
      const auto wait = std::chrono::ceil<std::chrono::milliseconds>(nextFrame - Moments::now());
      poll(waited.data(), waited.size(), static_cast<int>(std::max<int64_t>(0, wait.count())));
      if (waited[0].revents != 0) ReceivePackets();
      if (waited[1].revents != 0) m_Ended = true;
      if (waited[2].revents != 0) ReadLines();
      if (Moments::now() < nextFrame && !m_Ended) continue;
      nextFrame = Moments::now() + FrameTime;
      Show();
    }
  }

  void WriteCounts() const {
    if (m_Arguments.CountsFile.empty()) return;
    nlohmann::ordered_json counts{{"packets", m_Receiver.Packets()},     {"lost", m_Receiver.Lost()},
                                  {"malformed", m_Receiver.Malformed()}, {"changes", m_Receiver.Changes()},
                                  {"lamps", m_Picture.Lights.size()},    {"mostLit", m_MostLit}};
    for (const auto& [number, universe] : m_Receiver.Universes()) counts["universes"].push_back(number);
    std::ofstream(m_Arguments.CountsFile) << counts.dump() << "\n";
  }

 private:
  void ReceivePackets() {
    std::array<uint8_t, 1500> buffer{};
    for (;;) {
      const ssize_t count = recv(m_Socket, buffer.data(), buffer.size(), 0);
      if (count < 0) return;
      m_Receiver.Take(std::span(buffer).first(static_cast<size_t>(count)));
    }
  }

  void ReadLines() {
    std::array<char, 4096> buffer{};
    const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count <= 0) {
      m_Ended = true;
      return;
    }
    m_Input.append(buffer.data(), static_cast<size_t>(count));
    for (size_t end = m_Input.find('\n'); end != std::string::npos; end = m_Input.find('\n')) {
      TakeLine(m_Input.substr(0, end));
      m_Input.erase(0, end + 1);
    }
  }

  void TakeLine(const std::string& szLine) {
    if (!m_Screen) std::cout << szLine << std::endl;
    constexpr size_t most = 500;
    m_Lines.push_back(szLine);
    if (m_Lines.size() > most) m_Lines.pop_front();
  }

  [[nodiscard]] size_t LitLamps() const {
    size_t lit = 0;
    for (const Picture::Light& light : m_Picture.Lights) {
      bool boolLit = false;
      for (int32_t i = 0; i < 3; ++i) boolLit |= m_Receiver.Level(light.Universe, light.Slot + i) > 0;
      lit += boolLit ? 1U : 0U;
    }
    return lit;
  }

  [[nodiscard]] std::string Counts(size_t lit) const {
    std::string szText = " E1.31 packets:";
    for (const auto& [number, universe] : m_Receiver.Universes()) {
      szText += " universe " + std::to_string(number) + " " + std::to_string(universe.Packets) +
                (universe.Ended ? " (ended)," : ",");
    }
    if (m_Receiver.Universes().empty()) szText += " none yet,";
    return szText + " lost " + std::to_string(m_Receiver.Lost()) + " · lamps lit " + std::to_string(lit) +
           "/" + std::to_string(m_Picture.Lights.size()) + " ";
  }

  void Show() {
    const size_t lit = LitLamps();
    m_MostLit = std::max(m_MostLit, lit);
    if (m_Screen) {
      m_Screen->Draw(m_Receiver, Counts(lit), m_Lines);
    } else if (Moments::now() >= m_NextReport) {
      m_NextReport = Moments::now() + ReportTime;
      std::cout << "lights:" << Counts(lit) << std::endl;
    }
  }

  Arguments m_Arguments;
  Picture m_Picture;
  Receiver m_Receiver;
  int32_t m_Socket;
  int32_t m_Signals;
  std::unique_ptr<Screen> m_Screen;
  std::string m_Input;
  std::deque<std::string> m_Lines;
  size_t m_MostLit = 0;
  Moments::time_point m_NextReport = Moments::now() + ReportTime;
  bool m_Ended = false;
};

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.size() == 1 && words[0] == "--help") {
    std::cout << vex::Usage;
    return 0;
  }
  const auto arguments = vex::ParseArguments(words);
  if (!arguments) {
    std::cerr << vex::Usage;
    return 2;
  }
  try {
    vex::Viewer viewer(*arguments);
    viewer.Run();
    viewer.WriteCounts();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "lightview: " << error.what() << "\n";
    return 1;
  }
}
