#pragma once

#include <cstdint>
#include <string>

namespace ov::devservice {

/// A file time in local time as "2026-05-01 12-30-05": sorts by itself and may stand in a file name.
[[nodiscard]] std::wstring file_name_time(std::int64_t file_time);

}  // namespace ov::devservice
