#pragma once

#include <windows.h>

namespace ov::shellhost {

/// Measures the time since it was made.
class stopwatch {
  public:
    stopwatch() noexcept { QueryPerformanceCounter(&start_); }

    [[nodiscard]] double elapsed_us() const noexcept {
        LARGE_INTEGER now{};
        LARGE_INTEGER frequency{};
        QueryPerformanceCounter(&now);
        QueryPerformanceFrequency(&frequency);
        return static_cast<double>(now.QuadPart - start_.QuadPart) * 1e6 /
               static_cast<double>(frequency.QuadPart);
    }

  private:
    LARGE_INTEGER start_{};
};

}  // namespace ov::shellhost
