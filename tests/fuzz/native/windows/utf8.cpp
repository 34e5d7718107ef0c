// A double of the system's conversion: a character of UTF-8 is one wchar_t here, and what is ill-formed
// U+FFFD.
#include "ovufc/win/utf8.h"

#include <cstdint>
#include <cstdlib>

namespace ov::win {
namespace {

constexpr wchar_t replacement = 0xFFFD;

/// How many bytes follow a first one; none for a byte that begins no character.
int bytes_after(unsigned char first) {
    if (first < 0x80) {
        return 0;
    }
    return first < 0xC2 ? -1 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : first < 0xF5 ? 3 : -1;
}

/// The character at the front of `text`, which gets shorter.
wchar_t take(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    const int following = bytes_after(first);
    text.remove_prefix(1);
    if (following <= 0) {
        return following == 0 ? first : replacement;
    }
    std::uint32_t character = first & (0x3FU >> following);
    for (int left = following; left > 0; --left) {
        if (text.empty() || (static_cast<unsigned char>(text.front()) & 0xC0U) != 0x80) {
            return replacement;
        }
        character = character << 6U | (static_cast<unsigned char>(text.front()) & 0x3FU);
        text.remove_prefix(1);
    }
    return static_cast<wchar_t>(character);
}

}  // namespace

std::optional<std::string> to_utf8(std::wstring_view, ill_formed) {
    std::abort();  // no reader writes
}

std::size_t from_utf8(std::string_view text, wchar_t* room, ill_formed) noexcept {
    std::size_t units = 0;
    while (!text.empty()) {
        room[units++] = take(text);
    }
    return units;
}

std::optional<std::wstring> from_utf8(std::string_view text, ill_formed treatment) {
    std::wstring converted(text.size() + 1, L'\0');
    converted.resize(from_utf8(text, converted.data(), treatment));
    return converted;
}

}  // namespace ov::win
