#pragma once

#include <windows.h>
#include <shtypes.h>

#include <array>
#include <cstdint>
#include <string_view>

/// The eight standard user folders, which the driver names by fixed rule texts for all users at once.
///
/// A rule text looks like a regular expression and is never evaluated as one: it is compared as plain text
/// without regard to letter case (ASCII only, so that no locale changes what matches). Nothing here fails.
namespace ov::name_space {

struct user_folder {
    /// The folder's bit in a user-folder mask.
    std::uint32_t bit;
    /// The driver's rule text (UTF-8).
    std::string_view rule;
    const KNOWNFOLDERID* known_folder;
};

namespace user_folder_bits {

inline constexpr std::uint32_t documents = 1;
inline constexpr std::uint32_t desktop = 2;
inline constexpr std::uint32_t pictures = 4;
inline constexpr std::uint32_t objects_3d = 8;
inline constexpr std::uint32_t contacts = 16;
inline constexpr std::uint32_t music = 32;
inline constexpr std::uint32_t saved_games = 64;
inline constexpr std::uint32_t videos = 128;
inline constexpr std::uint32_t all = 255;

}  // namespace user_folder_bits

/// All eight, in ascending order of their bits.
[[nodiscard]] const std::array<user_folder, 8>& user_folders() noexcept;

/// The bit of the folder whose rule text `entry` is; 0 when it is none of them. The whole text is compared,
/// with its length, so a NUL inside makes it another text.
[[nodiscard]] std::uint32_t user_folder_bit_of_rule(std::string_view entry) noexcept;

/// True when `entry` begins like every rule for a folder below the users' profiles.
[[nodiscard]] bool is_profile_rule(std::string_view entry) noexcept;

}  // namespace ov::name_space
