#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <memory>
#include <new>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/live_count.h"

namespace ov {

/// What the class objects share: `QueryInterface`, `AddRef` and `LockServer`.
///
/// Both counts are plain integers: a class object is meant to be used by one thread at a time. The lock count
/// lives here and not in the module: it keeps this class object, and so the module, alive.
class class_object_base : public IClassFactory {
  public:
    class_object_base() noexcept = default;
    class_object_base(const class_object_base&) = delete;
    class_object_base& operator=(const class_object_base&) = delete;

    STDMETHODIMP
    QueryInterface(REFIID riid, void** ppv) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override;
    /// Returns the new lock count. Lowering it to 0 does not free a class object whose reference count is 0
    /// already: such an object stays counted until the process ends, on purpose.
    STDMETHODIMP
    LockServer(BOOL lock) noexcept override;

  protected:
    ~class_object_base() = default;

    std::uint32_t refCount = 1;
    std::uint32_t lockCount = 0;
};

/// One class object: what differs is which count it raises and what it makes.
///
/// `Self` derives from this, names its `static com::live_count& factory_count()` and implements
/// `make_instance(riid, ppv)`, which is never asked to aggregate.
template <class Self>
class class_object : public class_object_base {
  public:
    STDMETHODIMP_(ULONG) Release() noexcept override {
        if (refCount != 0) {
            --refCount;
        }
        if (refCount != 0) {
            return refCount;
        }
        if (lockCount != 0) {
            return 0;
        }
        std::unique_ptr<Self>(static_cast<Self*>(this)).reset();
        Self::factory_count().lower();
        return 0;
    }

    STDMETHODIMP
    CreateInstance(IUnknown* outer, REFIID riid, void** ppv) noexcept override {
        if (ppv == nullptr) {
            return E_POINTER;
        }
        if (outer != nullptr) {
            *ppv = nullptr;
            return CLASS_E_NOAGGREGATION;
        }
        return static_cast<Self*>(this)->make_instance(riid, ppv);
    }

    /// Makes a class object and queries it for `riid`; it is freed again when it does not have that
    /// interface.
    static HRESULT hand_out(REFIID riid, void** ppv) noexcept {
        auto* made = new (std::nothrow) Self();
        if (made == nullptr) {
            return E_OUTOFMEMORY;
        }
        Self::factory_count().raise();
        const HRESULT result = made->QueryInterface(riid, ppv);
        made->Release();
        return result;
    }
};

/// Makes an `Object` and queries it for `riid`: the caller owns the one reference that the query added. Out
/// of memory, for the object itself or for what its constructor builds: E_OUTOFMEMORY and a null `*ppv`.
template <class Object>
[[nodiscard]] HRESULT make_and_query(REFIID riid, void** ppv) noexcept {
    try {
        if (const auto made = com::adopt(com::make_object<Object>()); made != nullptr) {
            return made->QueryInterface(riid, ppv);
        }
    } catch (...) {
        // Out of memory while the object built what it holds: the same as for the object itself.
    }
    *ppv = nullptr;
    return E_OUTOFMEMORY;
}

}  // namespace ov
