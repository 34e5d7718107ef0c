#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// Records the order in which one thread writes into one page of memory.
///
/// From construction to destruction the page is read-only; each writing instruction of the constructing
/// thread is noted, let through and followed by protecting the page again. An atomic compare-and-swap counts
/// as a write even when it stores nothing. One trace at a time.
class write_trace : private noncopyable {
  public:
    /// `page` is a whole page of committed memory. `before_write`, when there is one, is told the offset in
    /// the page before the write happens; it must not write into the page itself.
    explicit write_trace(volatile void* page, std::function<void(std::size_t)> before_write = {});
    ~write_trace();

    /// Offsets in the page, one for each writing instruction, in order. A string instruction that fills many
    /// bytes may count once for each of its steps.
    [[nodiscard]] const std::vector<std::size_t>& offsets() const noexcept;

  private:
    static LONG CALLBACK on_exception(EXCEPTION_POINTERS* pointers);
    LONG handle(EXCEPTION_POINTERS& pointers);
    void protect(DWORD protection) noexcept;

    char* page_;
    std::function<void(std::size_t)> before_write_;
    std::vector<std::size_t> offsets_;
    bool stepping_ = false;
    void* handler_;
};

}  // namespace ov::test
