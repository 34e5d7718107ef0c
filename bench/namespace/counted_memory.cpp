#include "bench/namespace/counted_memory.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace ov::bench {

namespace {

std::atomic<std::int64_t> live = 0;
std::atomic<std::int64_t> peak = 0;

void* counted_new(std::size_t size) noexcept {
    void* memory = std::malloc(size);
    if (memory != nullptr) {
        const std::int64_t now = live += static_cast<std::int64_t>(_msize(memory));
        peak = std::max<std::int64_t>(peak, now);
    }
    return memory;
}

void counted_delete(void* memory) noexcept {
    if (memory != nullptr) {
        live -= static_cast<std::int64_t>(_msize(memory));
        std::free(memory);
    }
}

}  // namespace

memory_figures memory_now() noexcept {
    return {live, peak};
}

void restart_peak() noexcept {
    peak = live.load();
}

}  // namespace ov::bench

void* operator new(std::size_t size) {
    if (void* memory = ov::bench::counted_new(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return ov::bench::counted_new(size);
}

void operator delete(void* memory) noexcept {
    ov::bench::counted_delete(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    ov::bench::counted_delete(memory);
}
