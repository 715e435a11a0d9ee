#include "components/com/EventConnection.h"

#include <optional>
#include <utility>

#include "components/com/DispatchObject.h"

namespace vex {
namespace {

/// As a component says that tells more than one of its interfaces apart.
std::optional<IID> DeclaredSource(const ComPointer<IUnknown>& source) {
  const auto classInfo = source.As<IProvideClassInfo2>();
  IID id{};
  if (!classInfo || FAILED(classInfo->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &id))) return std::nullopt;
  return id;
}

/// The source interface that a class's type information marks as the default one.
std::optional<IID> DescribedSource(const ComPointer<IUnknown>& source) {
  const auto classInfo = source.As<IProvideClassInfo>();
  ComPointer<ITypeInfo> info;
  TYPEATTR* attributes = nullptr;
  if (!classInfo || FAILED(classInfo->GetClassInfo(info.Put())) || !info) return std::nullopt;
  if (FAILED(info->GetTypeAttr(&attributes))) return std::nullopt;
  const UINT count = attributes->cImplTypes;
  info->ReleaseTypeAttr(attributes);
  constexpr INT wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
  for (UINT i = 0; i < count; ++i) {
    INT flags = 0;
    HREFTYPE type = 0;
    ComPointer<ITypeInfo> events;
    if (FAILED(info->GetImplTypeFlags(i, &flags)) || (flags & wanted) != wanted) continue;
    if (FAILED(info->GetRefTypeOfImplType(i, &type)) || FAILED(info->GetRefTypeInfo(type, events.Put())))
      continue;
    if (FAILED(events->GetTypeAttr(&attributes))) continue;
    const IID id = attributes->guid;
    events->ReleaseTypeAttr(attributes);
    return id;
  }
  return std::nullopt;
}

/// The first connection point, passing over the one by which containers hear of changed properties.
ComPointer<IConnectionPoint> FirstPoint(const ComPointer<IConnectionPointContainer>& container) {
  ComPointer<IEnumConnectionPoints> points;
  if (FAILED(container->EnumConnectionPoints(points.Put())) || !points) return {};
  for (;;) {
    ComPointer<IConnectionPoint> point;
    ULONG taken = 0;
    IID id{};
    if (points->Next(1, point.Put(), &taken) != S_OK || !point) return {};
    if (SUCCEEDED(point->GetConnectionInterface(&id)) && !IsEqualIID(id, IID_IPropertyNotifySink))
      return point;
  }
}

ComPointer<IConnectionPoint> DefaultPoint(IUnknown* object) {
  const auto source = ComPointer<IUnknown>::Share(object);
  const auto container = source.As<IConnectionPointContainer>();
  if (!container) return {};
  std::optional<IID> id = DeclaredSource(source);
  if (!id) id = DescribedSource(source);
  ComPointer<IConnectionPoint> point;
  if (id && SUCCEEDED(container->FindConnectionPoint(*id, point.Put())) && point) return point;
  return FirstPoint(container);
}

ComPointer<IConnectionPoint> PointOf(IUnknown* object, REFIID id) {
  const auto container = ComPointer<IUnknown>::Share(object).As<IConnectionPointContainer>();
  ComPointer<IConnectionPoint> point;
  if (container && FAILED(container->FindConnectionPoint(id, point.Put()))) return {};
  return point;
}

}  // namespace

/// Takes the component's calls. It may outlive the connection, since the component counts it too.
class EventConnection::Sink final : public DispatchObject {
 public:
  Sink(IID id, Handler handler) : m_Id(id), m_Handler(std::move(handler)) {}
  void HangUp() { m_Handler = nullptr; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    // Components of an apartment call on its thread; one that does not must not reach the show's state.
    if (GetCurrentThreadId() != m_Thread) return RPC_E_WRONG_THREAD;
    try {
      std::vector<VARIANT> arguments;
      const UINT count = parameters == nullptr ? 0 : parameters->cArgs;
      for (UINT i = count; i > 0; --i) arguments.push_back(parameters->rgvarg[i - 1]);
      const Handler handler = m_Handler;  // which may close the connection
      if (handler) handler(number, arguments);
      return S_OK;
    } catch (...) {
      return E_FAIL;
    }
  }

 protected:
  [[nodiscard]] bool AnswersTo(REFIID id) const override { return IsEqualIID(id, m_Id); }

 private:
  IID m_Id;
  Handler m_Handler;
  DWORD m_Thread = GetCurrentThreadId();
};

EventConnection::EventConnection(IUnknown* source, Handler handler) : m_Point(DefaultPoint(source)) {
  Connect(std::move(handler));
}

void EventConnection::Listen(IUnknown* source, REFIID id, Handler handler) {
  Close();
  m_Point = PointOf(source, id);
  Connect(std::move(handler));
}

void EventConnection::Connect(Handler handler) {
  IID id{};
  if (!m_Point || FAILED(m_Point->GetConnectionInterface(&id))) return;
  m_Sink = new Sink(id, std::move(handler));
  if (FAILED(m_Point->Advise(m_Sink, &m_Cookie))) Close();
}

void EventConnection::Close() {
  if (m_Sink != nullptr) m_Sink->HangUp();
  if (m_Cookie != 0) m_Point->Unadvise(std::exchange(m_Cookie, 0));
  m_Point.Release();
  if (m_Sink != nullptr) std::exchange(m_Sink, nullptr)->Release();
}

}  // namespace vex
