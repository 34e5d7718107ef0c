#pragma once

#include <cstdint>

namespace ov::bench {

/// What `new` has handed out in this program and not got back; the peak since the last `restart_peak`. Blocks
/// count with the size that the heap says they have, its own overhead not at all.
struct memory_figures {
    std::int64_t live_bytes;
    std::int64_t peak_bytes;
};

[[nodiscard]] memory_figures memory_now() noexcept;

/// From here on the peak counts from what is live now.
void restart_peak() noexcept;

}  // namespace ov::bench
