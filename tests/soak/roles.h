#pragma once

#include <string>

namespace ov::test {

/// crowd TAG THREADS CALLS: that many threads make so many calls each; the exit code is 0 when every reply
/// was the caller's own.
inline constexpr const wchar_t* role_crowd = L"crowd";

[[nodiscard]] int play_crowd(const std::wstring& tag, unsigned threads, unsigned calls);

}  // namespace ov::test
