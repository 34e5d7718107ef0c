#pragma once

#include <wrl/client.h>

namespace ov::com {

/// A ComPtr that takes over the reference which the caller owns, such as that of a new object.
///
/// In place of ComPtr's own `Attach`: the one in mingw-w64's header takes a reference of its own, so that the
/// object would never be freed. This means the same with every compiler.
template <class T>
[[nodiscard]] Microsoft::WRL::ComPtr<T> adopt(T* owned) noexcept {
    Microsoft::WRL::ComPtr<T> adopted;
    *adopted.GetAddressOf() = owned;
    return adopted;
}

}  // namespace ov::com
