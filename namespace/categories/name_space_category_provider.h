#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include "ovufc/com/com_object.h"

namespace ov::name_space {

class NameSpaceCategoryProvider;

using NameSpaceCategoryProviderBase =
    com::com_object<NameSpaceCategoryProvider, com::bases<ICategoryProvider>,
                    com::answers<com::answer<IUnknown>, com::answer<ICategoryProvider>>>;

/// Tells the view that the items can be grouped by their type, and in no other way. Keeps the folder alive.
/// One thread at a time. A column is named by its property key (SCID in the names of the interface):
/// https://learn.microsoft.com/windows/win32/api/shobjidl_core/nn-shobjidl_core-icategoryprovider
class NameSpaceCategoryProvider final : public NameSpaceCategoryProviderBase {
  public:
    explicit NameSpaceCategoryProvider(IShellFolder2* owner) noexcept;
    virtual ~NameSpaceCategoryProvider();

    STDMETHODIMP
    CanCategorizeOnSCID(const SHCOLUMNID* key) noexcept override;
    /// Writes `guid` and leaves `key` as it is.
    STDMETHODIMP
    GetDefaultCategory(GUID* guid, SHCOLUMNID* key) noexcept override;
    /// The name column and every key with an all-zero format identifier are answered; the item-type key is
    /// not, which is why the view groups by the all-zero one.
    STDMETHODIMP
    GetCategoryForSCID(const SHCOLUMNID* key, GUID* guid) noexcept override;
    STDMETHODIMP
    EnumCategories(IEnumGUID** result) noexcept override;
    /// Writes no terminator, so a capacity of exactly the text's length is enough.
    STDMETHODIMP
    GetCategoryName(const GUID* guid, LPWSTR name, UINT capacity_chars) noexcept override;
    STDMETHODIMP
    CreateCategory(const GUID* guid, REFIID riid, void** result) noexcept override;

  private:
    Microsoft::WRL::ComPtr<IShellFolder2> folder;
};

}  // namespace ov::name_space
