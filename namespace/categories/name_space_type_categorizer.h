#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include "ovufc/com/com_object.h"

namespace ov::name_space {

class NameSpaceTypeCategorizer;

using NameSpaceTypeCategorizerBase =
    com::com_object<NameSpaceTypeCategorizer, com::bases<ICategorizer>,
                    com::answers<com::answer<IUnknown>, com::answer<ICategorizer>>>;

/// Puts items under the four headings of `type_categories`. Keeps the folder alive. One thread at a time.
///
/// No text gets a terminator, kept on purpose: whoever asks zeroes the buffer first.
class NameSpaceTypeCategorizer final : public NameSpaceTypeCategorizerBase {
  public:
    explicit NameSpaceTypeCategorizer(IShellFolder2* owner) noexcept;
    virtual ~NameSpaceTypeCategorizer();

    STDMETHODIMP
    GetDescription(LPWSTR text, UINT capacity_chars) noexcept override;
    /// The first failure of the folder's GetDetailsEx ends the call and is its result.
    STDMETHODIMP
    GetCategory(UINT count, PCUITEMID_CHILD_ARRAY entries, DWORD* ids) noexcept override;
    /// Leaves the record as it is for an unknown id, and its flags in every case.
    STDMETHODIMP
    GetCategoryInfo(DWORD id, CATEGORY_INFO* info) noexcept override;
    STDMETHODIMP
    CompareCategory(CATSORT_FLAGS flags, DWORD id1, DWORD id2) noexcept override;

  private:
    Microsoft::WRL::ComPtr<IShellFolder2> folder;
};

}  // namespace ov::name_space
