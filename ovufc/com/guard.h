#pragma once

#include <windows.h>

#include <new>
#include <utility>

namespace ov::com {

/// Runs the body of a COM method; no exception gets past it.
///
/// Returns what the body returns, E_OUTOFMEMORY for a failed allocation and E_UNEXPECTED for anything else
/// that was thrown. Every method whose body can throw goes through here.
template <class Body>
[[nodiscard]] HRESULT guarded(Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace ov::com
