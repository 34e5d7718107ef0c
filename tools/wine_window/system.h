#pragma once

namespace ov::wine_window {

/// True when this process runs under Wine, whose folder windows need this library; false on Windows: Wine's
/// ntdll says so with a function of its own. Never fails; may be called from any thread.
[[nodiscard]] bool system_is_wine() noexcept;

}  // namespace ov::wine_window
