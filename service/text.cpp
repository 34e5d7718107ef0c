#include "service/text.h"

#include <windows.h>

#include <cstddef>
#include <limits>

namespace ov::service {
namespace {

constexpr std::size_t int_max = static_cast<std::size_t>(std::numeric_limits<int>::max());
/// More than UTF-8 needs for any UTF-16 unit.
constexpr std::size_t bytes_per_unit = 4;

template <class Text>
void cut_at_nul(Text& text) {
    const auto nul = text.find(typename Text::value_type{});
    if (nul != Text::npos) {
        text.resize(nul);
    }
}

}  // namespace

std::string to_utf8(std::wstring_view text) {
    if (text.empty() || text.size() > (int_max - 2) / bytes_per_unit) {
        return {};
    }
    std::string converted(bytes_per_unit * text.size() + 2, '\0');
    const int bytes =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), converted.data(),
                            static_cast<int>(converted.size() - 1), nullptr, nullptr);
    if (bytes <= 0) {
        return {};
    }
    converted.resize(static_cast<std::size_t>(bytes));
    cut_at_nul(converted);
    return converted;
}

std::wstring from_utf8(std::string_view text) {
    if (text.empty() || text.size() > int_max - 1) {
        return {};
    }
    std::wstring converted(text.size() + 1, L'\0');
    const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                          converted.data(), static_cast<int>(converted.size()));
    if (units <= 0) {
        return {};
    }
    converted.resize(static_cast<std::size_t>(units));
    cut_at_nul(converted);
    return converted;
}

}  // namespace ov::service
