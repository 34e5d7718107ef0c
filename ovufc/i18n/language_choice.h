#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

/// Which of the resource library's languages a user gets. Ids are Windows language ids (MS-LCID): the low ten
/// bits name the language, the others the country.
namespace ov::i18n {

/// The languages that the resource library holds, in order of preference among those of one language.
inline constexpr std::array<std::uint32_t, 10> known_languages{
    0x0409,  // English, United States
    0x0C0A,  // Spanish, Spain
    0x040C,  // French, France
    0x0421,  // Indonesian
    0x0411,  // Japanese
    0x0412,  // Korean
    0x0427,  // Lithuanian
    0x0416,  // Portuguese, Brazil
    0x0804,  // Chinese, simplified
    0x0C04,  // Chinese, traditional, Hong Kong
};

/// The languages that are given to users. Indonesian, Lithuanian and Portuguese are left out on purpose:
/// their users get English.
inline constexpr std::array<std::uint32_t, 7> enabled_languages{
    0x0409, 0x0C0A, 0x040C, 0x0411, 0x0412, 0x0804, 0x0C04,
};

/// The tags (BCP 47) of `known_languages`, in the same order; to show, not used for choosing.
inline constexpr std::array<std::wstring_view, known_languages.size()> language_tags{
    L"en", L"es", L"fr", L"id", L"ja", L"ko", L"lt", L"pt", L"zh-Hans", L"zh-Hant",
};

/// Given to users of a known language that is not enabled.
inline constexpr std::uint16_t fallback_language = 0x0409;

/// The language of the user as the system tells it: from Windows 8 on that of the user's locale, before it
/// that of the user interface. The order is on purpose.
[[nodiscard]] std::uint16_t candidate_language() noexcept;

/// The language for a user of `candidate`; empty when nothing is known of it and what was chosen before is to
/// be left as it was.
[[nodiscard]] std::optional<std::uint16_t> choose_language(std::uint16_t candidate) noexcept;

}  // namespace ov::i18n
