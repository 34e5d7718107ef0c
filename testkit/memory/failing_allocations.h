#pragma once

#include <windows.h>

#include <cstddef>
#include <random>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// Lets allocations of the C++ code of one module fail. The runtime is linked into our programs and DLLs, so
/// that all of them come through the module's import of malloc; what the system allocates on their behalf
/// does not. Counts on the thread that made it; one at a time. For a module that has no memory at all, on any
/// thread, there is memory_shortage.h.
class failing_allocations : private noncopyable {
  public:
    enum class mode {
        once,          ///< one allocation fails
        from_then_on,  ///< and all that follow it
        at_random,     ///< each by itself fails with a chance of 6 in a hundred
    };

    failing_allocations(HMODULE module, mode how);
    ~failing_allocations();

    /// The `nth` allocation from now on, counted from 1, is the first to fail. At random, `nth` names one of
    /// as many series of dice, always the same.
    void start(int nth) noexcept;
    /// Between the two nothing is counted and nothing fails.
    void pause() noexcept { is_counting_ = false; }
    void resume() noexcept { is_counting_ = true; }
    /// True once an allocation has failed.
    [[nodiscard]] bool met() const noexcept { return met_; }

  private:
    static void* allocate(std::size_t bytes) noexcept;
    [[nodiscard]] bool fails() noexcept;
    [[nodiscard]] bool is_reached() noexcept;

    mode mode_;
    DWORD thread_id_ = GetCurrentThreadId();
    bool is_counting_ = false;
    bool met_ = false;
    int until_failure_ = 1;
    std::minstd_rand dice_;
    import_patch<void*(std::size_t)> patch_;
};

/// Runs `scene` again and again, with its first, second … allocation failing, until one run meets no failure;
/// how many did. The scene is given the failing_allocations, so that it can pause them.
///
///     EXPECT_GE(fail_each_allocation(module, failing_allocations::mode::once, [&](auto& memory) {
///         const HRESULT result = work();
///         memory.pause();
///         EXPECT_EQ(result, memory.met() ? E_OUTOFMEMORY : S_OK);
///     }), 5);
template <class Scene>
int fail_each_allocation(HMODULE module, failing_allocations::mode how, Scene scene) {
    failing_allocations memory(module, how);
    for (int nth = 1;; ++nth) {
        memory.start(nth);
        scene(memory);
        memory.pause();
        if (!memory.met()) {
            return nth - 1;
        }
    }
}

}  // namespace ov::test
