#include "testkit/memory/guarded_buffer.h"

#include <cstring>
#include <new>

namespace ov::test {

namespace {

constexpr std::size_t page_bytes = 4096;
// More than any 16-bit length can make a reader go too far.
constexpr std::size_t guard_bytes = 64 * page_bytes;

std::byte* watched_guard = nullptr;
volatile int met = 0;

LONG CALLBACK open_watched_guard(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const auto address = static_cast<std::size_t>(record.ExceptionInformation[1]);
    const auto guard = reinterpret_cast<std::size_t>(watched_guard);
    DWORD before = 0;
    if (address < guard || address >= guard + guard_bytes ||
        VirtualProtect(watched_guard, guard_bytes, PAGE_READWRITE, &before) == FALSE) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    met = met + 1;
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

guarded_buffer::guarded_buffer(std::span<const std::byte> content) : guarded_buffer(content.size()) {
    if (!content.empty()) {
        std::memcpy(data(), content.data(), size_);
    }
}

guarded_buffer::guarded_buffer(std::size_t size_bytes, DWORD protection) : size_(size_bytes) {
    const std::size_t data_bytes = (size_ / page_bytes + 1) * page_bytes;
    base_ = static_cast<std::byte*>(
        VirtualAlloc(nullptr, data_bytes + guard_bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (base_ == nullptr) {
        throw std::bad_alloc();
    }
    guard_ = base_ + data_bytes;
    protect(protection);
    DWORD before = 0;
    VirtualProtect(guard_, guard_bytes, PAGE_NOACCESS, &before);
    watched_guard = guard_;
    met = 0;
    handler_ = AddVectoredExceptionHandler(1, open_watched_guard);
}

void guarded_buffer::protect(DWORD protection) const noexcept {
    DWORD before = 0;
    VirtualProtect(base_, static_cast<std::size_t>(guard_ - base_), protection, &before);
}

guarded_buffer::~guarded_buffer() {
    RemoveVectoredExceptionHandler(handler_);
    watched_guard = nullptr;
    VirtualFree(base_, 0, MEM_RELEASE);
}

int guarded_buffer::overruns() const noexcept {
    return met;
}

}  // namespace ov::test
