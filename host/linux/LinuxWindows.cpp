#include "host/linux/LinuxWindows.h"

#include <dirent.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <random>

#include "host/linux/SystemError.h"
#include "host/linux/WholeFile.h"

namespace vex {
namespace {

constexpr int WantedSendBuffer = 4 << 20;
constexpr int MostHandlesTried = 1000;
constexpr time_t YoungSeconds = 60;

WindowHandle RandomHandle() {
  static std::random_device device;
  return static_cast<WindowHandle>(device() & 0x7FFFFFFF);
}

Descriptor NewSocket() {
  Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket.Open()) return socket;
  // The longest datagram is about twice what the kernel grants here.
  setsockopt(socket.Get(), SOL_SOCKET, SO_SNDBUF, &WantedSendBuffer, sizeof WantedSendBuffer);
  return socket;
}

/// Calls a socket function with a path as its address; ENAMETOOLONG where it does not fit.
int CallWithPath(int (*function)(int, const sockaddr*, socklen_t), int socket, const std::string& szPath) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (szPath.size() >= sizeof address.sun_path) {
    errno = ENAMETOOLONG;
    return -1;
  }
  std::memcpy(address.sun_path, szPath.data(), szPath.size());
  return function(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

/// True for a socket that no living program holds.
bool LeftOver(const std::string& szPath) {
  const Descriptor socket = NewSocket();
  return socket.Open() && CallWithPath(connect, socket.Get(), szPath) != 0 && errno == ECONNREFUSED;
}

bool IsSocketName(const std::string& szName) {
  return !szName.empty() && szName.find_first_not_of("0123456789") == std::string::npos;
}

ssize_t Send(int socket, const std::vector<uint8_t>& datagram) {
  ssize_t sent = 0;
  do sent = send(socket, datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  while (sent < 0 && errno == EINTR);
  return sent;
}

bool NoRoom(int code) {
  return code == EAGAIN || code == ENOBUFS || code == ENOMEM;
}

}  // namespace

LinuxWindows::LinuxWindows(LinuxEventLoop& loop, RuntimeFolder folder)
    : m_Loop(loop), m_Folder(std::move(folder)), m_NextHandle(RandomHandle) {}

LinuxWindows::~LinuxWindows() {
  while (!m_Windows.empty()) DestroyWindow(m_Windows.begin()->first);
}

WindowHandle LinuxWindows::NewMainWindow() {
  m_MainWindow = NewWindow();
  RemoveLeftOvers();
  if (m_IsPlayer) WritePlayerFile();
  return m_MainWindow;
}

WindowHandle LinuxWindows::NewWindow() {
  m_Folder.Prepare();
  Window window{NewSocket(),
                std::make_shared<WindowProcedure>([](const WindowMessage&) -> intptr_t { return 0; }),
                nullptr};
  if (!window.Socket.Open()) throw SystemError("Windows.NewWindow", "socket");
  for (int tried = 0; tried < MostHandlesTried; ++tried) {
    const WindowHandle hWnd = m_NextHandle();
    if (hWnd <= 0 || !Bind(window.Socket, hWnd)) continue;
    m_Windows.emplace(hWnd, std::move(window));
    TakeMessages(hWnd, true);
    return hWnd;
  }
  throw SystemError("Windows.NewWindow", m_Folder.Path(), EADDRINUSE);
}

/// False when another window has the handle; one left over from a dead program is taken over.
bool LinuxWindows::Bind(const Descriptor& socket, WindowHandle hWnd) const {
  const std::string szPath = m_Folder.WindowPath(hWnd);
  if (CallWithPath(bind, socket.Get(), szPath) == 0) return true;
  if (errno != EADDRINUSE) throw SystemError("Windows.NewWindow", szPath);
  if (!LeftOver(szPath)) return false;
  unlink(szPath.c_str());
  return CallWithPath(bind, socket.Get(), szPath) == 0;
}

/// Sockets of programs that were killed would gather over the years. Young ones are left alone: another
/// program's new window refuses connection for a moment.
void LinuxWindows::RemoveLeftOvers() const {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(m_Folder.Path().c_str()), closedir);
  if (!folder) return;
  while (const dirent* const entry = readdir(folder.get())) {
    if (!IsSocketName(entry->d_name)) continue;
    const std::string szPath = m_Folder.Path() + "/" + entry->d_name;
    struct stat state {};
    if (lstat(szPath.c_str(), &state) != 0 || !S_ISSOCK(state.st_mode)) continue;
    if (state.st_mtime + YoungSeconds < time(nullptr) && LeftOver(szPath)) unlink(szPath.c_str());
  }
}

void LinuxWindows::DestroyWindow(WindowHandle hWnd) {
  const auto found = m_Windows.find(hWnd);
  if (found == m_Windows.end()) return;
  if (hWnd == m_MainWindow) {
    if (m_IsPlayer) RemovePlayerFile();
    m_MainWindow = 0;
  }
  unlink(m_Folder.WindowPath(hWnd).c_str());
  m_Windows.erase(found);
}

void LinuxWindows::BecomePlayer() {
  m_IsPlayer = true;
  if (m_MainWindow != 0) WritePlayerFile();
}

void LinuxWindows::WritePlayerFile() const {
  const int code = WriteWholeFile(m_Folder.PlayerPath(), std::to_string(m_MainWindow), 0600);
  if (code != 0) throw SystemError("Windows.NewMainWindow", m_Folder.PlayerPath(), code);
}

void LinuxWindows::RemovePlayerFile() const {
  std::string szHandle;
  if (ReadWholeFile(m_Folder.PlayerPath(), szHandle) == 0 && szHandle == std::to_string(m_MainWindow))
    unlink(m_Folder.PlayerPath().c_str());
}

WindowProcedureReference LinuxWindows::ExchangeProcedure(WindowHandle hWnd,
                                                         WindowProcedureReference procedure) {
  const auto found = m_Windows.find(hWnd);
  if (found == m_Windows.end()) return nullptr;
  return std::exchange(found->second.Procedure, std::move(procedure));
}

intptr_t LinuxWindows::CallProcedure(const WindowProcedureReference& procedure,
                                     const WindowMessage& message) {
  // Held for the call: a procedure may take itself away.
  const WindowProcedureReference held = procedure;
  return held && *held ? (*held)(message) : 0;
}

void LinuxWindows::TakeMessages(WindowHandle hWnd, bool boolTake) {
  const auto found = m_Windows.find(hWnd);
  if (found == m_Windows.end() || boolTake == (found->second.Incoming != nullptr)) return;
  auto& [socket, procedure, incoming] = found->second;
  incoming = boolTake ? m_Loop.WatchReadable(socket.Get(), [this, hWnd] { Receive(hWnd); }) : nullptr;
}

void LinuxWindows::Receive(WindowHandle hWnd) {
  if (m_TurnOfBudget != m_Loop.Turns()) {
    m_TurnOfBudget = m_Loop.Turns();
    m_TakenThisTurn = 0;
    m_BytesThisTurn = 0;
  }
  while (m_TakenThisTurn < MostPerTurn && m_BytesThisTurn < MostBytesPerTurn && ReceiveOne(hWnd))
    ++m_TakenThisTurn;
}

/// Takes one datagram; false when none waits or the window is gone or takes none.
bool LinuxWindows::ReceiveOne(WindowHandle hWnd) {
  const auto found = m_Windows.find(hWnd);
  if (found == m_Windows.end() || !found->second.Incoming) return false;
  const int socket = found->second.Socket.Get();
  const ssize_t waiting = recv(socket, nullptr, 0, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
  if (waiting < 0) return false;
  // The procedure may pump and so receive again: the bytes that it reads must be its own.
  std::vector<uint8_t> datagram = std::exchange(m_Buffer, {});
  datagram.resize(static_cast<size_t>(waiting));
  const ssize_t size = recv(socket, datagram.data(), datagram.size(), MSG_DONTWAIT);
  if (size < 0) return false;
  m_BytesThisTurn += static_cast<size_t>(size);
  ReceivedCopyData received;
  if (DecodeCopyData(std::span(datagram).first(static_cast<size_t>(size)), received)) Deliver(hWnd, received);
  m_Buffer = std::move(datagram);
  return true;
}

void LinuxWindows::Deliver(WindowHandle hWnd, const ReceivedCopyData& received) {
  WindowMessage message;
  message.hWnd = hWnd;
  message.uMsg = WM_COPYDATA;
  message.wParam = received.Sender;
  message.lParam = reinterpret_cast<intptr_t>(&received.Copy);
  message.Copy = &received.Copy;
  CallProcedure(m_Windows.at(hWnd).Procedure, message);
}

/// A socket connected to the window, or none where the window is gone.
Descriptor LinuxWindows::Connect(WindowHandle hWnd) const {
  if (hWnd <= 0) return Descriptor();
  Descriptor socket = NewSocket();
  if (socket.Open() && CallWithPath(connect, socket.Get(), m_Folder.WindowPath(hWnd)) != 0) socket.Close();
  return socket;
}

bool LinuxWindows::Exists(WindowHandle hWnd) const {
  return m_Windows.contains(hWnd) || Connect(hWnd).Open();
}

SendResult LinuxWindows::SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) {
  if (const auto waiting = m_Receivers.find(target); waiting != m_Receivers.end())
    return waiting->second.Messages.Add(sender, copy) ? SendResult::Sent : SendResult::TooLong;
  // A socket for each message: a stopped receiver then holds up nobody else's, and a handle that has passed
  // to another program is not taken for the former one.
  Descriptor socket = Connect(target);
  if (!socket.Open()) return SendResult::Gone;
  if (Send(socket.Get(), EncodeCopyData(sender, copy)) >= 0) return SendResult::Sent;
  if (errno == EMSGSIZE) return SendResult::TooLong;
  return NoRoom(errno) ? Keep(sender, target, copy, std::move(socket)) : SendResult::Gone;
}

SendResult LinuxWindows::Keep(WindowHandle sender, WindowHandle target, const CopyData& copy,
                              Descriptor socket) {
  if (m_Receivers.size() >= MostReceivers) return SendResult::Gone;
  Receiver receiver;
  receiver.Socket = std::move(socket);
  if (!receiver.Messages.Add(sender, copy)) return SendResult::TooLong;
  receiver.Room = m_Loop.WatchWritable(receiver.Socket.Get(), [this, target] { SendKept(target); });
  m_Receivers.emplace(target, std::move(receiver));
  return SendResult::Sent;
}

/// There is room, or the receiver has died and what was kept for it is dropped. A receiver that reads as fast
/// as this sends leaves the turn to others as well.
void LinuxWindows::SendKept(WindowHandle target) {
  auto& [socket, messages, room] = m_Receivers.at(target);
  for (int sent = 0; !messages.Empty(); ++sent) {
    if (sent == MostPerTurn) return;
    const bool boolSent = Send(socket.Get(), messages.FirstDatagram()) >= 0;
    if (!boolSent && NoRoom(errno)) return;
    if (!boolSent && errno != EMSGSIZE) break;
    messages.RemoveFirst();
  }
  m_Receivers.erase(target);
}

}  // namespace vex
