#pragma once

#include "components/com/MediaControlItem.h"

namespace vex::test {

/// The interfaces of the media player control with nothing behind them: what a test needs of them it fills
/// in. Objects of the tests live as long as the test wants, whatever is counted.
template <class Interface>
class Stub : public Interface {
 public:
  virtual ~Stub() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch) &&
        !IsEqualIID(id, __uuidof(Interface)))
      return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_References; }
  ULONG STDMETHODCALLTYPE Release() override { return --m_References; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
  [[nodiscard]] ULONG References() const { return m_References; }

 private:
  ULONG m_References = 0;
};

class WmpPlayer4Stub : public Stub<IWMPPlayer4> {
 public:
  HRESULT STDMETHODCALLTYPE close() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_URL(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_URL(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_openState(WMPOpenState*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_playState(WMPPlayState*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_controls(IWMPControls**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_settings(IWMPSettings**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_currentMedia(IWMPMedia**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_currentMedia(IWMPMedia*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_mediaCollection(IWMPMediaCollection**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_playlistCollection(IWMPPlaylistCollection**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_versionInfo(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE launchURL(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_network(IWMPNetwork**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_currentPlaylist(IWMPPlaylist**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_currentPlaylist(IWMPPlaylist*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_cdromCollection(IWMPCdromCollection**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_closedCaption(IWMPClosedCaption**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_isOnline(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Error(IWMPError**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_status(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_dvd(IWMPDVD**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE newPlaylist(BSTR, BSTR, IWMPPlaylist**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE newMedia(BSTR, IWMPMedia**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_enabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_enabled(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_fullScreen(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_fullScreen(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_enableContextMenu(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_enableContextMenu(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_uiMode(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_uiMode(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_stretchToFit(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_stretchToFit(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_windowlessVideo(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_windowlessVideo(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_isRemote(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_playerApplication(IWMPPlayerApplication**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE openPlayer(BSTR) override { return E_NOTIMPL; }
};

class WmpControlsStub : public Stub<IWMPControls> {
 public:
  HRESULT STDMETHODCALLTYPE get_isAvailable(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE play() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE stop() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE pause() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE fastForward() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE fastReverse() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_currentPosition(double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_currentPosition(double) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_currentPositionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE next() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE previous() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE currentItem(IWMPMedia**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_currentItem(IWMPMedia*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_currentMarker(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_currentMarker(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE playItem(IWMPMedia*) override { return E_NOTIMPL; }
};

class WmpSettingsStub : public Stub<IWMPSettings> {
 public:
  HRESULT STDMETHODCALLTYPE get_isAvailable(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_autoStart(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_autoStart(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_baseURL(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_baseURL(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_defaultFrame(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_defaultFrame(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_invokeURLs(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_invokeURLs(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_mute(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_mute(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_playCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_playCount(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_rate(double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_rate(double) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_balance(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_balance(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_volume(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_volume(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getMode(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE setMode(BSTR, VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_enableErrorDialogs(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_enableErrorDialogs(VARIANT_BOOL) override { return E_NOTIMPL; }
};

class WmpMediaStub : public Stub<IWMPMedia> {
 public:
  HRESULT STDMETHODCALLTYPE get_isIdentical(IWMPMedia*, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_sourceURL(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_name(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_name(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_imageSourceWidth(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_imageSourceHeight(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_markerCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getMarkerTime(LONG, double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getMarkerName(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_duration(double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_durationString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_attributeCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getAttributeName(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getItemInfo(BSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE setItemInfo(BSTR, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE getItemInfoByAtom(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE isMemberOf(IWMPPlaylist*, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE isReadOnlyItem(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
};

class WmpErrorStub : public Stub<IWMPError> {
 public:
  HRESULT STDMETHODCALLTYPE clearErrorQueue() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_errorCount(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Item(LONG, IWMPErrorItem**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE webHelp() override { return E_NOTIMPL; }
};

class WmpErrorItemStub : public Stub<IWMPErrorItem> {
 public:
  HRESULT STDMETHODCALLTYPE get_errorCode(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_errorDescription(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_errorContext(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_remedy(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_customUrl(BSTR*) override { return E_NOTIMPL; }
};

}  // namespace vex::test
