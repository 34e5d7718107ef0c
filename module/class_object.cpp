#include "module/class_object.h"

namespace ov {

STDMETHODIMP
class_object_base::QueryInterface(REFIID riid, void** ppv) noexcept {
    if (ppv == nullptr) {
        return E_POINTER;
    }
    *ppv = nullptr;
    if (riid != IID_IUnknown && riid != IID_IClassFactory) {
        return E_NOINTERFACE;
    }
    AddRef();
    *ppv = static_cast<IClassFactory*>(this);
    return S_OK;
}

STDMETHODIMP_(ULONG) class_object_base::AddRef() noexcept {
    return ++refCount;
}

STDMETHODIMP
class_object_base::LockServer(BOOL lock) noexcept {
    if (lock != FALSE) {
        ++lockCount;
    } else if (lockCount != 0) {
        --lockCount;
    }
    return static_cast<HRESULT>(lockCount);
}

}  // namespace ov
