#pragma once

#include <windows.h>

#include <cstddef>
#include <cstring>

namespace ov::dialog {

/// Bytes that end where a page that cannot be read begins.
class guarded_memory {
  public:
    explicit guarded_memory(std::size_t size_bytes, DWORD protection = PAGE_READWRITE)
        : pages_((size_bytes + page_bytes - 1) / page_bytes),
          start_(static_cast<std::byte*>(
              VirtualAlloc(nullptr, (pages_ + 1) * page_bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))),
          bytes_(start_ + pages_ * page_bytes - size_bytes) {
        protect(protection);
        DWORD old = 0;
        VirtualProtect(start_ + pages_ * page_bytes, page_bytes, PAGE_NOACCESS, &old);
    }
    guarded_memory(const guarded_memory&) = delete;
    guarded_memory& operator=(const guarded_memory&) = delete;
    ~guarded_memory() { VirtualFree(start_, 0, MEM_RELEASE); }

    /// Changes what may be done with the bytes.
    void protect(DWORD protection) const {
        DWORD old = 0;
        VirtualProtect(start_, pages_ * page_bytes, protection, &old);
    }

    template <class T>
    [[nodiscard]] T* as() const {
        return reinterpret_cast<T*>(bytes_);
    }

  private:
    static constexpr std::size_t page_bytes = 4096;
    const std::size_t pages_;
    std::byte* const start_;
    std::byte* const bytes_;
};

}  // namespace ov::dialog
