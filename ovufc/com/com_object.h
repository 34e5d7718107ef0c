#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "ovufc/com/live_count.h"

namespace ov::com {

/// The interfaces that a class derives from, in the order of its interface tables.
template <class... Interfaces>
struct bases {};

/// One row of an interface lookup table: a request for `Asked` is given the `Face` of the object.
template <class Asked, class Face = Asked>
struct answer {
    using asked = Asked;
    using face = Face;
};

/// The interface lookup table of a class, in the order in which it is searched.
template <class... Answers>
struct answers {};

template <class Self, class Bases, class Answers, live_count* Live = nullptr>
class com_object;

/// Base of every COM object of the module: reference count, interface lookup and live-object count.
///
/// The count starts at 1 and is a plain integer on purpose: an object is used by one apartment, and only the
/// live-object counts are atomic. The last `Release` frees the object and then lowers `Live`, so that the
/// module may be unloaded only after the destructor has run; `make_object` raises it. `Live` is null for the
/// companions of the namespace folder, which are not counted.
///
/// `Self` must have been made by `make_object` and must have a virtual or final destructor reachable here.
template <class Self, class... Interfaces, class... Answers, live_count* Live>
class com_object<Self, bases<Interfaces...>, answers<Answers...>, Live> : public Interfaces... {
  public:
    com_object(const com_object&) = delete;
    com_object& operator=(const com_object&) = delete;

    STDMETHODIMP
    QueryInterface(REFIID riid, void** ppv) noexcept override {
        if (ppv == nullptr) {
            return E_POINTER;
        }
        *ppv = nullptr;
        auto* self = static_cast<Self*>(this);
        (void)((riid == __uuidof(typename Answers::asked)
                    ? (*ppv = static_cast<typename Answers::face*>(self), true)
                    : false) ||
               ...);
        if (*ppv == nullptr) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++refCount; }

    STDMETHODIMP_(ULONG) Release() noexcept override {
        if (refCount != 0) {
            --refCount;
        }
        if (refCount != 0) {
            return refCount;
        }
        std::unique_ptr<Self>(static_cast<Self*>(this)).reset();
        if constexpr (Live != nullptr) {
            Live->lower();
        }
        return 0;
    }

    /// For `make_object` alone: only an object whose constructor has come to its end is counted.
    static void count_one_more() noexcept {
        if constexpr (Live != nullptr) {
            Live->raise();
        }
    }

  protected:
    com_object() noexcept = default;
    ~com_object() = default;

  private:
    std::uint32_t refCount = 1;
};

/// A new `T` with a count of 1, which the caller owns; null when there is no memory for the object itself.
/// What the constructor throws is passed on.
template <class T, class... Args>
[[nodiscard]] T* make_object(Args&&... args) {
    T* made = new (std::nothrow) T(std::forward<Args>(args)...);
    if (made != nullptr) {
        T::count_one_more();
    }
    return made;
}

}  // namespace ov::com
