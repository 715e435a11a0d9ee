#include "components/com/SuiteChannelIO.h"

#include <utility>

#include "components/com/ObjectProperties.h"
#include "components/com/TriggerObject.h"

namespace vex {

std::shared_ptr<const ComponentNames> SuiteChannelIO::ReadNames(Registry& settings) {
  return std::make_shared<const ComponentNames>(
      settings, "ChannelIO", "VexChannelIO.ChannelIO",
      std::vector<std::string>{"ConfigureValue", "ConfigureFlag", "OpenNetwork", "OpenX10", "OpenCourser",
                               "RegisterTrigger", "ClearTriggers", "KeepAlive", "AcceptsUnit",
                               "AcceptsCircuit", "SendEvent", "Flush", "SetLink", "SupportsSpecial",
                               "LinkEnabled"});
}

SuiteChannelIO::SuiteChannelIO(std::shared_ptr<const ComponentNames> names)
    : m_Control(std::move(names)),
      m_Events(m_Control.Object(),
               [this](DISPID, const std::vector<VARIANT>& arguments) { EventRaised(arguments); }) {
  m_Seat.Take(ComPointer<IUnknown>::Share(m_Control.Object()), nullptr);
}

// An event is told by its shape, since its number is the control's own affair.
void SuiteChannelIO::EventRaised(const std::vector<VARIANT>& arguments) {
  if (arguments.size() != 1 || !TriggerDetected) return;
  auto input = ObjectIn(arguments.front());
  if (input) TriggerDetected(ObjectProperties(std::move(input), "ChannelIO.TriggerDetected"));
}

void SuiteChannelIO::ConfigureValue(int32_t lNetwork, int16_t value) {
  m_Control.Call("ConfigureValue", {Variant::Long(lNetwork), Variant::Integer(value)});
}

void SuiteChannelIO::ConfigureFlag(int32_t lNetwork, bool boolFlag) {
  m_Control.Call("ConfigureFlag", {Variant::Long(lNetwork), Variant::Boolean(boolFlag)});
}

void SuiteChannelIO::OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) {
  if (boolForPlay) {
    m_Control.Call("OpenNetwork",
                   {Variant::Byte(network), Variant::ByteAt(port), Variant::Boolean(*boolForPlay)});
  } else {
    m_Control.Call("OpenNetwork", {Variant::Byte(network), Variant::ByteAt(port)});
  }
}

void SuiteChannelIO::OpenX10(uint8_t& port) {
  m_Control.Call("OpenX10", {Variant::ByteAt(port)});
}

void SuiteChannelIO::OpenCourser(uint8_t& port) {
  m_Control.Call("OpenCourser", {Variant::ByteAt(port)});
}

void SuiteChannelIO::RegisterTrigger(const Trigger& trigger) {
  const auto object = ComPointer<TriggerObject>::Take(new TriggerObject(trigger));
  m_Control.Call("RegisterTrigger", {Variant::Object(object.Get())});
}

bool SuiteChannelIO::AcceptsUnit(int32_t lNetwork, int32_t lUnit) {
  const auto accepts = m_Control.CallIfThere("AcceptsUnit", {Variant::Long(lNetwork), Variant::Long(lUnit)});
  return !accepts || accepts->AsBoolean();
}

bool SuiteChannelIO::AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) {
  const auto accepts = m_Control.CallIfThere(
      "AcceptsCircuit", {Variant::Long(lNetwork), Variant::Long(lUnit), Variant::Long(lCircuit)});
  return !accepts || accepts->AsBoolean();
}

void SuiteChannelIO::SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel,
                               double endLevel, const std::string& szCommand, double rate, int32_t lStartMs,
                               int32_t lEndMs, int32_t lDurationMs) {
  m_Control.Call("SendEvent", {Variant::Long(lNetwork), Variant::Long(lUnit), Variant::Long(lCircuit),
                               Variant::Double(startLevel), Variant::Double(endLevel),
                               Variant::Text(szCommand), Variant::Double(rate), Variant::Long(lStartMs),
                               Variant::Long(lEndMs), Variant::Long(lDurationMs)});
}

void SuiteChannelIO::SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) {
  m_Control.Call("SetLink",
                 {Variant::Text(szHost), Variant::Integer(localPort), Variant::Integer(remotePort)});
}

void SuiteChannelIO::SupportsSpecial(bool boolSupports) {
  m_Control.PutProperty("SupportsSpecial", Variant::Boolean(boolSupports));
}

void SuiteChannelIO::LinkEnabled(bool boolEnabled) {
  m_Control.PutProperty("LinkEnabled", Variant::Boolean(boolEnabled));
}

}  // namespace vex
