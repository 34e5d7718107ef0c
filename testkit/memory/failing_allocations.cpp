#include "testkit/memory/failing_allocations.h"

#include "testkit/imports/unpatched.h"

namespace ov::test {
namespace {

constexpr unsigned percent_at_random = 6;

failing_allocations* current = nullptr;

}  // namespace

failing_allocations::failing_allocations(HMODULE module, mode how)
    : mode_(how), patch_(module, "msvcrt.dll;ucrtbase.dll", "malloc", allocate) {
    // A program's own runtime sets itself up at the first throw of each thread, and ends the process when it
    // finds no memory then.
    try {
        throw how;
    } catch (mode) {
    }
    current = this;
}

failing_allocations::~failing_allocations() {
    current = nullptr;
}

void failing_allocations::start(int nth) noexcept {
    until_failure_ = nth;
    dice_.seed(static_cast<unsigned>(nth));
    met_ = false;
    is_counting_ = true;
}

void* failing_allocations::allocate(std::size_t bytes) noexcept {
    static auto* const real = unpatched<void*(std::size_t)>(L"msvcrt.dll", "malloc");
    return current != nullptr && current->fails() ? nullptr : real(bytes);
}

bool failing_allocations::fails() noexcept {
    if (!is_counting_ || GetCurrentThreadId() != thread_id_) {
        return false;
    }
    const bool is_failing = mode_ == mode::at_random ? dice_() % 100 < percent_at_random : is_reached();
    met_ = met_ || is_failing;
    return is_failing;
}

bool failing_allocations::is_reached() noexcept {
    if (until_failure_ > 0) {
        --until_failure_;
        return until_failure_ == 0;
    }
    return mode_ == mode::from_then_on;
}

}  // namespace ov::test
