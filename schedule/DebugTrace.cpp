#include "schedule/DebugTrace.h"

#include <utility>

namespace vex {

namespace {

std::function<void(const std::string&)>& Sink() {
  static std::function<void(const std::string&)> sink;
  return sink;
}

}  // namespace

void DebugTraceTo(std::function<void(const std::string&)> sink) {
  Sink() = std::move(sink);
}

bool DebugTraced() {
  return static_cast<bool>(Sink());
}

void DebugTrace(const std::string& szLine) {
  if (Sink()) Sink()(szLine);
}

}  // namespace vex
