#include "ovufc/win/utf8.h"

#include <windows.h>

#include <cstddef>
#include <limits>

namespace ov::win {
namespace {

constexpr std::size_t int_max = static_cast<std::size_t>(std::numeric_limits<int>::max());
/// More than UTF-8 needs for any UTF-16 unit.
constexpr std::size_t bytes_per_unit = 4;

}  // namespace

std::optional<std::string> to_utf8(std::wstring_view text, ill_formed treatment) {
    if (text.empty()) {
        return std::string();
    }
    if (text.size() > (int_max - 2) / bytes_per_unit) {
        return std::nullopt;
    }
    std::string converted(bytes_per_unit * text.size() + 2, '\0');
    const int bytes =
        WideCharToMultiByte(CP_UTF8, treatment == ill_formed::refused ? WC_ERR_INVALID_CHARS : 0, text.data(),
                            static_cast<int>(text.size()), converted.data(),
                            static_cast<int>(converted.size() - 1), nullptr, nullptr);
    if (bytes <= 0) {
        return std::nullopt;
    }
    converted.resize(static_cast<std::size_t>(bytes));
    return converted;
}

std::optional<std::wstring> from_utf8(std::string_view text, ill_formed treatment) {
    if (text.empty()) {
        return std::wstring();
    }
    if (text.size() > int_max - 1) {
        return std::nullopt;
    }
    std::wstring converted(text.size() + 1, L'\0');
    const std::size_t units = from_utf8(text, converted.data(), treatment);
    if (units == 0) {
        return std::nullopt;
    }
    converted.resize(units);
    return converted;
}

std::size_t from_utf8(std::string_view text, wchar_t* room, ill_formed treatment) noexcept {
    if (text.empty() || text.size() > int_max - 1) {
        return 0;
    }
    const int units =
        MultiByteToWideChar(CP_UTF8, treatment == ill_formed::refused ? MB_ERR_INVALID_CHARS : 0, text.data(),
                            static_cast<int>(text.size()), room, static_cast<int>(text.size() + 1));
    return units > 0 ? static_cast<std::size_t>(units) : 0;
}

}  // namespace ov::win
