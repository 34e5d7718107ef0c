#include "companions/orvdialog/request/caller_memory.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ov::dialog {

namespace {

constexpr DWORD can_write = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD can_read = can_write | PAGE_READONLY | PAGE_EXECUTE_READ;

/// How many of the `wanted_bytes` from `at` on lie in pages of one of the `protections`.
std::size_t accessible_bytes(const void* at, std::size_t wanted_bytes, DWORD protections) noexcept {
    const auto start = reinterpret_cast<std::uintptr_t>(at);
    std::size_t found_bytes = 0;
    while (found_bytes < wanted_bytes) {
        MEMORY_BASIC_INFORMATION region{};
        const auto* const next = reinterpret_cast<const void*>(start + found_bytes);
        if (VirtualQuery(next, &region, sizeof region) == 0 || region.State != MEM_COMMIT ||
            (region.Protect & protections) == 0 || (region.Protect & (PAGE_GUARD | PAGE_NOACCESS)) != 0) {
            break;
        }
        const auto region_end = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
        found_bytes = region_end - start;
    }
    return std::min(found_bytes, wanted_bytes);
}

}  // namespace

std::size_t readable_bytes(const void* at, std::size_t wanted_bytes) noexcept {
    return at == nullptr ? 0 : accessible_bytes(at, wanted_bytes, can_read);
}

bool is_writable(const void* at, std::size_t size_bytes) noexcept {
    return at != nullptr && accessible_bytes(at, size_bytes, can_write) == size_bytes;
}

std::optional<std::wstring> read_wide_text(const void* at, std::size_t limit_chars) {
    const std::size_t room_chars = readable_bytes(at, (limit_chars + 1) * sizeof(wchar_t)) / sizeof(wchar_t);
    std::vector<wchar_t> copy(room_chars);
    if (room_chars > 0) {
        std::memcpy(copy.data(), at, room_chars * sizeof(wchar_t));
    }
    const auto end = std::ranges::find(copy, L'\0');
    if (end == copy.end()) {
        return std::nullopt;
    }
    return std::wstring(copy.begin(), end);
}

std::optional<std::string_view> read_narrow_text(const char* at, std::size_t limit_chars) noexcept {
    const std::size_t room_chars = readable_bytes(at, limit_chars + 1);
    const void* const end = room_chars == 0 ? nullptr : std::memchr(at, 0, room_chars);
    if (end == nullptr) {
        return std::nullopt;
    }
    return std::string_view(at, static_cast<const char*>(end) - at);
}

}  // namespace ov::dialog
