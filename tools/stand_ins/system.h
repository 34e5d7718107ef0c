#pragma once

namespace ov::stand_ins {

/// True when this process runs under Wine, false on Windows: Wine's ntdll says so with a function of its own.
/// Never fails; may be called from any thread.
[[nodiscard]] bool system_is_wine() noexcept;

}  // namespace ov::stand_ins
