#include "testkit/memory/write_trace.h"

#include <utility>

namespace ov::test {

namespace {

constexpr SIZE_T page_bytes = 4096;
constexpr DWORD trap_flag = 0x100;
constexpr ULONG_PTR write_access = 1;

write_trace* current = nullptr;

}  // namespace

write_trace::write_trace(volatile void* page, std::function<void(std::size_t)> before_write)
    : page_(static_cast<char*>(const_cast<void*>(page))),
      before_write_(std::move(before_write)),
      handler_(AddVectoredExceptionHandler(1, &write_trace::on_exception)) {
    offsets_.reserve(page_bytes);
    current = this;
    protect(PAGE_READONLY);
}

write_trace::~write_trace() {
    protect(PAGE_READWRITE);
    RemoveVectoredExceptionHandler(handler_);
    current = nullptr;
}

// Not inline: the compiler cannot know that the writes it sees change what is read here.
const std::vector<std::size_t>& write_trace::offsets() const noexcept {
    return offsets_;
}

void write_trace::protect(DWORD protection) noexcept {
    DWORD old = 0;
    VirtualProtect(page_, page_bytes, protection, &old);
}

LONG CALLBACK write_trace::on_exception(EXCEPTION_POINTERS* pointers) {
    return current != nullptr ? current->handle(*pointers) : EXCEPTION_CONTINUE_SEARCH;
}

LONG write_trace::handle(EXCEPTION_POINTERS& pointers) {
    const EXCEPTION_RECORD& record = *pointers.ExceptionRecord;
    if (record.ExceptionCode == EXCEPTION_SINGLE_STEP && stepping_) {
        stepping_ = false;
        protect(PAGE_READONLY);
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    const auto address = reinterpret_cast<char*>(record.ExceptionInformation[1]);
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION ||
        record.ExceptionInformation[0] != write_access || address < page_ || address >= page_ + page_bytes) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const auto offset = static_cast<std::size_t>(address - page_);
    offsets_.push_back(offset);
    if (before_write_) {
        before_write_(offset);
    }
    protect(PAGE_READWRITE);
    stepping_ = true;
    pointers.ContextRecord->EFlags |= trap_flag;
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace ov::test
