#include "tray/web/Answers.h"

#include <nlohmann/json.hpp>

namespace vex {

httplib::Headers SafeHeaders() {
  return {
      {"Content-Security-Policy",
       "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
       "base-uri 'none'; "
       "form-action 'self'; frame-ancestors 'none'"},
      {"X-Content-Type-Options", "nosniff"},
      {"X-Frame-Options", "DENY"},
      {"Referrer-Policy", "no-referrer"},
      {"Cross-Origin-Opener-Policy", "same-origin"},
      {"Cross-Origin-Resource-Policy", "same-origin"},
      {"Permissions-Policy", "camera=(), microphone=(), geolocation=()"},
      {"Cache-Control", "no-store"},
  };
}

void Deny(httplib::Response& response, int status, const std::string& szWhy) {
  response.status = status;
  response.set_content(nlohmann::json{{"error", szWhy}}.dump(), "application/json");
}

}  // namespace vex
