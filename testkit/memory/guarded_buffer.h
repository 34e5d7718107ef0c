#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// A copy of some bytes that ends exactly where 256 KiB begin that nobody may touch.
///
/// A reader that goes past the end does not end the program: they are opened for it and the overrun
/// counted, so that a test fails by name. One buffer at a time; only the thread that made it should read it.
class guarded_buffer : private noncopyable {
  public:
    explicit guarded_buffer(std::span<const std::byte> content);
    ~guarded_buffer();

    /// The copy; writable.
    [[nodiscard]] std::byte* data() const noexcept { return guard_ - size_; }
    /// How often the guard was met: at most once, since meeting it opens it.
    [[nodiscard]] int overruns() const noexcept;

  private:
    std::byte* base_;
    std::byte* guard_;
    std::size_t size_;
    void* handler_;
};

}  // namespace ov::test
