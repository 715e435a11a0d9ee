#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "tray/web/Answers.h"
#include "tray/web/Desk.h"

namespace vex {
namespace {

using nlohmann::json;

constexpr int BadRequest = 400;
constexpr int WrongPassword = 401;
constexpr int Conflict = 409;
constexpr int TooMany = 429;
constexpr size_t MostQuestions = 64;
constexpr std::chrono::seconds QuestionTime{60};
constexpr int64_t MostSeconds = int64_t{7} * 86400;

/// The object in the body; nothing where it is none.
std::optional<json> ObjectOf(const httplib::Request& request) {
  auto value = json::parse(request.body, nullptr, false);
  if (!value.is_object()) return std::nullopt;
  return value;
}

std::string TextIn(const json& object, const char* szName) {
  const auto found = object.find(szName);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<Action::What> KindOf(const std::string& szWord) {
  static const std::map<std::string, Action::What> words{
      {"play", Action::What::Play},        {"clear", Action::What::Clear},
      {"reload", Action::What::Reload},    {"link on", Action::What::LinkOn},
      {"link off", Action::What::LinkOff}, {"stop", Action::What::Stop}};
  const auto found = words.find(szWord);
  if (found == words.end()) return std::nullopt;
  return found->second;
}

/// Only what the site offers: a name that somebody made up goes nowhere near the player.
bool IsOffered(const std::string& szShows, const std::string& szShow) {
  const auto shows = json::parse(szShows, nullptr, false);
  return shows.is_array() && std::find(shows.begin(), shows.end(), json(szShow)) != shows.end();
}

}  // namespace

void Desk::LogIn(const Request& request, Response& response) {
  const auto object = ObjectOf(request);
  if (!object) return Deny(response, BadRequest, "Expected an object with the password.");
  if (!m_Doorman->HasPasswords()) return Deny(response, BadRequest, "There are no passwords here.");
  const auto attempt = m_Doorman->Try(request, TextIn(*object, "password"));
  if (attempt.Wait.count() > 0) {
    const auto szSeconds = std::to_string(attempt.Wait.count());
    response.set_header("Retry-After", szSeconds);
    return Deny(response, TooMany, "Too many attempts; try again in " + szSeconds + " seconds.");
  }
  if (attempt.May == Role::None) return Deny(response, WrongPassword, "This is not the password.");
  (void)m_Doorman->LetOut(request, m_Doorman->Look(request));
  response.set_header("Set-Cookie", m_Doorman->LetIn(request, attempt.May));
  response.set_content(R"({"done":true})", "application/json");
}

void Desk::LogOut(const Request& request, Response& response) {
  response.set_header("Set-Cookie", m_Doorman->LetOut(request, m_Doorman->Look(request)));
  response.set_content(R"({"done":true})", "application/json");
}

/// To stop the player takes two requests: the first is answered with a word, good once and for a minute, that
/// the second has to bring.
bool Desk::AskedTwice(const std::string& szAgain, const Visitor& visitor, Response& response) {
  const auto now = Sessions::Clock::now();
  const std::lock_guard lock(m_Mutex);
  std::erase_if(m_Questions, [now](const auto& entry) { return entry.second.Until <= now; });
  const auto asked = m_Questions.find(visitor.Token);
  if (asked != m_Questions.end() && Sessions::Same(asked->second.Again, szAgain)) {
    m_Questions.erase(asked);
    return true;
  }
  if (asked == m_Questions.end() && m_Questions.size() >= MostQuestions)
    m_Questions.erase(m_Questions.begin());
  const auto& question = m_Questions[visitor.Token] = Question{Sessions::Secret(), now + QuestionTime};
  response.status = Conflict;
  response.set_content(
      json{
          {"ask", "Stop the player? It finishes its show and ends; nothing plays until it is started again."},
          {"again", question.Again}}
          .dump(),
      "application/json");
  return false;
}

void Desk::Do(const Request& request, Response& response) {
  const auto object = ObjectOf(request);
  const auto kind = object ? KindOf(TextIn(*object, "action")) : std::nullopt;
  if (!kind) return Deny(response, BadRequest, "Expected play, clear, reload, link on, link off or stop.");
  Action action{*kind, {}, 0};
  if (*kind == Action::What::Play) {
    action.Show = TextIn(*object, "show");
    const auto seconds = object->find("seconds");
    if (seconds != object->end() && seconds->is_number_integer()) {
      action.Seconds = std::clamp<int64_t>(seconds->get<int64_t>(), 0, MostSeconds);
    }
    if (!IsOffered(m_Site->Shows(), action.Show)) return Deny(response, BadRequest, "There is no such show.");
  }
  if (*kind == Action::What::Stop &&
      !AskedTwice(TextIn(*object, "again"), m_Doorman->Look(request), response)) {
    return;
  }
  const auto outcome = m_Site->Do(action);
  response.status = outcome.Done ? 200 : Conflict;
  response.set_content(json{{"done", outcome.Done}, {"text", outcome.Text}}.dump(
                           -1, ' ', false, json::error_handler_t::replace),
                       "application/json");
}

}  // namespace vex
