#include "components/com/ComFailure.h"

#include <array>

#include "components/com/ComPointer.h"
#include "components/com/ComText.h"

namespace vex {

ComApartment::ComApartment() {
  const HRESULT result = OleInitialize(nullptr);
  if (FAILED(result)) throw ComError(result, "ComApartment", "The component model cannot be used");
}

ComApartment::~ComApartment() {
  OleUninitialize();
}

int32_t ErrorNumberOf(HRESULT result) {
  switch (result) {
    case DISP_E_TYPEMISMATCH:
      return ErrorTypeMismatch;
    case DISP_E_OVERFLOW:
      return ErrorOverflow;
    case DISP_E_BADINDEX:
      return ErrorSubscript;
    default:
      return HRESULT_FACILITY(result) == FACILITY_CONTROL ? HRESULT_CODE(result) : result;
  }
}

std::string WordsFor(HRESULT result) {
  std::array<char, 512> text{};
  const DWORD length =
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(result), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string szText(text.data(), length);
  while (!szText.empty() && std::string_view("\r\n. ").find(szText.back()) != std::string_view::npos)
    szText.pop_back();
  return szText.empty() ? "Error " + std::to_string(ErrorNumberOf(result)) : szText;
}

Error ComError(HRESULT result, const std::string& szSource, const std::string& szAbout) {
  return {ErrorNumberOf(result), szSource, szAbout + ": " + WordsFor(result)};
}

Error RaisedError(EXCEPINFO& raised, const std::string& szSource) {
  if (raised.pfnDeferredFillIn != nullptr) raised.pfnDeferredFillIn(&raised);
  Error error(raised.wCode != 0 ? raised.wCode : ErrorNumberOf(raised.scode), TextOf(raised.bstrSource),
              TextOf(raised.bstrDescription));
  if (error.Source.empty()) error.Source = szSource;
  if (error.Description.empty()) error.Description = WordsFor(raised.scode);
  SysFreeString(raised.bstrSource);
  SysFreeString(raised.bstrDescription);
  SysFreeString(raised.bstrHelpFile);
  raised = {};
  return error;
}

}  // namespace vex
