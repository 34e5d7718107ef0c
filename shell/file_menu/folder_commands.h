#pragma once

#include <cstdint>

namespace ov::shell {

/// Numbers of the commands on a folder.
inline constexpr std::uint32_t command_protect = 0;
inline constexpr std::uint32_t command_unprotect = 1;
inline constexpr std::uint32_t command_export_deleted_files = 2;
inline constexpr std::uint32_t command_export_chronels = 3;
inline constexpr std::uint32_t command_count = 4;

}  // namespace ov::shell
