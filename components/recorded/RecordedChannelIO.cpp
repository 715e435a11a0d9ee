#include "components/recorded/RecordedChannelIO.h"

#include <utility>

#include "player/devices/InputProperties.h"
#include "show/Trigger.h"

namespace vex {

RecordedChannelIO::RecordedChannelIO(std::shared_ptr<Recorder> recorder, bool boolEventsAreSeen)
    : m_Recorder(std::move(recorder)), m_EventsAreSeen(boolEventsAreSeen) {}

void RecordedChannelIO::ConfigureValue(int32_t lNetwork, int16_t value) {
  m_Recorder->InputOutput("configureValue", {lNetwork, int32_t{value}});
}

void RecordedChannelIO::ConfigureFlag(int32_t lNetwork, bool boolFlag) {
  m_Recorder->InputOutput("configureFlag", {lNetwork, boolFlag});
}

void RecordedChannelIO::OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) {
  std::vector<JsonValue> arguments{int32_t{network}, int32_t{port}};
  if (boolForPlay) arguments.emplace_back(*boolForPlay);
  m_Recorder->InputOutput("openNetwork", arguments);
}

void RecordedChannelIO::OpenX10(uint8_t& port) {
  m_Recorder->InputOutput("openX10", {int32_t{port}});
}

void RecordedChannelIO::OpenCourser(uint8_t& port) {
  m_Recorder->InputOutput("openCourser", {int32_t{port}});
}

void RecordedChannelIO::RegisterTrigger(const Trigger& trigger) {
  m_Recorder->InputOutput("registerTrigger",
                          {trigger.Network(), trigger.UnitId(), trigger.InputNumber(), trigger.Name()});
}

void RecordedChannelIO::ClearTriggers() {
  m_Recorder->InputOutput("clearTriggers", {});
}

void RecordedChannelIO::KeepAlive() {
  m_Recorder->InputOutput("keepAlive", {});
}

bool RecordedChannelIO::AcceptsUnit(int32_t, int32_t lUnit) {
  return lUnit >= 1 && lUnit <= LastUnit;
}

bool RecordedChannelIO::AcceptsCircuit(int32_t, int32_t, int32_t lCircuit) {
  return lCircuit >= 1 && lCircuit <= LastCircuit;
}

void RecordedChannelIO::SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel,
                                  double endLevel, const std::string& szCommand, double rate,
                                  int32_t lStartMs, int32_t lEndMs, int32_t lDurationMs) {
  if (!m_Recorder->WantsInputOutput("send")) return;
  m_Recorder->InputOutput("send", {lNetwork, lUnit, lCircuit, startLevel, endLevel, szCommand, rate, lStartMs,
                                   lEndMs, lDurationMs});
}

void RecordedChannelIO::Flush() {
  m_Recorder->InputOutput("flush", {});
}

void RecordedChannelIO::SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) {
  m_Recorder->InputOutput("setLink", {szHost, int32_t{localPort}, int32_t{remotePort}});
}

void RecordedChannelIO::SupportsSpecial(bool boolSupports) {
  m_Recorder->InputOutput("supportsSpecial", {boolSupports});
}

void RecordedChannelIO::LinkEnabled(bool boolEnabled) {
  m_LinkEnabled = boolEnabled;
  m_Recorder->InputOutput("enableLink", {boolEnabled});
}

void RecordedChannelIO::Press(int32_t lNetwork, int32_t lUnitId, int32_t lInputNumber,
                              const std::string& szName) {
  if (m_LinkEnabled && TriggerDetected)
    TriggerDetected(InputProperties(lNetwork, lUnitId, lInputNumber, szName));
}

}  // namespace vex
