#include "testkit/checks/lock_trace.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "testkit/imports/import_patch.h"
#include "testkit/imports/unpatched.h"

namespace ov::test {

namespace {

constexpr std::size_t enough_locks = 256;  // so that noting one allocates nothing

lock_trace* trace = nullptr;
DWORD traced_thread = 0;

bool is_traced() noexcept {
    return trace != nullptr && GetCurrentThreadId() == traced_thread;
}

void WINAPI acquire_shared(SRWLOCK* lock) {
    static auto* const real =
        unpatched<decltype(AcquireSRWLockShared)>(L"kernel32.dll", "AcquireSRWLockShared");
    real(lock);
    if (is_traced()) {
        trace->note_taken(lock, lock_trace::mode::shared);
    }
}

void WINAPI acquire_exclusive(SRWLOCK* lock) {
    static auto* const real =
        unpatched<decltype(AcquireSRWLockExclusive)>(L"kernel32.dll", "AcquireSRWLockExclusive");
    real(lock);
    if (is_traced()) {
        trace->note_taken(lock, lock_trace::mode::exclusive);
    }
}

void WINAPI release_shared(SRWLOCK* lock) {
    static auto* const real =
        unpatched<decltype(ReleaseSRWLockShared)>(L"kernel32.dll", "ReleaseSRWLockShared");
    if (is_traced()) {
        trace->note_released(lock, lock_trace::mode::shared);
    }
    real(lock);
}

void WINAPI release_exclusive(SRWLOCK* lock) {
    static auto* const real =
        unpatched<decltype(ReleaseSRWLockExclusive)>(L"kernel32.dll", "ReleaseSRWLockExclusive");
    if (is_traced()) {
        trace->note_released(lock, lock_trace::mode::exclusive);
    }
    real(lock);
}

}  // namespace

struct lock_trace::patches {
    explicit patches(HMODULE module)
        : shared(module, "kernel32.dll", "AcquireSRWLockShared", acquire_shared),
          exclusive(module, "kernel32.dll", "AcquireSRWLockExclusive", acquire_exclusive),
          shared_end(module, "kernel32.dll", "ReleaseSRWLockShared", release_shared),
          exclusive_end(module, "kernel32.dll", "ReleaseSRWLockExclusive", release_exclusive) {}

    import_patch<decltype(AcquireSRWLockShared)> shared;
    import_patch<decltype(AcquireSRWLockExclusive)> exclusive;
    import_patch<decltype(ReleaseSRWLockShared)> shared_end;
    import_patch<decltype(ReleaseSRWLockExclusive)> exclusive_end;
};

lock_trace::lock_trace(HMODULE module) {
    taken_.reserve(enough_locks);
    held_.reserve(enough_locks);
    trace = this;
    traced_thread = GetCurrentThreadId();
    patches_ = std::make_unique<patches>(module);
}

lock_trace::~lock_trace() {
    patches_.reset();
    trace = nullptr;
}

void lock_trace::note_taken(const SRWLOCK* lock, mode how) {
    taken_.push_back({lock, how});
    held_.push_back({lock, how});
    most_at_once_ = std::max(most_at_once_, held_.size());
}

void lock_trace::note_released(const SRWLOCK* lock, mode how) {
    const auto found = std::find(held_.begin(), held_.end(), hold{lock, how});
    if (found == held_.end()) {
        ADD_FAILURE() << "a lock was given back that was not held so";
        return;
    }
    held_.erase(found);
}

}  // namespace ov::test
