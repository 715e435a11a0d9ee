#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <random>

#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

/// A machine that leaves messages waiting with their senders, as the real one does: what the player does not
/// take up is kept here until it does.
class PatientWindows : public Windows {
 public:
  explicit PatientWindows(Windows& windows) : m_Windows(windows) {}

  WindowHandle NewMainWindow() override { return m_hWnd = m_Windows.NewMainWindow(); }
  WindowHandle NewWindow() override { return m_Windows.NewWindow(); }
  void DestroyWindow(WindowHandle hWnd) override { m_Windows.DestroyWindow(hWnd); }
  WindowProcedureReference ExchangeProcedure(WindowHandle hWnd, WindowProcedureReference procedure) override {
    return m_Windows.ExchangeProcedure(hWnd, std::move(procedure));
  }
  intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) override {
    return m_Windows.CallProcedure(procedure, message);
  }
  bool Exists(WindowHandle hWnd) const override { return m_Windows.Exists(hWnd); }
  SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) override {
    return m_Windows.SendCopyData(sender, target, copy);
  }
  bool Unsent(WindowHandle) const override { return false; }
  void TakeMessages(WindowHandle hWnd, bool boolTake) override {
    if (hWnd == m_hWnd) m_Takes = boolTake;
  }

  void Post(std::string szPayload) { m_Waiting.push_back(std::move(szPayload)); }
  /// Hands over what the player takes now, but not more than that.
  void Deliver(int most) {
    for (; most > 0 && m_Takes && !m_Waiting.empty(); --most) {
      const std::string szPayload = std::move(m_Waiting.front());
      m_Waiting.pop_front();
      ++Delivered;
      m_Windows.SendCopyData(0, m_hWnd, {3, static_cast<uint32_t>(szPayload.size()), szPayload.data()});
    }
  }
  [[nodiscard]] bool Waiting() const { return !m_Waiting.empty(); }

  int64_t Delivered = 0;

 private:
  Windows& m_Windows;
  WindowHandle m_hWnd = 0;
  bool m_Takes = true;
  std::deque<std::string> m_Waiting;
};

/// Each look at elapsed time costs a tenth of a millisecond of it, until the machine's own time moves on.
class BusyClock : public Clock {
 public:
  explicit BusyClock(const Clock& clock) : m_Clock(clock) {}
  DateTime Now() const override { return m_Clock.Now(); }
  double SecondsOfDay() const override { return m_Clock.SecondsOfDay(); }
  std::string ShortTime() const override { return m_Clock.ShortTime(); }
  vex::Elapsed Elapsed() const override {
    if (m_Clock.Elapsed() != m_Last) m_Looks = 0;
    m_Last = m_Clock.Elapsed();
    return m_Last + m_Looks++ * std::chrono::microseconds(100);
  }

 private:
  const Clock& m_Clock;
  mutable vex::Elapsed m_Last{0};
  mutable int64_t m_Looks = 0;
};

struct Message {
  std::string Payload;
  std::string Line;  ///< what the player writes about it; empty for nothing
};

constexpr char WrongFields[] =
    "3 Show on demand error: Unexpected number of fields in serialized monitored show event: ";

/// Messages of all types but the two that end the player, and of none.
const std::vector<Message>& Kinds() {
  static const std::vector<Message> kinds = {
      {"", ""},
      {std::string(1, '\0'), ""},
      {"0", ""},
      {"00", ""},
      {"zz", ""},
      {"\xFF\xFE", ""},
      {"-1", ""},
      {"03(a,b)", ""},
      {"04", ""},
      {"06ON", ""},
      {"06", ""},
      {"07" + std::string(500, 'x'), ""},
      {"10", ""},
      {"11", ""},
      {"12", ""},
      {"99", ""},
      {"02", ""},
      {"05", "1 Schedule loaded"},
      {"05whatever", "1 Schedule loaded"},
      {"09", "1 Request to clear show on demand received"},
      {"09(eve.shw,(F,,F,),0,F)", "1 Request for show on demand received: eve.shw"},
      {"09(a)", std::string(WrongFields) + "1"},
      {"09(a,b)", std::string(WrongFields) + "2"},
      {"09(a,b,c)", std::string(WrongFields) + "3"},
  };
  return kinds;
}

/// Whether the line is one of those that messages cause.
bool IsCaused(const std::string& szLine) {
  return std::any_of(Kinds().begin(), Kinds().end(),
                     [&](const Message& kind) { return !kind.Line.empty() && kind.Line == szLine; });
}

class FloodTest : public testing::Test {
 protected:
  FloodTest() {
    m_Rig.Desktop = &m_Windows;
    m_Rig.Show("eve.shw", {"", "a.seq", "", ""});
    m_Rig.Week({{"eve.shw", 4, "17:00:00", "23:00:00"}});
  }
  ~FloodTest() override { m_Rig.Monitor.reset(); }  // before the windows it uses

  void Begin() {
    m_Rig.Start();
    m_Rig.Run(100);
    ASSERT_EQ(m_Rig.CurrentFilename(), "eve.shw");
    m_Rig.AllLines.clear();
  }

  /// Posts so many messages; what they are drawn from is the seed.
  void Flood(int count, uint32_t seed = 1) {
    std::mt19937 random(seed);
    for (int i = 0; i < count; ++i) {
      const Message& message = Kinds()[random() % Kinds().size()];
      m_Windows.Post(message.Payload);
      if (!message.Line.empty()) m_Expected.push_back(message.Line);
    }
  }

  [[nodiscard]] Lines Caused() const {
    Lines lines;
    std::copy_if(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), std::back_inserter(lines), IsCaused);
    return lines;
  }

  /// Lets senders go on, sixteen messages at a time and many times a millisecond, until nothing waits; the
  /// milliseconds that it took.
  int RunUntilTaken() {
    int milliseconds = 0;
    for (; m_Windows.Waiting() && milliseconds < 1'000'000; ++milliseconds) {
      for (int turn = 0; turn < 20; ++turn) m_Windows.Deliver(16);
      m_Rig.Run(1);
    }
    m_Rig.Run(1000);
    return milliseconds;
  }

  MonitorRig m_Rig;
  PatientWindows m_Windows{m_Rig.Host.Windows()};
  BusyClock m_Busy{m_Rig.Host.Clock()};
  Lines m_Expected;
};

TEST_F(FloodTest, AHundredThousandMessagesAreHandledInOrderAndTheShowGoesOn) {
  Begin();
  Flood(100'000);
  RunUntilTaken();
  EXPECT_TRUE(Caused() == m_Expected) << Caused().size() << " lines of " << m_Expected.size();
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  EXPECT_FALSE(m_Rig.Logged("1 Finished show: eve.shw"));
}

TEST_F(FloodTest, WhereHandlingTakesTimeAllOfThemAreStillHandledInOrder) {
  m_Rig.Time = &m_Busy;
  Begin();
  Flood(3000);
  RunUntilTaken();
  EXPECT_TRUE(Caused() == m_Expected) << Caused().size() << " lines of " << m_Expected.size();
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(FloodTest, ATickStopsAfterAWhileAndOthersTickInBetween) {
  m_Rig.Time = &m_Busy;
  Begin();
  constexpr int count = 50;
  for (int i = 0; i < count; ++i) m_Windows.Post("05");
  m_Windows.Deliver(count);
  EXPECT_FALSE(m_Windows.Waiting());
  int most = 0;
  int ticks = 0;
  for (size_t before = 0; before < count && ticks < 1000; ++ticks) {
    m_Rig.Run(1);
    most = std::max(most, static_cast<int>(Caused().size() - before));
    before = Caused().size();
  }
  EXPECT_EQ(Caused(), Lines(count, "1 Schedule loaded"));
  EXPECT_LE(most, 6);
  EXPECT_GE(ticks, 9);
}

TEST_F(FloodTest, NoMoreAreTakenUpThanCanBeDealtWith) {
  Begin();
  for (int i = 0; i < 1000; ++i) m_Windows.Post("05");
  m_Windows.Deliver(1000);
  EXPECT_EQ(m_Windows.Delivered, 64);
  m_Rig.Run(1);
  EXPECT_EQ(Caused().size(), 64U);
  m_Windows.Deliver(1000);
  EXPECT_EQ(m_Windows.Delivered, 128);
}

TEST_F(FloodTest, TheRestIsTakenUpAgainAfterFailures) {
  Begin();
  m_Rig.Lights->FailLink = "no network";
  constexpr int count = 500;
  for (int i = 0; i < count; ++i) m_Windows.Post("06ON");
  m_Windows.Post("05");
  RunUntilTaken();
  EXPECT_EQ(
      std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "3 tmrVexMsgQueue_Timer Error: no network"),
      count);
  EXPECT_EQ(Caused(), Lines{"1 Schedule loaded"});
}

TEST_F(FloodTest, FailuresDoNotLetTheQueueGrow) {
  Begin();
  m_Rig.Lights->FailLink = "no network";
  for (int i = 0; i < 1000; ++i) m_Windows.Post("06ON");
  for (int millisecond = 1; millisecond <= 50; ++millisecond) {
    m_Windows.Deliver(1000);
    m_Rig.Run(1);
    const auto failed =
        std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "3 tmrVexMsgQueue_Timer Error: no network");
    ASSERT_LE(m_Windows.Delivered - failed, 64) << millisecond;
  }
}

TEST_F(FloodTest, TheStatusFileIsLeftAloneForAWhileAfterItTookTimeAndThenTellsTheLatest) {
  m_Rig.StatusFile = true;
  m_Rig.Time = &m_Busy;
  Begin();
  const auto post = [this](const char* szPayload) {
    m_Windows.Post(szPayload);
    m_Windows.Deliver(1);
    m_Rig.Run(2);
  };
  const auto says = [this](const char* szText) { return m_Rig.Status().find(szText) != std::string::npos; };
  post("06ON");
  EXPECT_TRUE(says("\"link\":true"));
  post("06OFF");
  EXPECT_TRUE(says("\"link\":true"));
  m_Rig.Run(20);
  EXPECT_TRUE(says("\"link\":false"));
  m_Rig.Run(100);
  post("06ON");
  EXPECT_TRUE(says("\"link\":true"));
}

TEST_F(FloodTest, AnEndInTheMiddleDropsTheRest) {
  Begin();
  for (int i = 0; i < 10; ++i) m_Windows.Post("05");
  m_Windows.Post("01");
  for (int i = 0; i < 10; ++i) m_Windows.Post("05");
  m_Windows.Deliver(100);
  m_Rig.Run(10);
  EXPECT_EQ(Caused().size(), 10U);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

}  // namespace
}  // namespace vex::test
