#include "tray/channel/TrayWindow.h"

#include "basic/Error.h"
#include "monitor/Msg.h"

namespace vex {

namespace {

constexpr int32_t LookMs = 1000;
constexpr Elapsed RegisterAgain{30'000'000'000};
constexpr Elapsed AnswerTakes{5'000'000'000};

}  // namespace

TrayWindow::TrayWindow(Host& host)
    : m_Host(host),
      m_Window(host.Windows().NewWindow()),
      m_Timer(host.EventLoop().NewTimer(TimerOrder::Component)) {
  auto procedure = std::make_shared<WindowProcedure>([this](const WindowMessage& message) {
    if (message.uMsg == WM_COPYDATA && message.Copy) Take(CopyDataToString(message.Copy));
    return intptr_t{1};
  });
  m_Host.Windows().ExchangeProcedure(m_Window, procedure);
  m_Timer->Interval(LookMs);
  m_Timer->Tick([this] { Look(); });
}

TrayWindow::~TrayWindow() {
  m_Host.Windows().DestroyWindow(m_Window);
}

void TrayWindow::Begin() {
  Look();
  m_Timer->Enabled(true);
}

bool TrayWindow::Send(int32_t lMessageType, const std::string& szText) {
  return m_Player != 0 && SendVexMessage(m_Host.Windows(), m_Window, m_Player, lMessageType, szText);
}

bool TrayWindow::PlayerAnswers() const {
  return !m_Owes || m_Host.Clock().Elapsed() - *m_Owes < AnswerTakes;
}

void TrayWindow::Look() {
  const WindowHandle player = m_Host.PlayerFinder().FindPlayer();
  if (player != m_Player) {
    const bool boolWent = m_Player != 0;
    m_Player = player;
    m_Owes.reset();
    if (boolWent && Player) Player(false);
    if (m_Player == 0) return;
    if (Player) Player(true);
    Register();
  } else if (m_Player != 0 && m_Host.Clock().Elapsed() - m_Registered >= RegisterAgain) {
    Register();
  }
}

// A player that has stopped keeps what it is owed for: asking again does not give it more time.
void TrayWindow::Register() {
  m_Registered = m_Host.Clock().Elapsed();
  if (!m_Owes) m_Owes = m_Registered;  // before it is asked: the answer may come within the call
  (void)Send(MessageTrayWindow, "");
}

void TrayWindow::Take(const std::string& szMessage) {
  const std::string szText = MessageTextOf(szMessage);
  switch (MessageTypeOf(szMessage)) {
    case MessageStatus:
      if (Status) Status(szText);
      break;
    case MessageCurrentShow:
      m_Owes.reset();
      if (CurrentShow) CurrentShow(szText);
      break;
    case MessageNextShow:
      if (NextShow) NextShow(szText);
      break;
    case MessageInitialized:
      if (Initialized) Initialized();
      break;
    default:
      break;
  }
}

}  // namespace vex
