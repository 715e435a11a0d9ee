#include "tests/com/suite/SuiteComponent.h"

#include <algorithm>
#include <set>

#include "tests/com/suite/Outside.h"
#include "tests/com/suite/Script.h"

namespace suite {
namespace {

constexpr IID ChannelEvents = {0x5f0c9a11, 0x7b1e, 0x4c55, {0x9d, 0x10, 0x6a, 0x2f, 0x11, 0x22, 0x33, 0x01}};
constexpr IID SequenceEvents = {0x5f0c9a11, 0x7b1e, 0x4c55, {0x9d, 0x10, 0x6a, 0x2f, 0x11, 0x22, 0x33, 0x02}};
constexpr IID ManagerEvents = {0x5f0c9a11, 0x7b1e, 0x4c55, {0x9d, 0x10, 0x6a, 0x2f, 0x11, 0x22, 0x33, 0x03}};
constexpr DISPID FirstNumber = 101;

std::set<SuiteComponent*>& Living() {
  static std::set<SuiteComponent*> living;
  return living;
}

SuiteEvents EventsHow(const std::string& component) {
  const auto told = TheScript().Events.find(component);
  return told == TheScript().Events.end() ? EventsDeclared : told->second;
}

/// Walks over the two points of a component.
class Points final : public IEnumConnectionPoints {
 public:
  explicit Points(std::vector<IConnectionPoint*> points) : m_Points(std::move(points)) {}
  virtual ~Points() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_References; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --m_References;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint** points, ULONG* taken) override {
    ULONG given = 0;
    for (; given < count && m_Next < m_Points.size(); ++given) {
      points[given] = m_Points[m_Next++];
      points[given]->AddRef();
    }
    if (taken != nullptr) *taken = given;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints**) override { return E_NOTIMPL; }

 private:
  std::vector<IConnectionPoint*> m_Points;
  size_t m_Next = 0;
  ULONG m_References = 1;
};

void FillIn(EXCEPINFO& record, const Raising& raising) {
  record.scode = raising.Code;
  record.wCode = raising.Number;
  if (raising.Source) record.bstrSource = SysAllocString(raising.Source->c_str());
  if (raising.Description) record.bstrDescription = SysAllocString(raising.Description->c_str());
}

const Raising* s_Late = nullptr;

HRESULT STDMETHODCALLTYPE FillInLate(EXCEPINFO* record) {
  FillIn(*record, *s_Late);
  return S_OK;
}

HRESULT Raise(const Raising& raising, EXCEPINFO* record) {
  if (!raising.Description) return raising.Code;
  *record = {};
  if (raising.Late) {
    s_Late = &raising;
    record->pfnDeferredFillIn = FillInLate;
  } else {
    FillIn(*record, raising);
  }
  return DISP_E_EXCEPTION;
}

}  // namespace

const std::vector<std::string>& MembersOf(const std::string& component) {
  static const std::map<std::string, std::vector<std::string>> members = {
      {"ChannelIO",
       {"ConfigureValue", "ConfigureFlag", "OpenNetwork", "OpenX10", "OpenCourser", "RegisterTrigger",
        "ClearTriggers", "KeepAlive", "AcceptsUnit", "AcceptsCircuit", "SendEvent", "Flush", "SetLink",
        "SupportsSpecial", "LinkEnabled"}},
      {"SequenceEngine",
       {"AttachControl", "Load", "PlayRate", "PlayOptions", "PrepareForPlay", "Start", "Stop", "PlayState",
        "MediaFile", "ShellCommand", "UsesNetwork", "InitMusicSync", "SyncToMusic", "GetEvent"}},
      {"ShellCommandManager", {"CommandLineFor", "WindowStyleFor"}},
  };
  return members.at(component);
}

IID EventsOf(const std::string& component) {
  if (component == "ChannelIO") return ChannelEvents;
  return component == "SequenceEngine" ? SequenceEvents : ManagerEvents;
}

std::vector<SuiteComponent*> ObjectsOf(const std::string& component) {
  std::vector<SuiteComponent*> objects;
  for (SuiteComponent* object : Living())
    if (object->Component() == component) objects.push_back(object);
  return objects;
}

std::string ComponentOf(IDispatch* object) {
  for (SuiteComponent* living : Living())
    if (static_cast<IDispatch*>(living) == object) return living->Component();
  return "";
}

SuiteComponent::SuiteComponent(std::string component)
    : m_Component(std::move(component)),
      m_Properties(new Point(*this, IID_IPropertyNotifySink)),
      m_Events(new Point(*this, EventsOf(m_Component))) {
  Living().insert(this);
  ++TheScript().Objects;
}

SuiteComponent::~SuiteComponent() {
  delete m_Properties;
  delete m_Events;
  Living().erase(this);
  --TheScript().Objects;
}

HRESULT SuiteComponent::QueryInterface(REFIID id, void** object) {
  const SuiteEvents how = EventsHow(m_Component);
  *object = nullptr;
  if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch)) *object = static_cast<IDispatch*>(this);
  if (IsEqualIID(id, IID_IConnectionPointContainer) && how != EventsNone)
    *object = static_cast<IConnectionPointContainer*>(this);
  if ((IsEqualIID(id, IID_IProvideClassInfo) || IsEqualIID(id, IID_IProvideClassInfo2)) &&
      how != EventsEnumerated)
    *object = static_cast<IProvideClassInfo2*>(this);
  if (TheScript().Controls.contains(m_Component)) {
    if (IsEqualIID(id, IID_IOleObject)) *object = static_cast<IOleObject*>(&m_OleSide);
    if (IsEqualIID(id, IID_IPersistStreamInit)) *object = static_cast<IPersistStreamInit*>(&m_OleSide);
  }
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG SuiteComponent::Release() {
  const ULONG left = --m_References;
  if (left == 0) delete this;
  return left;
}

HRESULT SuiteComponent::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT SuiteComponent::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) {
  ListenOutside();
  const std::string asked = Narrow(names[0], wcslen(names[0]));
  const auto& members = MembersOf(m_Component);
  for (size_t i = 0; i < members.size(); ++i) {
    const auto renamed = TheScript().Names.find(m_Component + "." + members[i]);
    if (renamed != TheScript().Names.end() ? renamed->second == asked : members[i] == asked) {
      numbers[0] = FirstNumber + static_cast<DISPID>(i);
      return S_OK;
    }
  }
  TheScript().Calls += m_Component + " has no " + asked + "\n";
  if (TheScript().HarmOnce) TheScript().Names.erase(m_Component + "." + asked);
  TellOutside();
  numbers[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

void SuiteComponent::Write(const std::string& member, WORD kind, const DISPPARAMS& parameters) const {
  std::string line = m_Component + "." + member;
  const bool put = kind == DISPATCH_PROPERTYPUT;
  if (put && (parameters.cNamedArgs != 1 || parameters.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
    line += " (badly put)";
  if (!put && kind != (DISPATCH_METHOD | DISPATCH_PROPERTYGET))
    line += " (kind " + std::to_string(kind) + ")";
  line += put ? " = " : "(";
  for (UINT i = parameters.cArgs; i > 0; --i)
    line += Described(parameters.rgvarg[i - 1]) + (i > 1 ? ", " : "");
  TheScript().Calls += line + (put ? "\n" : ")\n");
}

HRESULT SuiteComponent::Invoke(DISPID number, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                               VARIANT* result, EXCEPINFO* raised, UINT*) {
  const auto& members = MembersOf(m_Component);
  const auto index = static_cast<size_t>(number - FirstNumber);
  if (index >= members.size()) return DISP_E_MEMBERNOTFOUND;
  const std::string key = m_Component + "." + members[index];
  ListenOutside();
  if (TheScript().Deaf.contains(key)) return DISP_E_MEMBERNOTFOUND;
  Write(members[index], kind, *parameters);
  TellOutside();
  for (UINT i = 0; i < parameters->cArgs; ++i)
    if (parameters->rgvarg[i].vt == (VT_UI1 | VT_BYREF))
      *parameters->rgvarg[i].pbVal = static_cast<BYTE>(*parameters->rgvarg[i].pbVal + TheScript().PortDelta);
  const auto raising = TheScript().Raisings.find(key);
  if (raising != TheScript().Raisings.end()) {
    const HRESULT code = Raise(raising->second, raised);
    if (TheScript().HarmOnce) TheScript().Raisings.erase(raising);
    return code;
  }
  const auto next = TheScript().NextResults.find(key);
  if (result != nullptr && next != TheScript().NextResults.end() && !next->second.empty()) {
    *result = next->second.front();
    next->second.pop_front();
    return S_OK;
  }
  const auto given = TheScript().Results.find(key);
  if (result != nullptr && given != TheScript().Results.end()) return VariantCopy(result, &given->second);
  return S_OK;
}

HRESULT SuiteComponent::EnumConnectionPoints(IEnumConnectionPoints** points) {
  *points = new Points({m_Properties, m_Events});
  return S_OK;
}

HRESULT SuiteComponent::FindConnectionPoint(REFIID id, IConnectionPoint** point) {
  *point = nullptr;
  if (!IsEqualIID(id, m_Events->Id())) return CONNECT_E_NOCONNECTION;
  *point = m_Events;
  AddRef();
  return S_OK;
}

HRESULT SuiteComponent::GetGUID(DWORD kind, GUID* id) {
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *id = m_Events->Id();
  return S_OK;
}

HRESULT SuiteComponent::Fire(DISPID number, VARIANT* arguments, UINT count) {
  return m_Events->Fire(number, arguments, count);
}

void SuiteComponent::HangUp() {
  m_Events->HangUp();
}

HRESULT Point::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IConnectionPoint)) return E_NOINTERFACE;
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

HRESULT Point::GetConnectionInterface(IID* id) {
  *id = m_Id;
  return S_OK;
}

/// Listens only to who answers to the interface of its own events.
HRESULT Point::Advise(IUnknown* sink, DWORD* cookie) {
  IDispatch* listener = nullptr;
  if (EventsHow(m_Owner.Component()) == EventsRefused) return CONNECT_E_ADVISELIMIT;
  if (FAILED(sink->QueryInterface(m_Id, reinterpret_cast<void**>(&listener)))) return CONNECT_E_CANNOTCONNECT;
  m_Sinks[++m_LastCookie] = listener;
  *cookie = m_LastCookie;
  TheScript().Calls += m_Owner.Component() + " is listened to\n";
  return S_OK;
}

HRESULT Point::Unadvise(DWORD cookie) {
  const auto sink = m_Sinks.find(cookie);
  if (sink == m_Sinks.end()) return CONNECT_E_NOCONNECTION;
  sink->second->Release();
  m_Sinks.erase(sink);
  return S_OK;
}

HRESULT Point::Fire(DISPID number, VARIANT* arguments, UINT count) {
  std::vector<VARIANT> backwards(arguments, arguments + count);
  std::reverse(backwards.begin(), backwards.end());
  DISPPARAMS parameters{backwards.data(), nullptr, count, 0};
  HRESULT result = S_FALSE;
  const auto sinks = m_Sinks;
  for (const auto& [cookie, sink] : sinks)
    result = sink->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                          nullptr, nullptr);
  return result;
}

void Point::HangUp() {
  for (const auto& [cookie, sink] : m_Sinks) sink->Release();
  m_Sinks.clear();
}

}  // namespace suite
