#pragma once

#include <cstdint>

/// How much of memory whose address came from another process can be read or written (VirtualQuery):
/// touching an unmapped page would end the host.
///
///     if (mapping::readable_bytes(section) < sizeof(orv_status_block)) ...
///
/// Each counts from `start` and answers 0 when already the page there does not qualify. Nothing is counted
/// beyond the mapping that `start` is in. A call into the system for each run of like pages, no allocation.
namespace ov::ipc::drvport::details::mapping {

/// To the end of the mapping, pages without memory behind them included: this does not change while it lives.
[[nodiscard]] std::uint64_t mapped_bytes(const volatile void* start) noexcept;

/// To the first page that cannot be read, or written, now. Touching a guard page raises, so it is neither.
[[nodiscard]] std::uint64_t readable_bytes(const volatile void* start) noexcept;
[[nodiscard]] std::uint64_t writable_bytes(const volatile void* start) noexcept;

}  // namespace ov::ipc::drvport::details::mapping
