#include "tray/watch/Watchman.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <utility>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "settings/LibRegistryVex.h"
#include "tray/log/LogReader.h"
#include "tray/log/StatusLines.h"
#include "tray/truth/SequenceNeeds.h"

namespace vex {

namespace {

constexpr int32_t TurnMs = 250;
constexpr uint64_t TurnsPerSecond = 4;
constexpr uint64_t TurnsPerLook = 2;
constexpr Elapsed CardPatience{3'000'000'000};
/// Lights may stand for a while in a song, so they tell less.
constexpr Elapsed LightsPatience{30'000'000'000};
constexpr Elapsed LightsTold{90'000'000};
/// An unchanged universe is told again, so that a page knows that it is still there.
constexpr Elapsed LightsToldAgain{1'000'000'000};
/// Who takes leave is gone soon. A line that only looks like it, a trigger's name for one, must not excuse
/// an end hours later.
constexpr Elapsed FarewellLasts{30'000'000'000};
constexpr Elapsed NotHeard{5'000'000'000};
constexpr size_t ErrorsHeard = 20;

std::string StateFile(Host& host, const char* szName) {
  const std::string szFolder = host.StateFolder();
  if (szFolder.empty())
    throw Error(ErrorFileNotFound, "vextray", "there is no folder for logs on this machine");
  return szFolder + szName;
}

}  // namespace

Watchman::Watchman(Host& host, WatchmanOptions options)
    : m_Host(host),
      m_Options(std::move(options)),
      m_Log(host.Files(), StateFile(host, "log"), m_Options.Log),
      m_History(host.Files(), StateFile(host, "history"), m_Options.Log),
      m_Window(host),
      m_Card(host.Files()),
      m_Timer(host.EventLoop().NewTimer(TimerOrder::Component)) {
  m_Window.Status = [this](const std::string& szText) { StatusCame(szText); };
  m_Window.CurrentShow = [this](const std::string&) { ReadStatus(); };
  m_Window.Player = [this](bool boolRuns) { PlayerChanged(boolRuns); };
  m_Timer->Interval(TurnMs);
  m_Timer->Tick([this] { Turn(); });
}

void Watchman::Begin() {
  constexpr uint64_t formerBytes = 65536;
  m_Began = FormatDateTime(m_Host.Clock().Now());
  if (LineCame) (void)LogReader(m_Host.Files(), StateFile(m_Host, "log")).ReadEnd(formerBytes, LineCame);
  Note(LogLine::LevelCourse, "vextray begins");
  if (!m_Log.Save()) {
    throw Error(
        ErrorInvalidCall, "vextray",
        "the log in " + m_Host.Files().HostPath(m_Host.StateFolder()) +
            " cannot be written, or another vextray keeps it; end that one, make the folder writable, or "
            "set XDG_STATE_HOME");
  }
  m_Window.Begin();
  if (!m_Window.PlayerRuns()) m_History.PlayerGone(m_Host.Clock().Now());
  m_Timer->Enabled(true);
  LookAtLight();
}

void Watchman::End() {
  Note(LogLine::LevelCourse, "vextray ends");
  (void)m_Log.Flush();
  (void)m_History.Flush();
}

void Watchman::Turn() {
  ++m_Turns;
  bool boolSaved = m_Log.Save();
  boolSaved = m_History.Save() && boolSaved;
  if (m_Turns % TurnsPerSecond == 0) boolSaved = m_Log.Flush() && m_History.Flush() && boolSaved;
  if (!boolSaved && !m_Complained) {
    std::cerr << "vextray: the log in " << m_Host.Files().HostPath(m_Host.StateFolder())
              << " cannot be written; lines are kept meanwhile\n";
  }
  m_Complained = !boolSaved;
  TellLights();
  if (m_Turns % TurnsPerLook != 0) return;
  ReadStatus();
  LookAtSound();
  LookAtLight();
  if (std::exchange(m_HistoryTold, m_History.Changes()) != m_History.Changes() && HistoryChanged)
    HistoryChanged(m_History.Shelf());
}

void Watchman::Keep(const LogLine& line) {
  m_Log.Add(line);
  if (LineCame && m_Log.Newest()) LineCame(*m_Log.Newest());
}

void Watchman::Note(int32_t lLevel, const std::string& szText) {
  const DateTime dtNow = m_Host.Clock().Now();
  Keep({dtNow, lLevel, szText, 1, dtNow});
}

void Watchman::StatusCame(const std::string& szMessage) {
  for (const LogLine& line : LinesOfStatus(szMessage, m_Host.Clock().Now())) {
    ++m_Lines;
    Keep(line);
    m_History.Line(line);
    if (line.Text == "Show Player shutting down") m_Farewell = m_Host.Clock().Elapsed();
    if (line.Text.starts_with("Show Player starting")) m_Farewell.reset();
    if (line.Level < LogLine::LevelError) continue;
    ++m_Errors;
    m_LastError = m_Host.Clock().Elapsed();
    m_ErrorText = line.Text;
    m_ErrorsHeard.push_back(line.Text);
    if (m_ErrorsHeard.size() > ErrorsHeard) m_ErrorsHeard.pop_front();
  }
  // At once, so that a crash takes nothing that has come; where it fails, the next turn tries again.
  (void)m_Log.Save();
  (void)m_History.Save();
}

void Watchman::PlayerChanged(bool boolRuns) {
  const DateTime dtNow = m_Host.Clock().Now();
  m_StatusText.clear();
  m_Player = {};
  m_Playing.clear();
  m_SongSince.reset();
  m_Packets.reset();
  m_LightsTold.clear();
  if (boolRuns) {
    m_EverRan = true;
    m_Farewell.reset();
    m_GoneWell = false;
    m_LastError.reset();
    Note(LogLine::LevelCourse, "A player has come");
    if (m_Options.Packets)
      m_Packets = std::make_unique<PacketWatch>(m_Host.Clock(), m_Host.EventLoop(), m_Host.Datagrams(),
                                                ReadOutputSettings(m_Host.Registry()));
    if (PlayerCame) PlayerCame();
  } else {
    m_GoneWell = m_Farewell && m_Host.Clock().Elapsed() - *m_Farewell < FarewellLasts;
    Note(m_GoneWell ? LogLine::LevelCourse : LogLine::LevelError,
         m_GoneWell ? "The player has ended" : "The player has gone without a farewell");
    m_History.PlayerGone(dtNow);
  }
}

void Watchman::ReadStatus() {
  std::string szText;
  if (!m_Window.PlayerRuns()) return;
  if (!m_Host.Files().Read(m_Host.PlayerFinder().StatusFile(), szText) || szText == m_StatusText) return;
  auto word = PlayerWordFromJson(szText);
  if (!word) return;
  m_StatusText = std::move(szText);
  TakeStatus(std::move(*word));
}

void Watchman::TakeStatus(PlayerWord word) {
  const Elapsed now = m_Host.Clock().Elapsed();
  if (word.Media != m_Player.Media) {
    m_SongSince = word.Media.empty() ? std::nullopt : std::optional(now);
    m_SoundMoved = now;
  }
  std::map<std::string, PlayingSequence> playing;
  for (const auto& sequence : word.Playing) {
    const auto known = m_Playing.find(sequence.File);
    if (known != m_Playing.end()) {
      playing.insert(*known);
      continue;
    }
    std::string szName;
    PlayingSequence begun;
    if (Utf8ToAnsi(sequence.File, szName)) {
      const auto first = FirstLight(m_Host.Files(), m_Host.Registry(), szName);
      if (first) begun.LightsDue = now + *first;
    }
    playing.emplace(sequence.File, begun);
  }
  m_Playing = std::move(playing);
  m_Player = std::move(word);
  NoteSilentFailure();
  if (m_Playing.empty()) return;
  m_History.Report(ShowOfReport(m_Player.Current), m_Host.Clock().Now());
}

// A heartbeat that failed writes no line, nor does a song without a loudspeaker; the status file alone knows
// of them. A heartbeat's time is compared so that one from before vextray's own beginning is not told as new.
void Watchman::NoteSilentFailure() {
  const auto& failure = m_Player.LastError;
  if (!failure || std::ranges::find(m_ErrorsHeard, failure->Text) != m_ErrorsHeard.end()) return;
  const bool boolHeartbeat = failure->Text.find("Timer Error: ") != std::string::npos ||
                             failure->Text.find("ReportShowsToTray Error: ") != std::string::npos;
  const bool boolSilent = failure->Text.starts_with("No sound output");
  if (!boolSilent && (!boolHeartbeat || failure->Time < m_Began)) return;
  m_ErrorsHeard.push_back(failure->Text);
  if (m_ErrorsHeard.size() > ErrorsHeard) m_ErrorsHeard.pop_front();
  // A song without a loudspeaker goes on; whether it is missed is for the sound's own cause to say.
  if (boolHeartbeat) {
    m_LastError = m_Host.Clock().Elapsed();
    m_ErrorText = failure->Text;
  }
  ++m_Errors;
  Note(LogLine::LevelError, failure->Text);
}

bool Watchman::ByCard() const {
  if (m_Options.Sound != SoundBy::Auto) return m_Options.Sound == SoundBy::Card;
  Registry& registry = m_Host.Registry();
  const std::string szOutput = FoldCase(GetProductString(registry, "AudioOutput", "Components", ""));
  const std::string szMedia = FoldCase(GetProductString(registry, "Media", "Components", "mpv"));
  return m_Card.Exists() && szMedia == "mpv" && !szOutput.starts_with("null");
}

void Watchman::LookAtSound() {
  if (!m_SongSince) return;
  if (ByCard()) {
    if (m_Card.Moved()) m_SoundMoved = m_Host.Clock().Elapsed();
  } else if (m_Packets) {
    for (const auto& [key, heard] : m_Packets->Table().Universes())
      m_SoundMoved = std::max(m_SoundMoved, heard.Changed);
  }
}

bool Watchman::LightsAreOnTheNetwork() const {
  return m_Packets && m_Packets->Sends() &&
         FoldCase(GetProductString(m_Host.Registry(), "Lights", "Components", "open")) == "open";
}

LightFacts Watchman::Facts() const {
  LightFacts facts;
  facts.Now = m_Host.Clock().Elapsed();
  facts.Wall = m_Host.Clock().Now();
  facts.PlayerRuns = m_Window.PlayerRuns();
  facts.PlayerEverRan = m_EverRan;
  facts.Farewell = m_GoneWell;
  facts.Answers = m_Window.PlayerAnswers();
  facts.LastError = m_LastError;
  facts.ErrorText = m_ErrorText;
  facts.Plays = !m_Playing.empty();
  for (const auto& [szFile, sequence] : m_Playing) {
    if (sequence.LightsDue)
      facts.LightsDue =
          facts.LightsDue ? std::min(*facts.LightsDue, *sequence.LightsDue) : *sequence.LightsDue;
  }
  facts.PacketsCount = LightsAreOnTheNetwork();
  if (m_Packets) {
    facts.PacketsTrouble = m_Packets->Trouble();
    for (const auto& [key, heard] : m_Packets->Table().Universes()) {
      if (!heard.Ended) facts.Universes.push_back({heard.Universe, heard.Last});
    }
  }
  facts.SongSince = m_SongSince;
  const bool boolByCard = ByCard();
  facts.SoundIsSeen =
      boolByCard || (m_Options.Sound != SoundBy::Nothing && facts.PacketsCount && facts.LightsDue);
  facts.SoundMoved = m_SoundMoved;
  facts.SoundPatience = boolByCard ? CardPatience : LightsPatience;
  return facts;
}

TrayState Watchman::State() const {
  using Seconds = std::chrono::duration<double>;
  TrayState state;
  const Elapsed now = m_Host.Clock().Elapsed();
  state.Time = m_Host.Clock().Now();
  state.Light = m_Light.Now();
  state.PlayerRuns = m_Window.PlayerRuns();
  state.PlayerAnswers = m_Window.PlayerAnswers();
  state.Player = m_Player;
  if (m_Packets) {
    state.PacketsWatched = m_Packets->Watching();
    state.PacketsTrouble = m_Packets->Trouble();
    for (const auto& [key, heard] : m_Packets->Table().Universes()) {
      if (heard.Ended) continue;
      state.Universes.push_back({heard.Universe, heard.Protocol, heard.PerSecond(now),
                                 Seconds(now - heard.Last).count(), heard.Packets});
    }
  }
  const bool boolByCard = ByCard();
  const bool boolByLights = !boolByCard && m_Options.Sound != SoundBy::Nothing && LightsAreOnTheNetwork();
  state.SoundBy = boolByCard ? "card" : boolByLights ? "lights" : "none";
  const Elapsed patience = boolByCard ? CardPatience : LightsPatience;
  state.SoundMoves = m_SongSince && (boolByCard || boolByLights) && now - m_SoundMoved < patience;
  if (m_SongSince) state.SoundPosition = Seconds(now - *m_SongSince).count();
  state.Lines = m_Lines;
  state.Errors = m_Errors;
  state.Troubles = m_Troubles;
  return state;
}

void Watchman::LookAtLight() {
  const LightFacts facts = Facts();
  // What the network tells of a show that has gone must not be missed in the next one.
  if (m_Packets && !facts.LightsDue && facts.Now > NotHeard)
    m_Packets->Table().ForgetBefore(facts.Now - NotHeard);
  const LightColour former = m_Light.Now().Colour;
  if (m_Light.Look(facts)) {
    const LightColour colour = m_Light.Now().Colour;
    if (colour == LightColour::Trouble) {
      ++m_Troubles;
      std::string szWhy;
      for (const std::string& szCause : m_Light.Now().Why()) szWhy += (szWhy.empty() ? "" : "; ") + szCause;
      Note(LogLine::LevelError, "Trouble begins: " + szWhy);
      RunCommand("begin");
    } else if (former == LightColour::Trouble) {
      Note(LogLine::LevelCourse, std::string("Trouble ends; the light is ") + LightWord(colour));
      RunCommand("end");
    }
  }
  if (StateLooked) StateLooked(State());
}

void Watchman::RunCommand(const char* szWord) {
  if (m_Options.OnTrouble.empty()) return;
  std::string szWhy;
  for (const std::string& szCause : m_Light.Now().Why()) szWhy += (szWhy.empty() ? "" : "; ") + szCause;
  std::string szCauses;
  (void)Utf8ToAnsi(szWhy, szCauses);  // up to a character that the system does not know
  std::string szArgument = "'";
  for (const char character : szCauses) {
    if (character == '\'')
      szArgument += "'\\''";
    else if (character != '\0')
      szArgument += character;
  }
  szArgument += "'";
  try {
    m_Host.Processes().Start(m_Options.OnTrouble + " " + szWord + " " + szArgument, HideWindow);
  } catch (const Error& error) {
    Note(LogLine::LevelError, "The command for trouble cannot be started: " + AnsiToUtf8(error.Description));
  }
}

void Watchman::TellLights() {
  if (!m_Packets || !LightsChanged) return;
  const Elapsed now = m_Host.Clock().Elapsed();
  for (const auto& [key, heard] : m_Packets->Table().Universes()) {
    if (heard.Ended) continue;
    Elapsed& told = m_LightsTold[key];
    const Elapsed pause = heard.Changed > told ? LightsTold : LightsToldAgain;
    if (heard.Last <= told || now - told < pause) continue;
    told = now;
    LightsChanged(heard);
  }
}

}  // namespace vex
