#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// Bytes that end exactly where 256 KiB begin that nobody may touch.
///
/// A reader that goes past the end does not end the program: they are opened for it and the overrun
/// counted, so that a test fails by name. One buffer at a time; only the thread that made it should read it.
class guarded_buffer : private noncopyable {
  public:
    /// A copy of `content`.
    explicit guarded_buffer(std::span<const std::byte> content);
    /// Zeros, with which may be done what `protection` says (PAGE_READONLY …).
    explicit guarded_buffer(std::size_t size_bytes, DWORD protection = PAGE_READWRITE);
    ~guarded_buffer();

    [[nodiscard]] std::byte* data() const noexcept { return guard_ - size_; }
    template <class T>
    [[nodiscard]] T* as() const noexcept {
        return reinterpret_cast<T*>(data());
    }
    /// Changes what may be done with the bytes.
    void protect(DWORD protection) const noexcept;
    /// How often the guard was met: at most once, since meeting it opens it.
    [[nodiscard]] int overruns() const noexcept;

  private:
    std::byte* base_;
    std::byte* guard_;
    std::size_t size_;
    void* handler_;
};

}  // namespace ov::test
