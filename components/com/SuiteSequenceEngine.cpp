#include "components/com/SuiteSequenceEngine.h"

#include <utility>

#include "components/com/ObjectProperties.h"
#include "components/com/SuiteChannelIO.h"

namespace vex {

std::shared_ptr<const ComponentNames> SuiteSequenceEngine::ReadNames(Registry& settings) {
  return std::make_shared<const ComponentNames>(
      settings, "SequenceEngine", "VEXSEQUENCELib.Sequence",
      std::vector<std::string>{"AttachControl", "Load", "PlayRate", "PlayOptions", "PrepareForPlay", "Start",
                               "Stop", "PlayState", "MediaFile", "ShellCommand", "UsesNetwork",
                               "InitMusicSync", "SyncToMusic", "GetEvent"});
}

// The event without arguments is the keep-alive, whatever its number.
SuiteSequenceEngine::SuiteSequenceEngine(std::shared_ptr<const ComponentNames> names)
    : m_Engine(std::move(names)), m_Events(m_Engine.Object(), [this](DISPID, const auto& arguments) {
        if (arguments.empty() && KeepAlive) KeepAlive();
      }) {}

void SuiteSequenceEngine::AttachControl(std::shared_ptr<ChannelIO> cio) {
  const auto control = std::dynamic_pointer_cast<SuiteChannelIO>(std::move(cio));
  m_Engine.Call("AttachControl", {Variant::Object(control ? control->Object() : nullptr)});
}

void SuiteSequenceEngine::Load(const std::string& szFilename) {
  m_Engine.Call("Load", {Variant::Text(szFilename)});
}

void SuiteSequenceEngine::PlayRate(double rate) {
  m_Engine.PutProperty("PlayRate", Variant::Double(rate));
}

void SuiteSequenceEngine::PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) {
  static_cast<void>(m_Engine.CallIfThere(
      "PlayOptions", {Variant::Boolean(boolLoopAtEnd), Variant::Boolean(boolLightsOffAtEnd)}));
}

void SuiteSequenceEngine::PrepareForPlay(bool boolHasMedia) {
  m_Engine.Call("PrepareForPlay", {Variant::Boolean(boolHasMedia)});
}

std::any SuiteSequenceEngine::ShellCommand() {
  Variant command = m_Engine.Call("ShellCommand");
  const bool boolNoText = command.Get().vt == VT_BSTR && SysStringLen(command.Get().bstrVal) == 0;
  return command.IsNothing() || boolNoText ? std::any() : std::any(std::move(command));
}

bool SuiteSequenceEngine::UsesNetwork(NetworkKind kind) {
  return m_Engine.Call("UsesNetwork", {Variant::Long(static_cast<int32_t>(kind))}).AsBoolean();
}

void SuiteSequenceEngine::InitMusicSync(int32_t lMilliseconds) {
  m_Engine.Call("InitMusicSync", {Variant::Long(lMilliseconds)});
}

void SuiteSequenceEngine::SyncToMusic(int32_t lMilliseconds) {
  m_Engine.Call("SyncToMusic", {Variant::Long(lMilliseconds)});
}

bool SuiteSequenceEngine::GetEvent(LightingEvent& event) {
  auto given = m_Engine.Call("GetEvent").AsObject();
  if (!given) return false;
  const ObjectProperties properties(std::move(given), "SequenceEngine.GetEvent");
  event.Network = properties.Integer("Network");
  event.UnitId = properties.Integer("UnitId");
  event.Circuit = properties.Integer("Circuit");
  event.StartLevel = properties.Number("StartLevel");
  event.EndLevel = properties.Number("EndLevel");
  event.Command = properties.Text("Command");
  event.Rate = properties.Number("Rate");
  event.StartTime = properties.Integer("StartTime");
  event.EndTime = properties.Integer("EndTime");
  return true;
}

}  // namespace vex
