#include "testkit/shell/data_object.h"

#include <ole2.h>
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

void append(std::vector<std::byte>& block, const void* data, std::size_t size) {
    const auto* bytes = static_cast<const std::byte*>(data);
    block.insert(block.end(), bytes, bytes + size);
}

// The shell's id list array: the number of items, the offset of the parent folder's id list (the desktop's,
// which is empty) and of each item's, then the lists.
std::vector<std::byte> item_id_list(const std::vector<std::wstring>& paths) {
    std::vector<UINT> head(2 + paths.size());
    std::vector<std::byte> lists(sizeof(USHORT));
    head[0] = static_cast<UINT>(paths.size());
    head[1] = static_cast<UINT>(head.size() * sizeof(UINT));
    for (std::size_t item = 0; item < paths.size(); ++item) {
        head[2 + item] = static_cast<UINT>(head[1] + lists.size());
        auto* id_list = ILCreateFromPathW(paths[item].c_str());
        append(lists, id_list, ILGetSize(id_list));
        ILFree(id_list);
    }
    std::vector<std::byte> block;
    append(block, head.data(), head[1]);
    append(block, lists.data(), lists.size());
    return block;
}

}  // namespace

data_object::~data_object() {
    for (const auto& block : blocks_) {
        GlobalFree(block.memory);
    }
}

void data_object::add(CLIPFORMAT format, const std::vector<std::byte>& block) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, block.size());
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    if (!block.empty()) {
        std::memcpy(GlobalLock(memory), block.data(), block.size());
        GlobalUnlock(memory);
    }
    blocks_.push_back({format, memory});
}

HGLOBAL data_object::find(const FORMATETC& format) const noexcept {
    if ((format.tymed & TYMED_HGLOBAL) == 0 || format.dwAspect != DVASPECT_CONTENT) {
        return nullptr;
    }
    for (const auto& block : blocks_) {
        if (block.format == format.cfFormat) {
            return block.memory;
        }
    }
    return nullptr;
}

UINT data_object::lock_count() const noexcept {
    UINT locks = 0;
    for (const auto& block : blocks_) {
        locks += GlobalFlags(block.memory) & GMEM_LOCKCOUNT;
    }
    return locks;
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
    HGLOBAL memory = find(*format);
    *medium = {};
    if (memory == nullptr) {
        return DV_E_FORMATETC;
    }
    if (answer != S_OK) {
        // As careless sources do: what a refusal leaves there is nobody's to release.
        medium->tymed = TYMED_HGLOBAL;
        medium->pUnkForRelease = this;
        return answer;
    }
    if (format->cfFormat != CF_HDROP) {
        // Given away as a copy: Wine's shell frees this memory whatever the medium says.
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = OleDuplicateData(memory, format->cfFormat, GMEM_MOVEABLE);
        return medium->hGlobal == nullptr ? E_OUTOFMEMORY : S_OK;
    }
    medium->tymed = lent_tymed;
    medium->hGlobal = lend_nothing ? nullptr : memory;
    medium->pUnkForRelease = this;
    AddRef();
    return S_OK;
}

STDMETHODIMP
data_object::QueryGetData(FORMATETC* format) noexcept {
    return format != nullptr && find(*format) != nullptr ? S_OK : DV_E_FORMATETC;
}

STDMETHODIMP
data_object::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) noexcept {
    if (direction != DATADIR_GET) {
        return E_NOTIMPL;
    }
    std::vector<FORMATETC> known;
    known.reserve(blocks_.size());
    for (const auto& block : blocks_) {
        known.push_back({block.format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL});
    }
    return SHCreateStdEnumFmtEtc(static_cast<UINT>(known.size()), known.data(), formats);
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

Microsoft::WRL::ComPtr<data_object> select_items(const std::vector<std::wstring>& paths) {
    auto made = select_paths(paths);
    made->add(static_cast<CLIPFORMAT>(RegisterClipboardFormatW(CFSTR_SHELLIDLIST)), item_id_list(paths));
    return made;
}

Microsoft::WRL::ComPtr<data_object> select_block(const std::vector<std::byte>& block) {
    auto made = com::adopt(com::make_object<data_object>());
    made->add(CF_HDROP, block);
    return made;
}

}  // namespace ov::test
