#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <vector>

#include "namespace/items/item_data.h"
#include "ovufc/com/com_object.h"

namespace ov::name_space {

class NameSpaceEnumObj;

using NameSpaceEnumObjBase = com::com_object<NameSpaceEnumObj, com::bases<IEnumIDList>,
                                             com::answers<com::answer<IUnknown>, com::answer<IEnumIDList>>>;

/// Hands the folder's items to the shell, one item ID entry a call.
///
/// Works on its own copy of the items, so it needs no lock; keeps the folder alive. One thread at a time.
class NameSpaceEnumObj final : public NameSpaceEnumObjBase {
  public:
    NameSpaceEnumObj(IShellFolder2* owner, SHCONTF wanted, std::vector<ItemData> item_copies) noexcept;
    virtual ~NameSpaceEnumObj();

    /// Only a request for exactly one entry that has `fetched` is ever served; the entry is the caller's, to
    /// be freed with the task allocator.
    STDMETHODIMP
    Next(ULONG count, PITEMID_CHILD* entries, ULONG* fetched) noexcept override;
    /// Not bounded by the number of items.
    STDMETHODIMP
    Skip(ULONG count) noexcept override;
    STDMETHODIMP
    Reset() noexcept override;
    /// E_NOTIMPL.
    STDMETHODIMP
    Clone(IEnumIDList** result) noexcept override;

  private:
    /// The SHCONTF flags asked for; every item is handed out whatever they say.
    [[maybe_unused]] SHCONTF flags;
    std::uint32_t position = 0;
    std::vector<ItemData> items;
    Microsoft::WRL::ComPtr<IShellFolder2> folder;
};

}  // namespace ov::name_space
