#include "ovufc/i18n/rosetta_stone.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "ovufc/cert/signer_check.h"
#include "ovufc/i18n/language_choice.h"
#include "ovufc/win/srw_lock.h"

namespace ov::i18n {

namespace {

/// The longest text that `lookup` gives, with its terminating zero.
constexpr DWORD text_capacity_chars = 2048;

// The runtime's own functions, which read "%s" in a wide format as a wide string; the compiler's replacements
// would read it as a narrow one.
std::wstring print(const std::wstring& format, va_list arguments) {
    va_list measured_arguments;
    va_copy(measured_arguments, arguments);
    const int length_chars = _vscwprintf(format.c_str(), measured_arguments);
    va_end(measured_arguments);
    if (length_chars <= 0) {
        return {};
    }
    std::wstring text(static_cast<std::size_t>(length_chars) + 1, L'\0');
    const int printed_chars = _vsnwprintf(text.data(), text.size(), format.c_str(), arguments);
    text.resize(printed_chars > 0 ? static_cast<std::size_t>(printed_chars) : 0);
    return text;
}

}  // namespace

rosetta_stone::~rosetta_stone() {
    if (library != nullptr) {
        FreeLibrary(library);
    }
}

bool rosetta_stone::load(const std::wstring& path) noexcept {
    const win::exclusive_lock guard(lock);
    if (library != nullptr || !cert::is_signed_by_maker(path)) {
        return false;
    }
    library =
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_SEARCH_APPLICATION_DIR);
    // Chosen whether or not the library came up, and kept as it was when nothing is known of the user.
    if (const auto chosen = choose_language(candidate_language())) {
        language = *chosen;
    }
    return library != nullptr;
}

std::wstring rosetta_stone::lookup(std::uint32_t number) const {
    std::array<wchar_t, text_capacity_chars> text;
    {
        const win::shared_lock guard(lock);
        if (library == nullptr) {
            return {};
        }
        // Inserts are not ignored: a text that holds one fails here, as there is nothing to put in its place.
        if (FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE, library, number, language, text.data(),
                           text_capacity_chars, nullptr) == 0) {
            return {};
        }
    }
    return text.data();
}

std::wstring rosetta_stone::format(std::uint32_t number, ...) const {
    const std::wstring text = lookup(number);
    if (text.empty()) {
        return {};
    }
    va_list arguments;
    va_start(arguments, number);
    std::wstring printed;
    try {
        printed = print(text, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
    return printed;
}

}  // namespace ov::i18n
