#include "tests/support/data_object.h"

#include <shlobj.h>

#include <cstring>
#include <new>

#include "ovufc/com/adopt.h"

namespace ov::test {

namespace {

template <class Char>
std::vector<std::byte> make_list(const std::vector<std::basic_string<Char>>& paths, bool wide) {
    std::basic_string<Char> texts;
    for (const auto& path : paths) {
        texts += path;
        texts += Char{};
    }
    texts += Char{};
    DROPFILES header{};
    header.pFiles = sizeof header;
    header.fWide = wide ? TRUE : FALSE;
    std::vector<std::byte> block(sizeof header + texts.size() * sizeof(Char));
    std::memcpy(block.data(), &header, sizeof header);
    std::memcpy(block.data() + sizeof header, texts.data(), texts.size() * sizeof(Char));
    return block;
}

}  // namespace

data_object::data_object(const std::vector<std::byte>& block)
    : block_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, block.size())) {
    if (block_ == nullptr) {
        throw std::bad_alloc();
    }
    if (!block.empty()) {
        std::memcpy(GlobalLock(block_), block.data(), block.size());
        GlobalUnlock(block_);
    }
}

data_object::~data_object() {
    GlobalFree(block_);
}

ULONG data_object::references() noexcept {
    AddRef();
    return Release();
}

STDMETHODIMP
data_object::GetData(FORMATETC* format, STGMEDIUM* medium) noexcept {
    ++requests_;
    if (format == nullptr || medium == nullptr) {
        return E_POINTER;
    }
    last_format_ = *format;
    const HRESULT known = QueryGetData(format);
    if (known != S_OK || answer != S_OK) {
        return known != S_OK ? known : answer;
    }
    *medium = {};
    medium->tymed = lent_tymed;
    medium->hGlobal = lend_nothing ? nullptr : block_;
    medium->pUnkForRelease = this;
    AddRef();
    return S_OK;
}

STDMETHODIMP
data_object::QueryGetData(FORMATETC* format) noexcept {
    const bool known = format != nullptr && format->cfFormat == CF_HDROP &&
                       (format->tymed & TYMED_HGLOBAL) != 0 && format->dwAspect == DVASPECT_CONTENT;
    return known ? S_OK : DV_E_FORMATETC;
}

STDMETHODIMP
data_object::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) noexcept {
    if (direction != DATADIR_GET) {
        return E_NOTIMPL;
    }
    const FORMATETC known{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    return SHCreateStdEnumFmtEtc(1, &known, formats);
}

STDMETHODIMP
data_object::GetDataHere(FORMATETC* /*format*/, STGMEDIUM* /*medium*/) noexcept {
    return E_NOTIMPL;
}
STDMETHODIMP
data_object::GetCanonicalFormatEtc(FORMATETC* /*asked*/, FORMATETC* /*canonical*/) noexcept {
    return E_NOTIMPL;
}
STDMETHODIMP
data_object::SetData(FORMATETC* /*format*/, STGMEDIUM* /*medium*/, BOOL /*release*/) noexcept {
    return E_NOTIMPL;
}
STDMETHODIMP
data_object::DAdvise(FORMATETC* /*format*/, DWORD /*flags*/, IAdviseSink* /*sink*/, DWORD* /*id*/) noexcept {
    return OLE_E_ADVISENOTSUPPORTED;
}
STDMETHODIMP
data_object::DUnadvise(DWORD /*id*/) noexcept {
    return OLE_E_ADVISENOTSUPPORTED;
}
STDMETHODIMP
data_object::EnumDAdvise(IEnumSTATDATA** /*connections*/) noexcept {
    return OLE_E_ADVISENOTSUPPORTED;
}

std::vector<std::byte> file_list(const std::vector<std::wstring>& paths) {
    return make_list(paths, true);
}

std::vector<std::byte> narrow_file_list(const std::vector<std::string>& paths) {
    return make_list(paths, false);
}

Microsoft::WRL::ComPtr<data_object> select_paths(const std::vector<std::wstring>& paths) {
    return select_block(file_list(paths));
}

Microsoft::WRL::ComPtr<data_object> select_block(const std::vector<std::byte>& block) {
    return com::adopt(com::make_object<data_object>(block));
}

}  // namespace ov::test
