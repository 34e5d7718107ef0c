#include "tools/stand_ins/items/data_object.h"

#include <ole2.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <vector>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/guard.h"
#include "tools/stand_ins/items/drop_files.h"
#include "tools/stand_ins/items/id_list_array.h"
#include "tools/stand_ins/items/item_paths.h"
#include "tools/stand_ins/items/stored_medium.h"

namespace ov::stand_ins {

namespace {

using Microsoft::WRL::ComPtr;

class shell_data_object final
    : public com::com_object<shell_data_object, com::bases<IDataObject>,
                             com::answers<com::answer<IUnknown, IDataObject>, com::answer<IDataObject>>> {
  public:
    shell_data_object(item_selection selection, IDataObject* inner)
        : selection_(std::move(selection)), inner_(inner) {
        const auto children = selection_.children();
        store(
            id_list_array_format(),
            make_id_list_array(selection_.folder.get(), static_cast<UINT>(children.size()), children.data()));
    }
    virtual ~shell_data_object() = default;

    STDMETHODIMP
    GetData(FORMATETC* asked, STGMEDIUM* medium) noexcept override {
        if (asked == nullptr || medium == nullptr) {
            return E_INVALIDARG;
        }
        *medium = {};
        return com::guarded([&] {
            const stored_medium* found = find(*asked);
            if (found == nullptr) {
                return inner_ != nullptr ? inner_->GetData(asked, medium) : DV_E_FORMATETC;
            }
            return (found->format().tymed & asked->tymed) != 0 ? found->copy_to(*medium) : DV_E_TYMED;
        });
    }

    STDMETHODIMP
    GetDataHere(FORMATETC* /*asked*/, STGMEDIUM* /*medium*/) noexcept override { return E_NOTIMPL; }

    STDMETHODIMP
    QueryGetData(FORMATETC* asked) noexcept override {
        if (asked == nullptr) {
            return E_INVALIDARG;
        }
        return com::guarded([&] {
            const stored_medium* found = find(*asked);
            if (found == nullptr) {
                return inner_ != nullptr ? inner_->QueryGetData(asked) : DV_E_FORMATETC;
            }
            return (found->format().tymed & asked->tymed) != 0 ? S_OK : DV_E_TYMED;
        });
    }

    STDMETHODIMP
    GetCanonicalFormatEtc(FORMATETC* asked, FORMATETC* canonical) noexcept override {
        if (asked == nullptr || canonical == nullptr) {
            return E_INVALIDARG;
        }
        *canonical = *asked;
        canonical->ptd = nullptr;
        return DATA_S_SAMEFORMATETC;
    }

    STDMETHODIMP
    SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) noexcept override {
        if (format == nullptr || medium == nullptr) {
            return E_INVALIDARG;
        }
        return com::guarded([&] {
            STGMEDIUM kept = *medium;
            if (!release) {
                const HRESULT copied = stored_medium::copy_medium(*medium, format->cfFormat, kept);
                if (FAILED(copied)) {
                    return copied;
                }
            }
            put(stored_medium(*format, kept));
            return S_OK;
        });
    }

    STDMETHODIMP
    EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) noexcept override {
        if (formats == nullptr) {
            return E_INVALIDARG;
        }
        *formats = nullptr;
        if (direction != DATADIR_GET) {
            return E_NOTIMPL;
        }
        return com::guarded([&] {
            add_drop_files();
            std::vector<FORMATETC> all;
            all.reserve(stored_.size());
            for (const stored_medium& each : stored_) {
                all.push_back(each.format());
            }
            return SHCreateStdEnumFmtEtc(static_cast<UINT>(all.size()), all.data(), formats);
        });
    }

    STDMETHODIMP
    DAdvise(FORMATETC* /*format*/, DWORD /*flags*/, IAdviseSink* /*sink*/,
            DWORD* /*connection*/) noexcept override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    STDMETHODIMP
    DUnadvise(DWORD /*connection*/) noexcept override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP
    EnumDAdvise(IEnumSTATDATA** /*connections*/) noexcept override { return OLE_E_ADVISENOTSUPPORTED; }

  private:
    void store(CLIPFORMAT format, unique_global memory) {
        if (!memory) {
            throw std::bad_alloc();
        }
        STGMEDIUM medium{};
        medium.tymed = TYMED_HGLOBAL;
        medium.hGlobal = memory.release();
        put(stored_medium({format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}, medium));
    }

    void put(stored_medium added) {
        const auto same = std::find_if(stored_.begin(), stored_.end(),
                                       [&](const auto& each) { return each.holds(added.format()); });
        if (same != stored_.end()) {
            *same = std::move(added);
        } else {
            stored_.push_back(std::move(added));
        }
    }

    [[nodiscard]] const stored_medium* search(const FORMATETC& asked) const {
        const auto found =
            std::find_if(stored_.begin(), stored_.end(), [&](const auto& each) { return each.holds(asked); });
        return found != stored_.end() ? &*found : nullptr;
    }

    [[nodiscard]] const stored_medium* find(const FORMATETC& asked) {
        const stored_medium* found = search(asked);
        if (found == nullptr && asked.cfFormat == CF_HDROP) {
            add_drop_files();
            found = search(asked);
        }
        return found;
    }

    void add_drop_files() {
        const FORMATETC drop_files{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        if (paths_are_known_ || search(drop_files) != nullptr) {
            return;
        }
        paths_are_known_ = true;
        const auto paths = file_system_paths(selection_);
        if (!paths.empty()) {
            store(CF_HDROP, make_drop_files(paths));
        }
    }

    item_selection selection_;
    ComPtr<IDataObject> inner_;
    std::vector<stored_medium> stored_;
    bool paths_are_known_ = false;
};

}  // namespace

STDAPI create_data_object(PCIDLIST_ABSOLUTE folder, UINT count, PCUITEMID_CHILD_ARRAY items,
                          IDataObject* inner, REFIID riid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (folder == nullptr || (count != 0 && items == nullptr)) {
        return E_INVALIDARG;
    }
    return com::guarded([&]() -> HRESULT {
        ComPtr<shell_data_object> object;
        object = com::adopt(com::make_object<shell_data_object>(copy_selection(folder, count, items), inner));
        return object != nullptr ? object->QueryInterface(riid, result) : E_OUTOFMEMORY;
    });
}

}  // namespace ov::stand_ins
