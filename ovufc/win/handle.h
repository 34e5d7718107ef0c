#pragma once

#include <windows.h>

#include <utility>

namespace ov::win {

/// Owner of one handle. `Traits` names the handle type, its invalid value and how it is closed; closing keeps
/// the thread's last-error value, so that a failure can still be reported after clean-up.
template <class Traits>
class unique_handle {
  public:
    using type = typename Traits::type;

    unique_handle() noexcept = default;
    explicit unique_handle(type value) noexcept : value_(value) {}
    unique_handle(unique_handle&& other) noexcept : value_(other.release()) {}
    unique_handle& operator=(unique_handle&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~unique_handle() { reset(); }

    [[nodiscard]] type get() const noexcept { return value_; }
    [[nodiscard]] explicit operator bool() const noexcept { return value_ != Traits::invalid(); }
    [[nodiscard]] type release() noexcept { return std::exchange(value_, Traits::invalid()); }

    void reset(type value = Traits::invalid()) noexcept {
        const type old = std::exchange(value_, value);
        if (old != Traits::invalid()) {
            const DWORD last_error = GetLastError();
            Traits::close(old);
            SetLastError(last_error);
        }
    }

    /// For an API's out-parameter; the handle held before is closed first.
    [[nodiscard]] type* put() noexcept {
        reset();
        return &value_;
    }

  private:
    type value_ = Traits::invalid();
};

struct file_handle_traits {
    using type = HANDLE;
    static type invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(type value) noexcept { CloseHandle(value); }
};
/// A file or device from CreateFileW; closed with CloseHandle.
using unique_file = unique_handle<file_handle_traits>;

struct kernel_handle_traits {
    using type = HANDLE;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { CloseHandle(value); }
};
/// A kernel object whose invalid value is null; closed with CloseHandle.
using unique_kernel_handle = unique_handle<kernel_handle_traits>;

struct find_traits {
    using type = HANDLE;
    static type invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(type value) noexcept { FindClose(value); }
};
/// A search from FindFirstFileW; closed with FindClose.
using unique_find = unique_handle<find_traits>;

struct library_traits {
    using type = HMODULE;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { FreeLibrary(value); }
};
/// A library from LoadLibraryExW; freed with FreeLibrary.
using unique_library = unique_handle<library_traits>;

}  // namespace ov::win
