#include "tests/com/StandInControl.h"

#include <gtest/gtest.h>

#include "components/com/ComText.h"

namespace vex::test {
namespace {

constexpr CLSID ControlId = {0x6bf52a52, 0x394a, 0x11d3, {0xb1, 0x53, 0x00, 0xc0, 0x4f, 0x79, 0xfa, 0xa6}};

template <class Interface, class Object>
HRESULT Give(Object& object, Interface** given) {
  *given = &object;
  object.AddRef();
  return S_OK;
}

}  // namespace

class StandInControl::Controls final : public WmpControlsStub {
 public:
  explicit Controls(StandInControl& owner) : m_Owner(owner) {}
  HRESULT STDMETHODCALLTYPE play() override {
    m_Owner.Write("play");
    for (const int32_t lState : m_Owner.StatesOfPlay) m_Owner.TellState(lState);
    return m_Owner.PlayResult;
  }
  HRESULT STDMETHODCALLTYPE stop() override {
    m_Owner.Write("stop");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_currentPosition(double* position) override {
    *position = m_Owner.Position;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_currentPosition(double position) override {
    m_Owner.Write("currentPosition = " + std::to_string(position));
    return S_FALSE;
  }

 private:
  StandInControl& m_Owner;
};

class StandInControl::Settings final : public WmpSettingsStub {
 public:
  explicit Settings(StandInControl& owner) : m_Owner(owner) {}
  HRESULT STDMETHODCALLTYPE put_autoStart(VARIANT_BOOL start) override {
    m_Owner.Write("autoStart = " + std::to_string(start));
    return S_OK;
  }

 private:
  StandInControl& m_Owner;
};

class StandInControl::Media final : public WmpMediaStub {
 public:
  Media(StandInControl& owner, std::string szUrl) : m_Owner(owner), m_Url(std::move(szUrl)) {}
  [[nodiscard]] const std::string& Url() const { return m_Url; }
  HRESULT STDMETHODCALLTYPE getItemInfo(BSTR name, BSTR* value) override {
    m_Owner.Write("getItemInfo(" + TextOf(name) + ")");
    *value = nullptr;
    if (m_Owner.MediaType) *value = SysAllocString(m_Owner.MediaType->c_str());
    return S_OK;
  }

 private:
  StandInControl& m_Owner;
  std::string m_Url;
};

class StandInControl::ErrorItem final : public WmpErrorItemStub {
 public:
  explicit ErrorItem(std::wstring szText) : m_Text(std::move(szText)) {}
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = WmpErrorItemStub::Release();
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE get_errorDescription(BSTR* text) override {
    *text = SysAllocString(m_Text.c_str());
    return S_OK;
  }

 private:
  std::wstring m_Text;
};

class StandInControl::ErrorList final : public WmpErrorStub {
 public:
  explicit ErrorList(StandInControl& owner) : m_Owner(owner) {}
  HRESULT STDMETHODCALLTYPE clearErrorQueue() override {
    m_Owner.Write("clearErrorQueue");
    m_Owner.Errors->clear();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_errorCount(LONG* count) override {
    *count = static_cast<LONG>(m_Owner.Errors->size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Item(LONG index, IWMPErrorItem** item) override {
    return Give(*new ErrorItem(m_Owner.Errors->at(static_cast<size_t>(index))), item);
  }

 private:
  StandInControl& m_Owner;
};

StandInControl::StandInControl()
    : m_Controls(std::make_unique<Controls>(*this)),
      m_Settings(std::make_unique<Settings>(*this)),
      m_Errors(std::make_unique<ErrorList>(*this)) {
  EXPECT_EQ(CoRegisterClassObject(ControlId, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                                  REGCLS_MULTIPLEUSE, &m_Registration),
            S_OK);
}

StandInControl::~StandInControl() {
  CoRevokeClassObject(m_Registration);
  EXPECT_EQ(References(), 0U) << "the control is still held";
  EXPECT_EQ(m_Controls->References() + m_Settings->References() + m_Errors->References(), 0U);
  for (const auto& media : m_Media) EXPECT_EQ(media->References(), 0U) << media->Url();
}

HRESULT StandInControl::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (IsEqualIID(id, IID_IConnectionPointContainer)) *object = static_cast<IConnectionPointContainer*>(this);
  if (IsEqualIID(id, IID_IConnectionPoint)) *object = static_cast<IConnectionPoint*>(this);
  if (IsEqualIID(id, IID_IClassFactory)) *object = static_cast<IClassFactory*>(this);
  if (*object == nullptr) return WmpPlayer4Stub::QueryInterface(id, object);
  AddRef();
  return S_OK;
}

HRESULT StandInControl::get_playState(WMPPlayState* state) {
  if (!State) return E_NOTIMPL;
  *state = static_cast<WMPPlayState>(*State);
  return S_OK;
}

HRESULT StandInControl::get_controls(IWMPControls** controls) {
  return Give(*m_Controls, controls);
}

HRESULT StandInControl::get_settings(IWMPSettings** settings) {
  return Give(*m_Settings, settings);
}

HRESULT StandInControl::get_currentMedia(IWMPMedia** media) {
  *media = nullptr;
  return m_Current == nullptr ? S_FALSE : Give(*m_Current, media);
}

HRESULT StandInControl::put_currentMedia(IWMPMedia* media) {
  m_Current = static_cast<Media*>(media);
  Write("currentMedia = " + (m_Current == nullptr ? "none" : m_Current->Url()));
  return MediaResult;
}

HRESULT StandInControl::newMedia(BSTR url, IWMPMedia** media) {
  Write("newMedia(" + TextOf(url) + ")");
  m_Media.push_back(std::make_unique<Media>(*this, TextOf(url)));
  return Give(*m_Media.back(), media);
}

HRESULT StandInControl::get_Error(IWMPError** errors) {
  *errors = nullptr;
  return Errors ? Give(*m_Errors, errors) : E_NOTIMPL;
}

HRESULT StandInControl::put_fullScreen(VARIANT_BOOL fullScreen) {
  Write("fullScreen = " + std::to_string(fullScreen));
  return FullScreenResult;
}

HRESULT StandInControl::FindConnectionPoint(REFIID id, IConnectionPoint** point) {
  *point = nullptr;
  if (!IsEqualIID(id, __uuidof(_WMPOCXEvents))) return CONNECT_E_NOCONNECTION;
  *point = this;
  AddRef();
  return S_OK;
}

HRESULT StandInControl::GetConnectionInterface(IID* id) {
  *id = __uuidof(_WMPOCXEvents);
  return S_OK;
}

HRESULT StandInControl::Advise(IUnknown* sink, DWORD* cookie) {
  *cookie = 7;
  return sink->QueryInterface(__uuidof(_WMPOCXEvents), reinterpret_cast<void**>(&m_Sink));
}

HRESULT StandInControl::Unadvise(DWORD cookie) {
  EXPECT_EQ(cookie, 7U);
  if (m_Sink != nullptr) std::exchange(m_Sink, nullptr)->Release();
  return S_OK;
}

void StandInControl::Fire(DISPID number, std::optional<int32_t> argument) {
  if (m_Sink == nullptr) return;
  VARIANT value;
  value.vt = VT_UI4;
  value.ulVal = static_cast<ULONG>(argument.value_or(0));
  DISPPARAMS parameters{&value, nullptr, argument ? 1U : 0U, 0};
  m_Sink->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                 nullptr);
}

}  // namespace vex::test
