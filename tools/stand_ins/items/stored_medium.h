#pragma once

#include <windows.h>
#include <objidl.h>

#include <utility>

#include "ovufc/noncopyable.h"

namespace ov::stand_ins {

/// One format of a data object with the medium that holds its content; the medium is released with it.
class stored_medium : noncopyable {
  public:
    stored_medium(const FORMATETC& format, const STGMEDIUM& medium) noexcept
        : format_(format), medium_(medium) {
        format_.ptd = nullptr;
    }
    stored_medium(stored_medium&& other) noexcept
        : format_(other.format_), medium_(std::exchange(other.medium_, STGMEDIUM{})) {}
    stored_medium& operator=(stored_medium&& other) noexcept {
        std::swap(format_, other.format_);
        std::swap(medium_, other.medium_);
        return *this;
    }
    ~stored_medium() { ReleaseStgMedium(&medium_); }

    [[nodiscard]] const FORMATETC& format() const noexcept { return format_; }
    [[nodiscard]] bool holds(const FORMATETC& asked) const noexcept {
        return format_.cfFormat == asked.cfFormat && format_.dwAspect == asked.dwAspect &&
               format_.lindex == asked.lindex;
    }
    /// A copy that the caller releases: global memory is duplicated, interfaces are referenced; other media
    /// give DV_E_TYMED.
    [[nodiscard]] HRESULT copy_to(STGMEDIUM& copy) const noexcept {
        return copy_medium(medium_, format_.cfFormat, copy);
    }

    [[nodiscard]] static HRESULT copy_medium(const STGMEDIUM& from, CLIPFORMAT format,
                                             STGMEDIUM& copy) noexcept {
        STGMEDIUM made{};
        made.tymed = from.tymed;
        switch (from.tymed) {
            case TYMED_HGLOBAL:
                made.hGlobal = OleDuplicateData(from.hGlobal, format, GMEM_MOVEABLE);
                if (made.hGlobal == nullptr) {
                    return E_OUTOFMEMORY;
                }
                break;
            case TYMED_ISTREAM:
                made.pstm = from.pstm;
                made.pstm->AddRef();
                break;
            case TYMED_ISTORAGE:
                made.pstg = from.pstg;
                made.pstg->AddRef();
                break;
            default:
                return DV_E_TYMED;
        }
        copy = made;
        return S_OK;
    }

  private:
    FORMATETC format_;
    STGMEDIUM medium_;
};

}  // namespace ov::stand_ins
