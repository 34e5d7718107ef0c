#include "testkit/process/throw_count.h"

#include <atomic>

namespace {

std::atomic<std::size_t> throws{0};

}  // namespace

extern "C" {
[[noreturn]] void __real___cxa_throw(void* exception, void* type, void (*destroy)(void*));

[[noreturn]] void __wrap___cxa_throw(void* exception, void* type, void (*destroy)(void*)) {
    ++throws;
    __real___cxa_throw(exception, type, destroy);
}
}

namespace ov::test {

std::size_t throws_so_far() noexcept {
    return throws;
}

}  // namespace ov::test
