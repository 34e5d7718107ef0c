#pragma once

#include <windows.h>
#include <comcat.h>

#include <cstdint>

#include "ovufc/com/com_object.h"

namespace ov::name_space {

class NameSpaceCategoryProviderEnumObj;

using NameSpaceCategoryProviderEnumObjBase =
    com::com_object<NameSpaceCategoryProviderEnumObj, com::bases<IEnumGUID>,
                    com::answers<com::answer<IUnknown>, com::answer<IEnumGUID>>>;

/// Lists the one category, by item type. One thread at a time.
class NameSpaceCategoryProviderEnumObj final : public NameSpaceCategoryProviderEnumObjBase {
  public:
    virtual ~NameSpaceCategoryProviderEnumObj();

    /// Only one at a time may be asked for. The end of the list is E_INVALIDARG and not S_FALSE, kept on
    /// purpose: callers stop at a failure as they do at S_FALSE.
    STDMETHODIMP
    Next(ULONG count, GUID* guids, ULONG* fetched) noexcept override;
    STDMETHODIMP
    Skip(ULONG count) noexcept override;
    STDMETHODIMP
    Reset() noexcept override;
    /// E_NOTIMPL.
    STDMETHODIMP
    Clone(IEnumGUID** result) noexcept override;

  private:
    std::uint32_t calls = 0;
};

}  // namespace ov::name_space
