#include "shell/property_sheet/orvane_property_sheet.h"

namespace ov::shell {

STDMETHODIMP
OrvanePropertySheet::Initialize(PCIDLIST_ABSOLUTE /*folder*/, IDataObject* /*selection*/,
                                HKEY /*key*/) noexcept {
    return S_OK;
}

STDMETHODIMP
OrvanePropertySheet::AddPages(LPFNSVADDPROPSHEETPAGE /*add_page*/, LPARAM /*context*/) noexcept {
    return S_OK;
}

STDMETHODIMP
OrvanePropertySheet::ReplacePage(EXPPS /*page_id*/, LPFNSVADDPROPSHEETPAGE /*replace_page*/,
                                 LPARAM /*context*/) noexcept {
    return E_NOTIMPL;
}

}  // namespace ov::shell
