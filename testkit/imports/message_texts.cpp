#include "testkit/imports/message_texts.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "ovufc/i18n/message_ids.h"

namespace ov::test {

namespace {

namespace ids = i18n::message_ids;

constexpr std::array with_placeholder{ids::ask_unprotect, ids::ask_restore, ids::ask_restore_again,
                                      ids::addons_result};

DWORD WINAPI write_number(DWORD flags, LPCVOID /*source*/, DWORD number, DWORD /*language*/, LPWSTR buffer,
                          DWORD size, char** /*arguments*/) {
    const std::wstring text = message_texts::of(number);
    if (flags != FORMAT_MESSAGE_FROM_HMODULE || text.size() >= size) {
        return 0;
    }
    *std::copy(text.begin(), text.end(), buffer) = L'\0';
    return static_cast<DWORD>(text.size());
}

}  // namespace

message_texts::message_texts(HMODULE module)
    : patch_(module, "kernel32.dll", "FormatMessageW", &write_number) {}

std::wstring message_texts::of(std::uint32_t number) {
    const bool takes_text =
        std::find(with_placeholder.begin(), with_placeholder.end(), number) != with_placeholder.end();
    std::wostringstream text;
    text << L'<' << std::hex << std::uppercase << number << (takes_text ? L" %s>" : L">");
    return text.str();
}

std::wstring message_texts::of(std::uint32_t number, const std::wstring& argument) {
    std::wstring text = of(number);
    return text.replace(text.find(L"%s"), 2, argument);
}

}  // namespace ov::test
