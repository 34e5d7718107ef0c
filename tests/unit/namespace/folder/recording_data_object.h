#pragma once

#include <windows.h>
#include <objidl.h>

#include <cstring>
#include <vector>

#include "ovufc/com/com_object.h"

namespace ov::test {

class recording_data_object;

using recording_data_object_base =
    com::com_object<recording_data_object, com::bases<IDataObject>,
                    com::answers<com::answer<IUnknown>, com::answer<IDataObject>>>;

/// The data object that Wine does not make: keeps what is set into it.
class recording_data_object final : public recording_data_object_base {
  public:
    virtual ~recording_data_object() = default;

    HRESULT set_result = S_OK;
    int sets = 0;
    FORMATETC format{};
    DWORD medium_kind = 0;
    BOOL released_to_us = FALSE;
    HGLOBAL block = nullptr;
    std::vector<std::byte> bytes;

    STDMETHODIMP
    SetData(FORMATETC* what, STGMEDIUM* medium, BOOL release) noexcept override {
        ++sets;
        format = *what;
        medium_kind = medium->tymed;
        released_to_us = release;
        block = medium->hGlobal;
        const auto* data = static_cast<const std::byte*>(GlobalLock(block));
        bytes.assign(data, data + GlobalSize(block));
        GlobalUnlock(block);
        if (SUCCEEDED(set_result)) {
            GlobalFree(block);
        }
        return set_result;
    }
    STDMETHODIMP
    GetData(FORMATETC*, STGMEDIUM*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetDataHere(FORMATETC*, STGMEDIUM*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    QueryGetData(FORMATETC*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    EnumFormatEtc(DWORD, IEnumFORMATETC**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    DUnadvise(DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    EnumDAdvise(IEnumSTATDATA**) noexcept override { return E_NOTIMPL; }
};

}  // namespace ov::test
