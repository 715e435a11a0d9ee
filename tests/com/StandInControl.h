#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/com/MediaControlStubs.h"

namespace vex::test {

/// A media player control that does what a test tells it, in the place of the machine's own for as long as it
/// lives: whoever creates one in this program gets this. It writes down what is asked of it.
class StandInControl final : public WmpPlayer4Stub,
                             public IConnectionPointContainer,
                             public IConnectionPoint,
                             public IClassFactory {
 public:
  StandInControl();
  ~StandInControl() override;
  StandInControl(const StandInControl&) = delete;
  StandInControl& operator=(const StandInControl&) = delete;

  // What it is told. No value is "not implemented".
  std::optional<int32_t> State;
  std::optional<std::vector<std::wstring>> Errors;
  std::optional<std::wstring> MediaType;
  HRESULT FullScreenResult = S_OK;
  HRESULT PlayResult = S_OK;
  HRESULT MediaResult = S_OK;
  double Position = 0;
  /// States that are told as events inside play().
  std::vector<int32_t> StatesOfPlay;

  void TellState(int32_t lState) { Fire(5101, lState); }
  void TellOpenState(int32_t lState) { Fire(5001, lState); }
  void TellError() { Fire(5501, std::nullopt); }

  [[nodiscard]] std::string TakeCalls() { return std::exchange(m_Calls, ""); }
  [[nodiscard]] bool Listened() const { return m_Sink != nullptr; }

  // As others see it.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return WmpPlayer4Stub::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return WmpPlayer4Stub::Release(); }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    return QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE get_playState(WMPPlayState* state) override;
  HRESULT STDMETHODCALLTYPE get_controls(IWMPControls** controls) override;
  HRESULT STDMETHODCALLTYPE get_settings(IWMPSettings** settings) override;
  HRESULT STDMETHODCALLTYPE get_currentMedia(IWMPMedia** media) override;
  HRESULT STDMETHODCALLTYPE put_currentMedia(IWMPMedia* media) override;
  HRESULT STDMETHODCALLTYPE newMedia(BSTR url, IWMPMedia** media) override;
  HRESULT STDMETHODCALLTYPE get_Error(IWMPError** errors) override;
  HRESULT STDMETHODCALLTYPE put_fullScreen(VARIANT_BOOL fullScreen) override;

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override;
  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override;
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

 private:
  class Controls;
  class Settings;
  class Media;
  class ErrorList;
  class ErrorItem;

  void Fire(DISPID number, std::optional<int32_t> argument);
  void Write(const std::string& szCall) { m_Calls += szCall + "\n"; }

  std::string m_Calls;
  std::unique_ptr<Controls> m_Controls;
  std::unique_ptr<Settings> m_Settings;
  std::unique_ptr<ErrorList> m_Errors;
  std::deque<std::unique_ptr<Media>> m_Media;
  Media* m_Current = nullptr;
  IDispatch* m_Sink = nullptr;
  DWORD m_Registration = 0;
};

}  // namespace vex::test
