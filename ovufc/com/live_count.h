#pragma once

#include <atomic>
#include <cstdint>

namespace ov::com {

/// How many objects of a kind are alive: what DllCanUnloadNow asks.
///
/// Changed only atomically, from any thread; read without a lock. Each count fills a cache line of its own,
/// so that threads which create different kinds of object do not slow each other down.
class alignas(64) live_count {
  public:
    void raise() noexcept { count_.fetch_add(1); }
    void lower() noexcept { count_.fetch_sub(1); }
    [[nodiscard]] std::int32_t value() const noexcept { return count_.load(); }

  private:
    std::atomic<std::int32_t> count_{0};
};

static_assert(sizeof(live_count) == 64);

}  // namespace ov::com
