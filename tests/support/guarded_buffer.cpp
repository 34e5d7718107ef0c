#include "tests/support/guarded_buffer.h"

#include <cstring>
#include <new>

namespace ov::test {

namespace {

constexpr std::size_t page_bytes = 4096;

std::byte* watched_page = nullptr;
volatile int met = 0;

LONG CALLBACK open_watched_page(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const auto address = static_cast<std::size_t>(record.ExceptionInformation[1]);
    const auto page = reinterpret_cast<std::size_t>(watched_page);
    DWORD before = 0;
    if (address < page || address >= page + page_bytes ||
        VirtualProtect(watched_page, page_bytes, PAGE_READWRITE, &before) == FALSE) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    met = met + 1;
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

guarded_buffer::guarded_buffer(std::span<const std::byte> content) : size_(content.size()) {
    const std::size_t data_bytes = (size_ / page_bytes + 1) * page_bytes;
    base_ = static_cast<std::byte*>(
        VirtualAlloc(nullptr, data_bytes + page_bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (base_ == nullptr) {
        throw std::bad_alloc();
    }
    guard_ = base_ + data_bytes;
    if (!content.empty()) {
        std::memcpy(data(), content.data(), size_);
    }
    DWORD before = 0;
    VirtualProtect(guard_, page_bytes, PAGE_NOACCESS, &before);
    watched_page = guard_;
    met = 0;
    handler_ = AddVectoredExceptionHandler(1, open_watched_page);
}

guarded_buffer::~guarded_buffer() {
    RemoveVectoredExceptionHandler(handler_);
    watched_page = nullptr;
    VirtualFree(base_, 0, MEM_RELEASE);
}

int guarded_buffer::overruns() const noexcept {
    return met;
}

}  // namespace ov::test
