#include "ovufc/i18n/language_choice.h"

#include <windows.h>
#include <versionhelpers.h>

#include <algorithm>

namespace ov::i18n {

namespace {

constexpr std::uint32_t primary_language_mask = 0x3FF;
constexpr std::uint32_t chinese = 0x04;

constexpr std::uint32_t chinese_taiwan = 0x0404;
constexpr std::uint32_t chinese_china = 0x0804;
constexpr std::uint32_t chinese_hong_kong = 0x0C04;
// Fits the mask below but is not a language of Windows; treated as any other Chinese.
constexpr std::uint32_t chinese_unassigned = 0x1C04;

// Ids that differ from the first of their script by the masked-out bits only: Hong Kong (0x0C04) and Macao
// (0x1404) from Taiwan, Singapore (0x1004) from China.
constexpr std::uint32_t traditional_mask = 0xE7FF;
constexpr std::uint32_t simplified_mask = 0xF7FF;

constexpr std::uint32_t primary_language(std::uint32_t id) {
    return id & primary_language_mask;
}

constexpr std::uint32_t one_id_per_chinese_script(std::uint32_t id) {
    if (primary_language(id) != chinese) {
        return id;
    }
    if (((id - chinese_taiwan) & traditional_mask) == 0 && id != chinese_unassigned) {
        return chinese_hong_kong;
    }
    if (((id - chinese_china) & simplified_mask) == 0) {
        return chinese_china;
    }
    return id;
}

std::uint16_t if_enabled(std::uint32_t known) {
    return std::ranges::find(enabled_languages, known) != enabled_languages.end()
               ? static_cast<std::uint16_t>(known)
               : fallback_language;
}

}  // namespace

std::uint16_t candidate_language() noexcept {
    // Asks for the version that the host is shown: one without a manifest for Windows 8.1 or later sees 6.2,
    // which is new enough.
    return IsWindows8OrGreater() ? GetUserDefaultLangID() : GetUserDefaultUILanguage();
}

std::optional<std::uint16_t> choose_language(std::uint16_t candidate) noexcept {
    const std::uint32_t wanted = one_id_per_chinese_script(candidate);
    if (std::ranges::find(known_languages, wanted) != known_languages.end()) {
        return if_enabled(wanted);
    }
    const auto* const relative =
        std::ranges::find(known_languages, primary_language(wanted), primary_language);
    if (relative != known_languages.end()) {
        return if_enabled(*relative);
    }
    return std::nullopt;
}

}  // namespace ov::i18n
