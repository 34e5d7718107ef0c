#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "ovufc/win/handle.h"

namespace ov::test {

/// Runs `work(number)` on so many threads at once, each with a stack of `stack_bytes` (0: the usual one), and
/// waits for all of them. The sum of what they return.
[[nodiscard]] inline unsigned on_threads(unsigned count, SIZE_T stack_bytes,
                                         const std::function<unsigned(unsigned)>& work) {
    struct job {
        const std::function<unsigned(unsigned)>* work;
        unsigned number;
    };
    std::vector<job> jobs;
    for (unsigned number = 0; number < count; ++number) {
        jobs.push_back({&work, number});
    }
    std::vector<win::unique_kernel_handle> threads;
    for (job& next : jobs) {
        threads.emplace_back(CreateThread(
            nullptr, stack_bytes,
            [](void* given) WINAPI -> DWORD {
                const job& own = *static_cast<const job*>(given);
                return (*own.work)(own.number);
            },
            &next, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    }
    unsigned sum = 0;
    for (const auto& thread : threads) {
        WaitForSingleObject(thread.get(), INFINITE);
        DWORD result = 1;
        GetExitCodeThread(thread.get(), &result);
        sum += result;
    }
    return sum;
}

}  // namespace ov::test
