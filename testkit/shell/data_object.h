#pragma once

#include <windows.h>
#include <objidl.h>
#include <wrl/client.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ovufc/com/com_object.h"

namespace ov::test {

/// A selection as a host hands it to a shell extension: a data object that holds a file list (CF_HDROP), and
/// item ids where a test adds them.
///
/// The file list's memory stays the data object's own: each medium that it lends names the object itself as
/// the one to release, so a test sees whether every medium came back and whether the block was unlocked. One
/// thread.
class data_object final
    : public com::com_object<data_object, com::bases<IDataObject>,
                             com::answers<com::answer<IUnknown, IDataObject>, com::answer<IDataObject>>> {
  public:
    data_object() = default;
    ~data_object();

    void add(CLIPFORMAT format, const std::vector<std::byte>& block);

    /// What the next requests get: S_OK lends a block, anything else is returned as it is.
    HRESULT answer = S_OK;
    /// The medium lent names no block.
    bool lend_nothing = false;
    /// The medium lent is called something else than a memory block.
    DWORD lent_tymed = TYMED_HGLOBAL;

    [[nodiscard]] int requests() const noexcept { return requests_; }
    [[nodiscard]] FORMATETC last_format() const noexcept { return last_format_; }
    /// How many locks are held on the blocks at this moment.
    [[nodiscard]] UINT lock_count() const noexcept;
    /// References to the object; mediums that are out count.
    [[nodiscard]] ULONG references() noexcept;

    STDMETHODIMP
    GetData(FORMATETC* format, STGMEDIUM* medium) noexcept override;
    STDMETHODIMP
    GetDataHere(FORMATETC* format, STGMEDIUM* medium) noexcept override;
    STDMETHODIMP
    QueryGetData(FORMATETC* format) noexcept override;
    STDMETHODIMP
    GetCanonicalFormatEtc(FORMATETC* asked, FORMATETC* canonical) noexcept override;
    STDMETHODIMP
    SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) noexcept override;
    STDMETHODIMP
    EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) noexcept override;
    STDMETHODIMP
    DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* id) noexcept override;
    STDMETHODIMP
    DUnadvise(DWORD id) noexcept override;
    STDMETHODIMP
    EnumDAdvise(IEnumSTATDATA** connections) noexcept override;

  private:
    [[nodiscard]] HGLOBAL find(const FORMATETC& format) const noexcept;

    struct held_block {
        CLIPFORMAT format;
        HGLOBAL memory;
    };
    std::vector<held_block> blocks_;
    int requests_ = 0;
    FORMATETC last_format_{};
};

/// The memory of a file list: DROPFILES, then the paths with their terminators.
[[nodiscard]] std::vector<std::byte> file_list(const std::vector<std::wstring>& paths);
/// The same in the narrow form that old programs use.
[[nodiscard]] std::vector<std::byte> narrow_file_list(const std::vector<std::string>& paths);

/// A selection of `paths`.
[[nodiscard]] Microsoft::WRL::ComPtr<data_object> select_paths(const std::vector<std::wstring>& paths);
/// A selection of paths that exist, with their item ids as the shell's own selections have them.
[[nodiscard]] Microsoft::WRL::ComPtr<data_object> select_items(const std::vector<std::wstring>& paths);
/// A selection whose file list is `block`, whatever that holds.
[[nodiscard]] Microsoft::WRL::ComPtr<data_object> select_block(const std::vector<std::byte>& block);

}  // namespace ov::test
